#include "crash/CrashCapture.h"
#include "crash/CrashEvent.h"
#include "support/Command.h"
#include "json/JsonDocument.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <sys/wait.h>
#include <utility>

namespace pointloom {
namespace {

using testing::AnyOf;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool allocatorIsReplaced = true;
#else
constexpr bool allocatorIsReplaced = false;
#endif

class CrashCapture : public testing::Test {
protected:
    // The number of the signal that ended the process; 0 when it ended by itself.
    int die(const QString& way) {
        constexpr int patience = 20; // seconds
        const auto [status, output] =
            test::runCommand(QStringLiteral("env XDG_DATA_HOME=%1 %2 %3 2>&1 >/dev/null")
                                 .arg(test::quoted(m_home), test::quoted(m_program), way),
                             patience);
        m_console = output;
        const int number = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
        EXPECT_NE(number, SIGKILL) << "the victim hangs: " << qPrintable(way);
        return number;
    }

    QString recordPath() const { return m_home + QStringLiteral("/Pointloom/pending_crash.json"); }

    QByteArray record() const {
        QFile file(recordPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    PendingCrashReport report() const { return json::decode<PendingCrashReport>(json::parse(record())); }

    QString m_program = QCoreApplication::applicationDirPath() + QStringLiteral("/crash_victim");
    QTemporaryDir m_folder;
    QString m_home = m_folder.path();
    QByteArray m_console;
};

TEST_F(CrashCapture, EachFatalSignalLeavesOneLineAndStillEndsTheProcess) {
    const std::pair<const char*, int> ways[] = {{"abort", SIGABRT},
                                                {"null", SIGSEGV},
                                                {"illegal", SIGILL},
                                                {"bus", SIGBUS},
                                                {"null-in-thread", SIGSEGV}};
    for (const auto& [way, number] : ways) {
        SCOPED_TRACE(way);
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        EXPECT_EQ(die(QString::fromLatin1(way)), number);
        const QRegularExpression line(
            QStringLiteral("\\A\\{\"timestamp\":\"(\\d+)\",\"signal\":(\\d+)\\}\n\\z"));
        const auto match = line.match(QString::fromUtf8(record()));
        ASSERT_TRUE(match.hasMatch()) << record().constData();
        EXPECT_EQ(match.captured(2).toInt(), number);
        EXPECT_GE(match.captured(1).toLongLong(), before);
        EXPECT_LE(match.captured(1).toLongLong(), QDateTime::currentSecsSinceEpoch());
        QFile::remove(recordPath());
    }
}

TEST_F(CrashCapture, AHeapInRuinsDoesNotKeepTheRecordFromBeingWritten) {
    if (allocatorIsReplaced)
        GTEST_SKIP() << "the sanitizer replaces the heap";
    const int number = die(QStringLiteral("corrupted-heap"));
    EXPECT_THAT(number, AnyOf(SIGABRT, SIGSEGV));
    EXPECT_EQ(report().signal, number);
}

TEST_F(CrashCapture, AnUncaughtExceptionLeavesTypeReasonAndSymbolisedStack) {
    for (const char* way : {"exception", "exception-in-thread"}) {
        SCOPED_TRACE(way);
        EXPECT_EQ(die(QString::fromLatin1(way)), SIGABRT);
        const PendingCrashReport left = report();
        EXPECT_EQ(left.exceptionName, QStringLiteral("std::runtime_error"));
        EXPECT_EQ(left.exceptionReason, QStringLiteral("the ball \"left\"\nthe court\x01"));
        EXPECT_EQ(left.signal, std::nullopt);
        const QRegularExpression iso(QStringLiteral("\\A\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ\\z"));
        EXPECT_TRUE(iso.match(left.timestamp).hasMatch()) << qPrintable(left.timestamp);
        ASSERT_TRUE(left.callStack);
        const auto line =
            std::find_if(left.callStack->begin(), left.callStack->end(), [](const QString& text) {
                return text.startsWith(u"crash_victim(victim::throwFromDeepInside()+");
            });
        ASSERT_NE(line, left.callStack->end());
        // Collectors tell crashes apart by the innermost frame. A sanitizer's own may precede it.
        EXPECT_LE(line - left.callStack->begin(), allocatorIsReplaced ? 1 : 0);
        EXPECT_TRUE(m_console.contains("runtime_error")) << "the console no longer names the exception";
        QFile::remove(recordPath());
    }
}

TEST_F(CrashCapture, TheFolderOfTheProgramIsLeftOut) {
    const QString folder = m_folder.filePath(QStringLiteral("anna (work+play) [1]/bin"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString installed = folder + QStringLiteral("/crash_victim");
    ASSERT_TRUE(QFile::link(std::exchange(m_program, installed), installed));
    die(QStringLiteral("exception"));
    EXPECT_FALSE(record().contains("anna")) << record().constData();
    EXPECT_TRUE(record().contains("\"crash_victim(victim::throwFromDeepInside()+")) << record().constData();
}

TEST_F(CrashCapture, AnEndlessReasonLeavesARecordThatTheNextStartReads) {
    die(QStringLiteral("talkative-exception"));
    ASSERT_TRUE(report().exceptionReason);
    EXPECT_TRUE(report().exceptionReason->startsWith(u"oh oh "));
    EXPECT_LT(record().size(), 1024 * 1024);
}

TEST_F(CrashCapture, AnExceptionWithoutReasonLeavesThatKeyOut) {
    die(QStringLiteral("silent-exception"));
    EXPECT_EQ(report().exceptionName, QStringLiteral("victim::Silent"));
    EXPECT_FALSE(json::parse(record()).contains("exceptionReason"));
    die(QStringLiteral("number"));
    EXPECT_EQ(report().exceptionName, QStringLiteral("int"));
    EXPECT_FALSE(json::parse(record()).contains("exceptionReason"));
}

TEST_F(CrashCapture, ADeathInsideOfTheCaptureStillEndsAndLeavesASignal) {
    EXPECT_EQ(die(QStringLiteral("unspeakable-exception")), SIGABRT);
    EXPECT_EQ(report().signal, SIGABRT);
    EXPECT_EQ(die(QStringLiteral("forgotten-thread")), SIGABRT);
    EXPECT_EQ(report().signal, SIGABRT);
    EXPECT_EQ(report().exceptionName, std::nullopt);
}

TEST_F(CrashCapture, RequestsToEndAndAStackOverflowLeaveNoRecord) {
    const std::pair<const char*, int> ways[] = {
        {"terminate-request", SIGTERM}, {"interrupt", SIGINT}, {"end", 0}, {"stack-overflow", SIGSEGV}};
    for (const auto& [way, number] : ways) {
        SCOPED_TRACE(way);
        EXPECT_EQ(die(QString::fromLatin1(way)), number);
        EXPECT_FALSE(QFile::exists(recordPath()));
    }
}

TEST_F(CrashCapture, ASecondCrashOverwritesTheFirst) {
    die(QStringLiteral("exception"));
    die(QStringLiteral("null"));
    EXPECT_EQ(report().signal, SIGSEGV);
    EXPECT_EQ(report().callStack, std::nullopt);
    die(QStringLiteral("exception"));
    EXPECT_EQ(report().signal, std::nullopt);
}

TEST_F(CrashCapture, APlaceThatCannotBeWrittenDoesNotKeepTheProcessAlive) {
    QDir().mkpath(m_home + QStringLiteral("/Pointloom"));
    ASSERT_EQ(mkfifo(qPrintable(recordPath()), S_IRWXU), 0);
    EXPECT_EQ(die(QStringLiteral("null")), SIGSEGV);
    m_home = QStringLiteral("/proc/nowhere");
    EXPECT_EQ(die(QStringLiteral("null")), SIGSEGV);
    EXPECT_EQ(die(QStringLiteral("exception")), SIGABRT);
}

TEST_F(CrashCapture, ALongPathIsCutToTheBufferAndTheRecordGoesToTheCutPath) {
    CrashReporterGlobals::setCrashFilePath(std::string(2000, 'a'));
    CrashReporterGlobals::withCrashFilePathBuffer(
        [](const char* path) { EXPECT_EQ(std::string_view(path), std::string(1023, 'a')); });
    CrashReporterGlobals::setCrashFilePath("b");
    EXPECT_STREQ(CrashReporterGlobals::crashFilePathBuffer(), "b");

    // A folder so deep that the buffer ends inside of the file's name.
    const qsizetype wanted = 1023 - 7 - QStringLiteral("/Pointloom/").size();
    while (m_home.size() < wanted)
        m_home += u'/' +
                  QString(std::min<qsizetype>(200, std::max<qsizetype>(wanted - m_home.size() - 1, 1)), u'd');
    ASSERT_TRUE(QDir().mkpath(m_home));
    EXPECT_EQ(die(QStringLiteral("null")), SIGSEGV);
    const QString cut = recordPath().left(1023);
    ASSERT_LT(cut.size(), recordPath().size());
    EXPECT_TRUE(QFile::exists(cut));
    EXPECT_FALSE(QFile::exists(recordPath()));
}

}
}
