#include "Program.h"
#include "support/TestClips.h"

#include <csignal>
#include <QDir>

namespace pointloom {
namespace {

/// A project whose video can be cut at each second.
class SegmentCommandsTest : public ProgramTest {
protected:
    void makeProject(int seconds) const {
        const QString arguments =
            QStringLiteral("-f lavfi -i testsrc2=size=320x180:rate=25:duration=%1 -f lavfi -i "
                           "sine=d=%1 -pix_fmt yuv420p -g 25 -preset ultrafast -c:a aac");
        const QString clip =
            clips.make(QStringLiteral("v.mp4"), QProcess::splitCommand(arguments.arg(seconds)));
        ASSERT_TRUE(QFile::rename(clip, path(QStringLiteral("v.mp4"))));
        ASSERT_EQ(run((std::string(newTennis) + " --video v.mp4").c_str()).status, 0);
    }

    std::string durationOf(const QString& name) const {
        return test::probe(path(name)).at("format").at("duration").get<std::string>();
    }

    test::ClipFolder clips;
};

TEST_F(SegmentCommandsTest, PlanSegmentAndJoinMakeOneVideo) {
    makeProject(4);
    ASSERT_EQ(run("plan m.plp --segments 2 --trim-start 0.5 -o m.json").out, "m.json\n");
    const std::string missing = faultOf("join m.json");
    EXPECT_NE(missing.find("these are missing: 1, 2"), std::string::npos) << missing;

    for (const char* part : {"2", "audio", "1"}) {
        const Outcome outcome = run((std::string("segment m.json ") + part).c_str());
        EXPECT_EQ(outcome.status, 0) << outcome.errText();
    }
    EXPECT_EQ(run("segment m.json 2").errText(), "pointloom-cli: note: segment 2 was finished already\n");
    const Outcome joined = run("join m.json");
    ASSERT_EQ(joined.status, 0) << joined.errText();
    EXPECT_EQ(joined.out, path(QStringLiteral("m.mp4")).toUtf8() + '\n');
    ASSERT_EQ(run("export m.plp --trim-start 0.5 -o single.mp4").status, 0);
    EXPECT_EQ(durationOf(QStringLiteral("m.mp4")), durationOf(QStringLiteral("single.mp4")));
    EXPECT_EQ(
        QDir(path(QStringLiteral("m.parts"))).entryList(QDir::Files | QDir::Hidden),
        (QStringList{QStringLiteral("0001.mp4"), QStringLiteral("0002.mp4"), QStringLiteral("audio.m4a")}));
}

TEST_F(SegmentCommandsTest, AWorkerThatWasKilledIsFollowedByOneThatFinishes) {
    makeProject(40);
    ASSERT_EQ(run("plan m.plp --segments 2 --preset twitter1080p -o m.json").status, 0);
    QProcess worker;
    worker.setWorkingDirectory(folder.path());
    worker.start(program(), QProcess::splitCommand(QStringLiteral("segment m.json 1 --progress json")));
    ASSERT_TRUE(worker.waitForReadyRead(patience));
    kill(static_cast<pid_t>(worker.processId()), SIGKILL);
    ASSERT_TRUE(worker.waitForFinished(patience));
    const QDir parts(path(QStringLiteral("m.parts")));
    EXPECT_EQ(parts.entryList({QStringLiteral("*.unfinished")}).size(), 1);
    EXPECT_FALSE(parts.exists(QStringLiteral("0001.mp4")));

    ASSERT_EQ(run("segment m.json 1").status, 0);
    EXPECT_EQ(parts.entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("0001.mp4")});
}

TEST_F(SegmentCommandsTest, WhatCannotBeDoneIsSaidInOneLine) {
    makeProject(2);
    EXPECT_EQ(faultOf("plan m.plp --segments 2 -o v.mp4", 2)
                  .find("plan: --output: \"v.mp4\" does not end in .json"),
              0U);
    EXPECT_EQ(faultOf("plan m.plp --segments 2 --to v.mp4 -o m.json"),
              "v.mp4: is the source video; choose another output");
    EXPECT_NE(faultOf("plan m.plp --segments 0 -o m.json", 2), "");
    EXPECT_EQ(faultOf("segment none.json 1"), "none.json: no such file");
    EXPECT_NE(faultOf("segment m.plp 1").find("m.plp: "), std::string::npos);
    const Outcome plan = run("plan m.plp --segments 9 -o m.json");
    EXPECT_EQ(plan.errText(), "pointloom-cli: note: the video can be cut into 2 segments only\n");
    EXPECT_EQ(faultOf("segment m.json 3"), "there is no segment 3: the plan has 1 to 2");
    EXPECT_NE(faultOf("segment m.json x", 2), "");
    EXPECT_EQ(faultOf("segment m.json 1 -o v.mp4"), "v.mp4: is the source video; choose another output");
    EXPECT_EQ(faultOf("join m.json -o m.plp", 1).find("m.json: "), 0U);
}

}
}
