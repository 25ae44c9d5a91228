// Crash records, and their events and envelopes in the Sentry protocol with the upload to a collector.
#pragma once

#include "info/InfoDictionary.h"
#include "json/JsonFields.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <QByteArray>
#include <QString>
#include <QUrl>
#include <tuple>
#include <vector>

namespace pointloom {

/// The record that a dying process leaves for the next start.
struct PendingCrashReport {
    static constexpr std::size_t mostFrames = 128; // innermost ones that are recorded and sent

    QString timestamp; // ISO 8601 for an exception, seconds since 1970 for a signal
    std::optional<QString> exceptionName;
    std::optional<QString> exceptionReason;
    std::optional<std::vector<QString>> callStack; // innermost call first
    std::optional<std::int32_t> signal;

    bool operator==(const PendingCrashReport&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("timestamp", &PendingCrashReport::timestamp),
                          json::field("exceptionName", &PendingCrashReport::exceptionName),
                          json::field("exceptionReason", &PendingCrashReport::exceptionReason),
                          json::field("callStack", &PendingCrashReport::callStack),
                          json::field("signal", &PendingCrashReport::signal)};
    }
};

/// The address of a collector that speaks the Sentry envelope protocol.
struct SentryDSN {
    QUrl envelopeURL;  // where envelopes are posted
    QString publicKey; // sent in the authentication header
    QString rawDSN;    // as configured

    /// Parses "https://KEY@HOST/PROJECT". Empty without a key, a host or a project, and for a text with
    /// spaces, quotes or control characters, which a header cannot hold. A port and further path components
    /// are ignored.
    static std::optional<SentryDSN> parse(const QString& text);

    bool operator==(const SentryDSN&) const = default;
};

namespace CrashEvent {

/// Stack lines as a crash record lists them, innermost first; the event lists the `mostFrames` innermost,
/// outermost first.
json::OrderedValue buildEvent(const QString& level, const QString& type, const QString& value,
                              const std::vector<QString>& frames, const std::map<QString, QString>& tags,
                              const InfoDictionary& info);

/// The event of a crash record, level "fatal".
json::OrderedValue eventOf(const PendingCrashReport& report, const InfoDictionary& info);

/// The body of the request: three lines, each closed by a line feed.
QByteArray envelope(const json::OrderedValue& event, const SentryDSN& dsn);

}

/// Posts `envelope` and waits for the answer, on a thread that may block: at most `timeout`, at most 64 KiB
/// of the reply, no redirect to plain HTTP. `isStopping` is polled ten times a second and ends the upload.
/// Prints one line when it fails; only status 200 is success.
void uploadEnvelope(const QByteArray& envelope, const SentryDSN& dsn, const std::function<bool()>& isStopping,
                    std::chrono::milliseconds timeout = std::chrono::seconds(30));

/// Prints one line to the error console.
inline void printCrashReporterLine(const QString& line) {
    std::fprintf(stderr, "[CrashReporter] %s\n", qUtf8Printable(line));
}

}
