#include "crash/CrashEvent.h"

#include "http/HttpPost.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <QDateTime>
#include <QSysInfo>
#include <QUuid>

namespace pointloom {

namespace {

bool isSafeInHeaders(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character > u' ' && character < u'\x7f' && character != u'"' && character != u'\\' &&
               character != u',';
    });
}

}

std::optional<SentryDSN> SentryDSN::parse(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    if (!isSafeInHeaders(text) || !url.isValid() || url.userName().isEmpty() || url.host().isEmpty())
        return std::nullopt;
    const QString key = url.userName(QUrl::FullyDecoded);
    const QString project = url.path(QUrl::FullyEncoded).section(u'/', 0, 0, QString::SectionSkipEmpty);
    if (project.isEmpty() || !isSafeInHeaders(key))
        return std::nullopt;
    const QString scheme = url.scheme().isEmpty() ? QStringLiteral("https") : url.scheme();
    if (scheme != u"https" && scheme != u"http")
        return std::nullopt;
    QUrl envelope;
    envelope.setScheme(scheme);
    envelope.setHost(url.host());
    envelope.setPath(QStringLiteral("/api/%1/envelope/").arg(project), QUrl::StrictMode);
    if (!envelope.isValid())
        return std::nullopt;
    return SentryDSN{envelope, key, text};
}

namespace CrashEvent {

namespace {

std::string now() {
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString();
}

json::OrderedValue framesOf(const std::vector<QString>& lines) {
    auto frames = json::OrderedValue::array();
    for (std::size_t i = std::min(lines.size(), PendingCrashReport::mostFrames); i > 0; --i)
        frames.push_back({{"function", lines[i - 1].toStdString()}});
    return frames;
}

}

json::OrderedValue buildEvent(const QString& level, const QString& type, const QString& value,
                              const std::vector<QString>& frames, const std::map<QString, QString>& tags,
                              const InfoDictionary& info) {
    const std::string version = info.shortVersion().toStdString();
    const std::string build = info.buildNumber().toStdString();
    auto exceptions = json::OrderedValue::array();
    exceptions.push_back({{"type", type.toStdString()},
                          {"value", value.toStdString()},
                          {"stacktrace", {{"frames", framesOf(frames)}}}});
    auto tagTable = json::OrderedValue::object();
    for (const auto& [key, text] : tags)
        tagTable[key.toStdString()] = text.toStdString();

    json::OrderedValue event;
    event["event_id"] = QUuid::createUuid().toString(QUuid::Id128).toStdString();
    event["timestamp"] = now();
    event["platform"] = "cocoa"; // the protocol's word for a native desktop client of this kind
    event["level"] = level.toStdString();
    event["release"] = "Pointloom@" + version + "+" + build;
    event["environment"] = "production";
    event["exception"] = {{"values", exceptions}};
    event["contexts"] = {
        // A fixed word of this format of event, as the platform above; the version names the system.
        {"os", {{"name", "macOS"}, {"version", QSysInfo::prettyProductName().toStdString()}}},
        {"app", {{"app_version", version}, {"app_build", build}}},
    };
    event["tags"] = tagTable;
    return event;
}

json::OrderedValue eventOf(const PendingCrashReport& report, const InfoDictionary& info) {
    QString type = QStringLiteral("UnknownCrash");
    if (report.exceptionName)
        type = *report.exceptionName;
    else if (report.signal)
        type = QStringLiteral("Signal-%1").arg(*report.signal);
    const QString value = report.exceptionReason.value_or(QStringLiteral("Low-level signal crash"));
    return buildEvent(QStringLiteral("fatal"), type, value, report.callStack.value_or(std::vector<QString>()),
                      {}, info);
}

QByteArray envelope(const json::OrderedValue& event, const SentryDSN& dsn) {
    const QByteArray body = json::compact(event);
    const QByteArray sentAt = QByteArray::fromStdString(now());
    return "{\"dsn\":\"" + dsn.rawDSN.toUtf8() + "\",\"sent_at\":\"" + sentAt + "\"}\n" +
           "{\"type\":\"event\",\"length\":" + QByteArray::number(body.size()) + "}\n" + body + "\n";
}

}

void uploadEnvelope(const QByteArray& envelope, const SentryDSN& dsn, const std::function<bool()>& isStopping,
                    std::chrono::milliseconds timeout) {
    const QByteArray authentication =
        "Sentry sentry_version=7, sentry_key=" + dsn.publicKey.toUtf8() + ", sentry_client=pointloom/1.0";
    const HttpReply reply = send({
        .url = dsn.envelopeURL,
        .headers = {{"Content-Type", "application/x-sentry-envelope"}, {"X-Sentry-Auth", authentication}},
        .body = envelope,
        .redirects = HttpRedirects::toHttpsOnly,
        .timeout = timeout,
        .isStopping = isStopping,
    });
    constexpr int success = 200;
    if (reply.status == success)
        return;
    if (reply.status != 0)
        printCrashReporterLine(QStringLiteral("Sentry returned HTTP %1").arg(reply.status));
    else
        printCrashReporterLine(QStringLiteral("send failed: ") + reply.failure);
}

}
