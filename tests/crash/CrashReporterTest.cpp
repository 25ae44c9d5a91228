#include "crash/CrashReporter.h"
#include "crash/CrashCapture.h"
#include "crash/EnvelopeParser.h"
#include "support/LoopbackServer.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <sys/stat.h>

namespace pointloom {
namespace {

using test::httpAnswer;
using test::HttpRequest;
using test::LoopbackServer;

const QByteArray record = "{\"timestamp\":\"1700000000\",\"signal\":11}\n";

class CrashReporterTest : public testing::Test {
protected:
    void SetUp() override {
        qputenv("XDG_DATA_HOME", m_home.path().toUtf8());
        ASSERT_TRUE(m_collector.isListening());
    }

    void TearDown() override {
        m_reporter.stop();
        for (const int number : {SIGABRT, SIGSEGV, SIGILL, SIGBUS})
            std::signal(number, SIG_DFL);
    }

    void leave(const QByteArray& bytes) {
        QFile file(CrashCapture::crashFilePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    bool isPending() const { return QFile::exists(CrashCapture::crashFilePath()); }

    void setUpReporter(const QString& dsn = QStringLiteral("http://key@127.0.0.1/42")) {
        m_reporter.setConsentQuery([this] { return ++m_asked != m_markOfIdle && m_hasConsent; });
        m_reporter.setup(InfoDictionary::fromJson("{\"SentryDSN\": \"" + dsn.toUtf8() + "\"}"));
        ++m_queued;
    }

    void flush() {
        m_reporter.flushPending();
        ++m_queued;
    }

    void capture(const QString& error) {
        m_reporter.captureError(error, {{QStringLiteral("step"), QStringLiteral("export")}});
        ++m_queued;
    }

    // Lets the collector and the reporter work until `isDone` or for a moment.
    void work(const std::function<bool()>& isDone) {
        constexpr int moment = 5000; // ms
        for (const QDeadlineTimer deadline(moment); !isDone() && !deadline.hasExpired();) {
            QCoreApplication::processEvents();
            QThread::msleep(2);
        }
    }

    // Each operation asks for consent once, in order: when the question of this last one, which is answered
    // with no, has been put, all before it is done.
    void workUntilIdle() {
        m_markOfIdle = m_queued + 1;
        capture(QStringLiteral("idle"));
        work([this] { return m_asked == m_markOfIdle; });
        EXPECT_EQ(m_asked, m_markOfIdle);
    }

    QTemporaryDir m_home;
    std::atomic<bool> m_hasConsent = true;
    std::atomic<int> m_asked = 0;
    std::atomic<int> m_markOfIdle = 0;
    int m_queued = 0;
    bool m_wasPendingAtArrival = true;
    int m_status = 200;
    LoopbackServer m_collector{[this](const HttpRequest&) {
        m_wasPendingAtArrival = isPending();
        return httpAnswer(m_status);
    }};
    // A DSN's port is not carried over: the test's collector takes the place of port 80 of this machine.
    CrashReporter m_reporter{
        [this](const QByteArray& envelope, SentryDSN dsn, const std::function<bool()>& isStopping) {
            EXPECT_EQ(dsn.envelopeURL.toString(), QStringLiteral("http://127.0.0.1/api/42/envelope/"));
            dsn.envelopeURL.setPort(m_collector.url({}).port());
            uploadEnvelope(envelope, dsn, isStopping);
        }};
};

TEST_F(CrashReporterTest, SendsAPendingRecordOnceAndDeletesItFirst) {
    m_status = 500; // a failed send does not bring it back
    leave(record);
    setUpReporter();
    work([&] { return !m_collector.requests().empty(); });
    ASSERT_EQ(m_collector.requests().size(), 1U);
    EXPECT_FALSE(m_wasPendingAtArrival);
    EXPECT_EQ(m_collector.requests()[0].target, "/api/42/envelope/");
    const auto envelope = test::parseEnvelope(m_collector.requests()[0].body);
    EXPECT_EQ(envelope.event.at("exception").at("values").at(0).at("type"), "Signal-11");
    EXPECT_EQ(envelope.event.at("release"), "Pointloom@0+0");
    flush();
    workUntilIdle();
    EXPECT_EQ(m_collector.requests().size(), 1U);
    EXPECT_FALSE(isPending());
}

TEST_F(CrashReporterTest, WithoutConsentTheRecordStaysUntilThePersonAgrees) {
    m_hasConsent = false;
    leave(record);
    setUpReporter();
    workUntilIdle();
    EXPECT_TRUE(isPending());
    EXPECT_TRUE(m_collector.requests().empty());
    m_hasConsent = true;
    flush();
    work([&] { return !m_collector.requests().empty(); });
    EXPECT_EQ(m_collector.requests().size(), 1U);
}

TEST_F(CrashReporterTest, WithoutAValidDsnNothingIsInstalledOrSent) {
    leave(record);
    for (const char* dsn : {"", "http://127.0.0.1/42", "key@127.0.0.1"}) {
        testing::internal::CaptureStderr();
        setUpReporter(QString::fromLatin1(dsn));
        flush();
        capture(QStringLiteral("unheard"));
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "[CrashReporter] SentryDSN missing or invalid — monitoring disabled\n");
    }
    m_reporter.stop();
    EXPECT_EQ(m_asked, 0);
    EXPECT_EQ(std::signal(SIGSEGV, SIG_DFL), SIG_DFL);
    EXPECT_TRUE(isPending());
    EXPECT_TRUE(m_collector.requests().empty());
}

TEST_F(CrashReporterTest, ARecordThatCannotBeReadIsNeitherSentNorDeleted) {
    setUpReporter();
    const QByteArray start = R"({"timestamp":"1","callStack":)";
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("not JSON"), QByteArray("[]"), QByteArray("{}"),
          QByteArray("{\"timestamp\":1}"), QByteArray("{\"timestamp\":\"1\",\"signal\":\"11\"}"),
          QByteArray("{\"timestamp\":\"1\",\"signal\":4294967296}"),
          QByteArray("{\"timestamp\":\"1\",\"callStack\":[1]}"), QByteArray("{\"timestamp\":\"\xff\"}"),
          start + QByteArray(1'000'000, '['), start + "[\"" + QByteArray(2'000'000, 'a') + "\"]}"}) {
        SCOPED_TRACE(bytes.left(60).constData());
        leave(bytes);
        flush();
        workUntilIdle();
        EXPECT_TRUE(isPending());
    }
    const QString elsewhere = m_home.filePath(QStringLiteral("elsewhere.json"));
    QFile::remove(CrashCapture::crashFilePath());
    leave(record);
    ASSERT_TRUE(QFile::rename(CrashCapture::crashFilePath(), elsewhere));
    ASSERT_TRUE(QFile::link(elsewhere, CrashCapture::crashFilePath()));
    flush();
    workUntilIdle();
    EXPECT_TRUE(isPending()) << "a link";

    QFile::remove(CrashCapture::crashFilePath());
    ASSERT_EQ(mkfifo(qPrintable(CrashCapture::crashFilePath()), S_IRWXU), 0);
    flush();
    workUntilIdle();
    EXPECT_TRUE(m_collector.requests().empty());
}

TEST_F(CrashReporterTest, ErrorsThatAreNotFatalArePrintedWithConsentAndNeverSent) {
    setUpReporter();
    testing::internal::CaptureStderr();
    capture(QStringLiteral("Export failed: no room"));
    workUntilIdle();
    m_hasConsent = false;
    capture(QStringLiteral("unheard"));
    workUntilIdle();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[CrashReporter] error (not sent in DEBUG): Export failed: no room\n");
    EXPECT_TRUE(m_collector.requests().empty());
}

TEST_F(CrashReporterTest, AConsentQueryThatFailsIsNoConsentAndNoCrash) {
    leave(record);
    m_reporter.setConsentQuery([this]() -> bool {
        ++m_asked;
        throw std::runtime_error("settings are gone");
    });
    testing::internal::CaptureStderr();
    m_reporter.setup(InfoDictionary::fromJson(R"({"SentryDSN": "http://key@127.0.0.1/42"})"));
    work([this] { return m_asked > 0; });
    m_reporter.stop();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[CrashReporter] settings are gone\n");
    EXPECT_TRUE(isPending());
}

}
}
