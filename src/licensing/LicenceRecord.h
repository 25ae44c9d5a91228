// The licence of one key on one machine, as the service signs it.
#pragma once

#include "licensing/Ed25519.h"
#include "json/JsonFields.h"

#include <optional>
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <tuple>

namespace pointloom {

namespace json {

/// A time of day in UTC, "2024-05-01T10:00:00Z".
template <>
struct Codec<QDateTime> {
    static OrderedValue encode(const QDateTime& value);
    static QDateTime decode(const Value& value, const Path& path);
};

}

struct LicenceRecord {
    QString format;                   // currentFormat
    QString id;                       // one of its own for each record signed
    QString key;                      // as LicenceKey writes it
    QString fingerprint;              // of the machine
    QString holder;                   // whom the licence was sold to
    QDateTime issued;                 // by the service's clock
    std::optional<QDateTime> expires; // absent: never
    std::optional<QString> nonce;     // of the request that it answers

    bool operator==(const LicenceRecord&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("format", &LicenceRecord::format),
                          json::field("id", &LicenceRecord::id),
                          json::field("key", &LicenceRecord::key),
                          json::field("fingerprint", &LicenceRecord::fingerprint),
                          json::field("holder", &LicenceRecord::holder),
                          json::field("issued", &LicenceRecord::issued),
                          json::field("expires", &LicenceRecord::expires),
                          json::field("nonce", &LicenceRecord::nonce)};
    }

    static QString currentFormat() { return QStringLiteral("pointloom-licence-1"); }
};

/// A record's bytes with the signature over exactly these bytes: a service's answer, a licence file.
struct SignedLicence {
    QByteArray licence;   // Base64 of the record's JSON
    QByteArray signature; // Base64 of 64 bytes

    bool operator==(const SignedLicence&) const = default;

    static SignedLicence sign(const LicenceRecord& record, const Ed25519::SecretKey& key);

    /// {"licence": ..., "signature": ...}
    QByteArray toJson() const;

    /// Throws LicenceError (invalidLicence) for anything else, or past 64 KiB.
    static SignedLicence fromJson(const QByteArray& bytes);

    /// The record, once the signature holds. Throws LicenceError (invalidLicence) when it does not, or when
    /// what was signed is not a record of the current format.
    LicenceRecord verified(const Ed25519::PublicKey& key) const;
};

}
