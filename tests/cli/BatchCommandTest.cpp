#include "persistence/ProjectFile.h"
#include "Program.h"
#include "support/TestClips.h"

#include <csignal>
#include <QDir>
#include <QThread>
#include <unistd.h>

namespace pointloom {
namespace {

/// A folder with two matches that can be exported, the second in a subfolder.
class BatchCommandTest : public ProgramTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("in/sub")));
        makeMatch("in/a", 1);
        makeMatch("in/sub/b", 1);
    }

    /// `name`.plp with its video `name`.mp4.
    void makeMatch(const std::string& name, int seconds) const {
        const test::ClipFolder clips;
        const QString source = QStringLiteral("testsrc2=size=160x96:rate=25:duration=%1").arg(seconds);
        const QString clip = clips.make(QStringLiteral("v.mp4"),
                                        {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                         source, QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")});
        const QString base = QString::fromStdString(name);
        ASSERT_TRUE(QFile::rename(clip, path(base + QStringLiteral(".mp4"))));
        const std::string arguments = "new -o " + name +
                                      ".plp --sport tennis --template classic --team1 Ana --team2 Bea"
                                      " --sets 3 --video " +
                                      name + ".mp4";
        ASSERT_EQ(run(arguments.c_str()).status, 0);
    }

    QStringList filesIn(const QString& name) const {
        return QDir(path(name)).entryList(QDir::Files, QDir::Name);
    }
};

TEST_F(BatchCommandTest, ExportsBesideEachDocumentAndSkipsWhatIsUpToDate) {
    const Outcome first = run("batch in");
    EXPECT_EQ(first.status, 0) << first.errText();
    EXPECT_EQ(first.out, "in/a_scoreboard.mp4\n");
    EXPECT_EQ(first.errText(), "pointloom-cli: 1 done, 0 skipped, 0 failed\n");
    EXPECT_EQ(filesIn(QStringLiteral("in")), (QStringList{QStringLiteral("a.mp4"), QStringLiteral("a.plp"),
                                                          QStringLiteral("a_scoreboard.mp4")}));

    EXPECT_EQ(run("batch in --recursive").errText(), "pointloom-cli: 1 done, 1 skipped, 0 failed\n");
    EXPECT_TRUE(exists(QStringLiteral("in/sub/b_scoreboard.mp4")));

    QThread::msleep(20);
    QFile video(path(QStringLiteral("in/a.mp4")));
    ASSERT_TRUE(video.open(QIODevice::ReadWrite));
    ASSERT_TRUE(video.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime));
    video.close();
    EXPECT_EQ(run("batch in --recursive").errText(), "pointloom-cli: 1 done, 1 skipped, 0 failed\n");
    EXPECT_EQ(run("batch in --recursive --again").errText(), "pointloom-cli: 2 done, 0 skipped, 0 failed\n");
}

TEST_F(BatchCommandTest, AFailureIsNamedAtTheEndAndStopsNoOther) {
    ASSERT_TRUE(QFile::remove(path(QStringLiteral("in/a.mp4"))));
    write(QStringLiteral("in/broken.plp"), "not a document");
    const Outcome outcome = run("batch in --recursive --output-dir out --format prores --progress json");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(exists(QStringLiteral("out/sub/b_scoreboard.mov")));
    const QList<QByteArray> lines = outcome.out.trimmed().split('\n');
    const json::Value summary = json::Value::parse(lines.last().toStdString());
    EXPECT_EQ(summary.at("exported"), 1);
    ASSERT_EQ(summary.at("failed").size(), 2U);
    EXPECT_EQ(summary.at("failed")[0],
              "a.plp: the video is missing: " + path(QStringLiteral("in/a.mp4")).toStdString());
    EXPECT_EQ(summary.at("failed")[1].get<std::string>().find("broken.plp: "), 0U);
    EXPECT_EQ(outcome.err.count("broken.plp"), 1) << outcome.errText();
    EXPECT_EQ(json::Value::parse(lines.first().toStdString()), (json::Value{{"document", "sub/b.plp"}}));
}

TEST_F(BatchCommandTest, CtrlCLeavesOnlyWholeVideos) {
    makeMatch("in/long", 60);
    QProcess process;
    process.setWorkingDirectory(folder.path());
    process.start(program(),
                  {QStringLiteral("batch"), QStringLiteral("in"), QStringLiteral("--progress"),
                   QStringLiteral("json"), QStringLiteral("--preset"), QStringLiteral("twitter1080p")});
    QByteArray out;
    while (!out.contains("long.plp") && process.waitForReadyRead(patience))
        out += process.readAllStandardOutput();
    while (!out.contains("long.plp\"}\n{\"progress\"") && process.waitForReadyRead(patience))
        out += process.readAllStandardOutput();
    EXPECT_EQ(filesIn(QStringLiteral("in")).filter(QStringLiteral(".unfinished")).size(), 1);
    kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitCode(), 130);
    const QStringList files = filesIn(QStringLiteral("in"));
    EXPECT_TRUE(files.contains(QStringLiteral("a_scoreboard.mp4")));
    EXPECT_TRUE(files.filter(QStringLiteral("long_")).isEmpty()) << files.join(u' ').toStdString();
}

TEST_F(BatchCommandTest, OddNamesAreExportedOrNamed) {
    makeMatch("in/plain", 1);
    ASSERT_TRUE(QFile::rename(path(QStringLiteral("in/plain.plp")), path(QStringLiteral("in/:colon.plp"))));
    write(QStringLiteral("other.plp"), test::readFile(path(QStringLiteral("in/a.plp"))));
    const QByteArray noText = path(QStringLiteral("in/")).toUtf8() + "\xff\xfe.plp";
    ASSERT_EQ(::link(path(QStringLiteral("other.plp")).toUtf8().constData(), noText.constData()), 0);
    const Outcome outcome = run("batch in --progress json");
    ::unlink(noText.constData()); // a name that Qt cannot remove
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(exists(QStringLiteral("in/:colon_scoreboard.mp4"))) << outcome.errText();
    const json::Value summary = json::Value::parse(outcome.out.trimmed().split('\n').last().toStdString());
    EXPECT_EQ(summary.at("exported"), 2);
    ASSERT_EQ(summary.at("failed").size(), 1U);
    EXPECT_NE(summary.at("failed")[0].get<std::string>().find("its name is not UTF-8"), std::string::npos);
}

TEST_F(BatchCommandTest, AVideoThatAnotherDocumentReadsIsNotReplaced) {
    const QString source = path(QStringLiteral("in/a_scoreboard.mp4")); // the name of what a.plp becomes
    ASSERT_TRUE(QFile::copy(path(QStringLiteral("in/a.mp4")), source));
    const QByteArray before = test::readFile(source);
    const Outcome made =
        runProgram(QProcess::splitCommand(
                       QStringLiteral("new -o in/z.plp --sport tennis --template classic --team1 A --team2 B "
                                      "--video in/a_scoreboard.mp4")),
                   folder.path());
    ASSERT_EQ(made.status, 0) << made.errText();
    const Outcome outcome = run("batch in --again");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.indexOf("rename one"), -1) << outcome.errText();
    EXPECT_EQ(test::readFile(source), before);
    EXPECT_TRUE(exists(QStringLiteral("in/z_scoreboard.mp4")));
}

TEST_F(BatchCommandTest, WrongFoldersAreNamed) {
    EXPECT_EQ(faultOf("batch none"), "none: there is no such folder");
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("empty")));
    EXPECT_EQ(faultOf("batch empty"), "empty: holds no project documents (.plp)");
}

}
}
