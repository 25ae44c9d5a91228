// The address of a crash-collection service that speaks the Sentry envelope protocol.
#pragma once

#include <optional>
#include <QString>
#include <QUrl>

namespace pointloom {

struct SentryDSN {
    QUrl envelopeURL;  // where envelopes are posted
    QString publicKey; // sent in the authentication header
    QString rawDSN;    // as configured

    /// Parses "https://KEY@HOST/PROJECT". Empty without a key, a host or a project, and for a text with
    /// blanks, quotes or control characters, which could not stand in a header. A port or further path
    /// components are not carried over.
    static std::optional<SentryDSN> parse(const QString& text);

    bool operator==(const SentryDSN&) const = default;
};

}
