#include "crash/CrashEvent.h"

#include "json/JsonDocument.h"

#include <algorithm>
#include <QDateTime>
#include <QSysInfo>
#include <QUuid>

namespace pointloom::CrashEvent {

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
