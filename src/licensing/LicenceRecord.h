// The licence of one key on one machine, and its Ed25519 signature (RFC 8032, by libsodium).
#pragma once

#include "json/JsonFields.h"

#include <array>
#include <cstdint>
#include <optional>
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <tuple>

namespace pointloom {

namespace Ed25519 {

constexpr std::size_t publicKeySize = 32; // bytes
constexpr std::size_t secretKeySize = 64; // bytes, the public key included
constexpr qsizetype signatureSize = 64;   // bytes

using PublicKey = std::array<unsigned char, publicKeySize>;
using SecretKey = std::array<unsigned char, secretKeySize>;

/// From Base64; empty for anything but 32 bytes.
std::optional<PublicKey> publicKeyFromBase64(const QByteArray& text);

/// From Base64; empty for anything but 64 bytes.
std::optional<SecretKey> secretKeyFromBase64(const QByteArray& text);

bool verify(const QByteArray& message, const QByteArray& signature, const PublicKey& key);

QByteArray sign(const QByteArray& message, const SecretKey& key);

/// A fresh key. Throws std::runtime_error when the library cannot start.
SecretKey generateSecretKey();

PublicKey publicKeyOf(const SecretKey& key);

}

namespace json {

/// A time in UTC, "2024-05-01T10:00:00Z".
template <>
struct Codec<QDateTime> {
    static OrderedValue encode(const QDateTime& value);
    static QDateTime decode(const Value& value, const Path& path);
};

}

struct LicenceRecord {
    QString format;                   // currentFormat
    QString id;                       // unique for each record signed
    QString key;                      // as LicenceKey writes it
    QString fingerprint;              // of the machine
    QString holder;                   // the buyer
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
