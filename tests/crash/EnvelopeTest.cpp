#include "crash/CrashEvent.h"
#include "crash/EnvelopeParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QSysInfo>

namespace pointloom {
namespace {

using testing::MatchesRegex;

constexpr auto isoTime = "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z";

const InfoDictionary& info() {
    static const auto dictionary =
        InfoDictionary::fromJson(R"({"CFBundleShortVersionString": "1.2.3", "CFBundleVersion": "45"})");
    return dictionary;
}

json::Value exceptionOf(const json::Value& event) {
    return event.at("exception").at("values").at(0);
}

test::ParsedEnvelope envelopeOf(const PendingCrashReport& report) {
    const auto dsn = SentryDSN::parse(QStringLiteral("https://key@collector.example/42"));
    return test::parseEnvelope(CrashEvent::envelope(CrashEvent::eventOf(report, info()), *dsn));
}

TEST(Envelope, HoldsTheEventACollectorExpects) {
    PendingCrashReport report;
    report.timestamp = QStringLiteral("2024-05-01T10:00:00Z");
    report.exceptionName = QStringLiteral("std::runtime_error");
    report.exceptionReason = QStringLiteral("gone");
    report.callStack = {QStringLiteral("innermost"), QStringLiteral("outermost")};
    const auto [header, itemHeader, event] = envelopeOf(report);

    EXPECT_EQ(header.at("dsn"), "https://key@collector.example/42");
    EXPECT_THAT(header.at("sent_at").get<std::string>(), MatchesRegex(isoTime));
    EXPECT_EQ(event.size(), 9U);
    EXPECT_THAT(event.at("event_id").get<std::string>(), MatchesRegex("[0-9a-f]{32}"));
    EXPECT_THAT(event.at("timestamp").get<std::string>(), MatchesRegex(isoTime));
    EXPECT_EQ(event.at("platform"), "cocoa");
    EXPECT_EQ(event.at("level"), "fatal");
    EXPECT_EQ(event.at("release"), "Pointloom@1.2.3+45");
    EXPECT_EQ(event.at("environment"), "production");
    EXPECT_EQ(event.at("tags"), json::Value::object());
    EXPECT_EQ(event.at("exception"), json::Value::parse(R"({"values": [{
        "type": "std::runtime_error", "value": "gone",
        "stacktrace": {"frames": [{"function": "outermost"}, {"function": "innermost"}]}}]})"));
    EXPECT_EQ(event.at("contexts").at("app"),
              json::Value::parse(R"({"app_version": "1.2.3", "app_build": "45"})"));
    EXPECT_EQ(event.at("contexts").size(), 2U);
    EXPECT_NE(envelopeOf(report).event.at("event_id"), event.at("event_id"));
}

TEST(Envelope, TellsTheOperatingSystemByItsVersion) {
    const auto os = envelopeOf({}).event.at("contexts").at("os");
    EXPECT_EQ(os.size(), 2U);
    EXPECT_EQ(os.at("name"), "macOS");
    EXPECT_EQ(os.at("version"), QSysInfo::prettyProductName().toStdString());
}

TEST(Envelope, AnEndlessCallStackIsCutToItsInnermostFrames) {
    PendingCrashReport report;
    report.callStack.emplace();
    for (int i = 0; i < 150'000; ++i)
        report.callStack->push_back(QString::number(i));
    const auto exception = exceptionOf(envelopeOf(report).event);
    const auto& frames = exception.at("stacktrace").at("frames");
    ASSERT_EQ(frames.size(), 128U);
    EXPECT_EQ(frames.front().at("function"), "127");
    EXPECT_EQ(frames.back().at("function"), "0");
}

TEST(Envelope, ARecordOfASignalNamesItAndHasNoFrames) {
    PendingCrashReport report;
    report.signal = 11;
    const auto exception = exceptionOf(envelopeOf(report).event);
    EXPECT_EQ(exception.at("type"), "Signal-11");
    EXPECT_EQ(exception.at("value"), "Low-level signal crash");
    EXPECT_EQ(exception.at("stacktrace").at("frames"), json::Value::array());
    EXPECT_EQ(exceptionOf(envelopeOf({}).event).at("type"), "UnknownCrash");
}

TEST(Envelope, TextsOfTheRecordCannotBreakOutOfTheirLine) {
    const QString hostile = QStringLiteral("a\n{\"type\":\"attachment\",\"length\":3}\r\nabc\"\\\x01\x7f") +
                            QChar(QChar::Null) + QStringLiteral("\u2028é🎾");
    PendingCrashReport report;
    report.timestamp = report.exceptionName.emplace(hostile);
    report.exceptionReason = hostile;
    report.callStack = {hostile, QString()};
    const auto exception = exceptionOf(envelopeOf(report).event);
    EXPECT_EQ(exception.at("type"), hostile.toStdString());
    EXPECT_EQ(exception.at("value"), hostile.toStdString());
    EXPECT_EQ(exception.at("stacktrace").at("frames").at(1).at("function"), hostile.toStdString());
}

}
}
