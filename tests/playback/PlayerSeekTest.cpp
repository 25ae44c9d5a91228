#include "playback/NumberedClip.h"
#include "playback/Watched.h"

#include <chrono>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <QFile>
#include <thread>
#include <unistd.h>

namespace pointloom::playback {

namespace {

class PlayerSeekTest : public testing::Test {
protected:
    test::ClipFolder folder;
    Watched watched;
};

double residentMegabytes() {
    std::ifstream file("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    file >> pages >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

}

TEST_F(PlayerSeekTest, ExactSeeksLandOnEveryFrame) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    for (const int number : {49, 1, 24, 25, 26, 3, 48, 0, 13}) {
        ASSERT_TRUE(watched.seek(number * frame));
        EXPECT_NEAR(watched.player.time(), number * frame, 0.0005);
        EXPECT_TRUE(watched.showsFrame(number)) << number << " is " << watched.frameNumber();
    }
}

TEST_F(PlayerSeekTest, SeveralFilesArePlayedAsOne) {
    const QString whole = makeNumberedClip(folder, QStringLiteral("whole.mp4"),
                                           {.frames = 60,
                                            .keyFrameEvery = 10,
                                            .sound = true,
                                            .more = {QStringLiteral("-bf"), QStringLiteral("2")}});
    folder.make(QStringLiteral("of, the; match %%20 %d.mp4"),
                {QStringLiteral("-i"), whole, QStringLiteral("-c"), QStringLiteral("copy"),
                 QStringLiteral("-f"), QStringLiteral("segment"), QStringLiteral("-segment_times"),
                 QStringLiteral("0.8,1.6"), QStringLiteral("-reset_timestamps"), QStringLiteral("1"),
                 QStringLiteral("-avoid_negative_ts"), QStringLiteral("disabled"),
                 QStringLiteral("-segment_format_options"), QStringLiteral("avoid_negative_ts=disabled")});
    std::vector<QString> files;
    for (const char number : {'0', '1', '2'})
        files.push_back(folder.path(QStringLiteral("of, the; match %20 ") + QLatin1Char(number) +
                                    QStringLiteral(".mp4")));
    ASSERT_TRUE(watched.load({files.front(), files})) << watched.failures.value(0).toStdString();
    EXPECT_NEAR(watched.player.duration(), 2.4, 0.03);
    for (const int number : {20, 19, 39, 40, 41, 0, 59, 21}) {
        ASSERT_TRUE(watched.seek(number * frame));
        EXPECT_NEAR(watched.player.time(), number * frame, 0.0005);
        EXPECT_TRUE(watched.showsFrame(number)) << number << " is " << watched.frameNumber();
    }
    ASSERT_TRUE(watched.seek(18 * frame));
    for (int number = 19; number < 23; ++number) {
        watched.player.stepForward();
        EXPECT_TRUE(Watched::waitFor([&] { return watched.showsFrame(number); })) << number;
    }
    QFile::remove(files[2]);
    EXPECT_TRUE(Watched::waitFor([&] { return !watched.failures.isEmpty(); }));
    EXPECT_TRUE(watched.failures.value(0).contains(QStringLiteral("match %20 2.mp4")));
}

TEST_F(PlayerSeekTest, ExactSeeksTellFramesOfAHighRateApart) {
    ASSERT_TRUE(watched.load(
        makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.rate = QStringLiteral("240"), .frames = 60})));
    for (const int number : {59, 7, 8, 30}) {
        ASSERT_TRUE(watched.seek(number / 240.0));
        EXPECT_TRUE(watched.showsFrame(number)) << number << " is " << watched.frameNumber();
    }
}

TEST_F(PlayerSeekTest, SeeksLandOnFramesOfAVariableRate) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), variableRate());
    ASSERT_TRUE(watched.load(clip));
    for (const int number : {11, 4, 10, 1, 0}) {
        const double time = variableRateTime(number);
        ASSERT_TRUE(watched.seek(time));
        EXPECT_NEAR(watched.player.time(), time, 0.001);
        EXPECT_TRUE(watched.showsFrame(number)) << number << " is " << watched.frameNumber();
    }
}

// As cameras write them: the pictures before a key frame need the one before it.
TEST_F(PlayerSeekTest, ExactSeeksReachFramesThatReferAcrossAKeyFrame) {
    ASSERT_TRUE(watched.load(makeNumberedClip(
        folder, QStringLiteral("clip.mp4"),
        {.frames = 60,
         .keyFrameEvery = 10,
         .more = {QStringLiteral("-x264-params"), QStringLiteral("open-gop=1:b-adapt=0")}})));
    for (int number = 27; number < 41; ++number) {
        ASSERT_TRUE(watched.seek(number * frame));
        EXPECT_TRUE(watched.showsFrame(number)) << number << " is " << watched.frameNumber();
    }
}

TEST_F(PlayerSeekTest, SeeksBeyondTheEndsStayInTheFile) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true})));
    ASSERT_TRUE(watched.seek(1e9));
    EXPECT_TRUE(watched.showsFrame(49));
    EXPECT_LE(watched.player.time(), watched.player.duration());
    ASSERT_TRUE(watched.seek(-5));
    EXPECT_TRUE(watched.showsFrame(0));
    watched.player.seek(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(watched.player.isSeeking());
    EXPECT_EQ(watched.ends, 0) << "the end is only reached by playing";
}

TEST_F(PlayerSeekTest, ASeekToTheEndWhilePlayingEndsThere) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true})));
    watched.player.play();
    watched.player.seek(watched.player.duration());
    ASSERT_TRUE(Watched::waitFor([&] { return watched.ends == 1; }));
    EXPECT_FALSE(watched.player.isPlaying());
    watched.player.play();
    EXPECT_TRUE(Watched::waitFor([&] { return watched.player.time() < 1; })) << "from the beginning";
}

// While the main thread sleeps, libmpv plays on and tells things that are out of date when they are read.
TEST_F(PlayerSeekTest, PlayingGoesOnFromASeekAlthoughTheMainThreadIsLate) {
    using namespace std::chrono_literals;
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true})));
    watched.player.seek(5 * frame);
    watched.player.play();
    std::this_thread::sleep_for(1s);
    ASSERT_TRUE(Watched::waitFor([&] { return !watched.player.isSeeking(); }));
    EXPECT_GT(watched.player.time(), 10 * frame) << "what was played is not played again";

    std::this_thread::sleep_for(2s); // to the end
    watched.player.seek(10 * frame);
    EXPECT_TRUE(Watched::waitFor([&] { return watched.player.time() > 20 * frame; }, 5000));
    EXPECT_TRUE(Watched::waitFor([&] { return watched.ends == 1; }));
    EXPECT_FALSE(watched.player.isPlaying());
}

TEST_F(PlayerSeekTest, DraggingThePlayheadDoesNotQueueUp) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    const std::size_t seeksBefore = watched.seeks.size();
    for (int i = 0; i < 500; ++i)
        watched.player.seek(i % 50 * frame);
    EXPECT_NEAR(watched.player.time(), 49 * frame, 1e-9) << "the playhead is where it was dragged to";
    ASSERT_TRUE(Watched::waitFor([this] { return !watched.player.isSeeking(); }));
    EXPECT_EQ(watched.seeks.size() - seeksBefore, 2U);
    EXPECT_TRUE(watched.showsFrame(49));
}

TEST_F(PlayerSeekTest, AQuickSeekShowsTheKeyFrameAndKeepsThePlayhead) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    ASSERT_TRUE(watched.seek(40 * frame, Player::SeekMode::keyframe));
    EXPECT_TRUE(watched.showsFrame(25));
    Watched::settle();
    EXPECT_NEAR(watched.player.time(), 40 * frame, 1e-9);
    ASSERT_FALSE(watched.seeks.empty());
    EXPECT_NEAR(watched.seeks.back(), 25 * frame, 0.0005);
    ASSERT_TRUE(watched.seek(40 * frame));
    EXPECT_TRUE(watched.showsFrame(40));
}

TEST_F(PlayerSeekTest, StepsGoOneFrameEitherWayAndPause) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true})));
    ASSERT_TRUE(watched.seek(24 * frame));
    watched.player.stepForward();
    EXPECT_TRUE(watched.showsFrame(25)) << watched.frameNumber();
    EXPECT_TRUE(watched.reaches(25 * frame)) << watched.player.time();
    watched.player.stepBackward();
    EXPECT_TRUE(watched.showsFrame(24)) << watched.frameNumber();
    EXPECT_TRUE(watched.reaches(24 * frame)) << watched.player.time();
    for (int i = 0; i < 3; ++i)
        watched.player.stepBackward();
    EXPECT_TRUE(watched.showsFrame(21)) << watched.frameNumber();

    watched.player.play();
    watched.player.stepForward();
    EXPECT_FALSE(watched.player.isPlaying());
    Watched::settle();
    const double time = watched.player.time();
    Watched::settle();
    EXPECT_DOUBLE_EQ(watched.player.time(), time);
}

TEST_F(PlayerSeekTest, StepsStopAtTheEndsOfTheFile) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    watched.player.stepBackward();
    Watched::settle();
    EXPECT_TRUE(watched.showsFrame(0));
    ASSERT_TRUE(watched.seek(48 * frame));
    for (int i = 0; i < 3; ++i) {
        watched.player.stepForward();
        Watched::settle();
    }
    EXPECT_TRUE(watched.showsFrame(49));
    EXPECT_EQ(watched.ends, 0);
    watched.player.stepBackward();
    EXPECT_TRUE(watched.showsFrame(48)) << watched.frameNumber();
}

TEST_F(PlayerSeekTest, ASeekBeforeTheFileIsOpenIsTheFirstFrameShown) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    watched.player.load(clip);
    watched.player.seek(30 * frame);
    ASSERT_TRUE(Watched::waitFor([this] { return watched.loads == 1 && !watched.player.isSeeking(); }));
    EXPECT_TRUE(watched.showsFrame(30));
    EXPECT_NEAR(watched.player.time(), 30 * frame, 0.0005);
}

// The file's own times count, not times from its first frame.
TEST_F(PlayerSeekTest, TimesAreTheFilesOwnWhenItDoesNotStartAtZero) {
    const QString clip =
        makeNumberedClip(folder, QStringLiteral("clip.mp4"),
                         {.more = {QStringLiteral("-output_ts_offset"), QStringLiteral("10"),
                                   QStringLiteral("-movflags"), QStringLiteral("+faststart")}});
    ASSERT_TRUE(watched.load(clip));
    EXPECT_NEAR(watched.player.time(), 10, 0.0005);
    EXPECT_EQ(watched.frameNumber(), 0);
    EXPECT_NEAR(watched.player.duration(), 12, 0.05);
    ASSERT_TRUE(watched.seek(10 + 30 * frame));
    EXPECT_TRUE(watched.showsFrame(30));
    ASSERT_TRUE(watched.seek(3));
    EXPECT_TRUE(watched.showsFrame(0));
}

TEST_F(PlayerSeekTest, MemoryStaysFlatOverManySeeks) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer holds on to memory that was given back";
#endif
    ASSERT_TRUE(
        watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"),
                                      {.frames = 250, .size = QStringLiteral("640x360"), .sound = true})));
    const auto seekAround = [this](int count) {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(watched.seek(i * 97 % 250 * frame));
    };
    seekAround(60);
    const double before = residentMegabytes();
    seekAround(240);
    EXPECT_LT(residentMegabytes() - before, 60);
}

}
