#include "playback/NumberedClip.h"
#include "playback/Watched.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QElapsedTimer>

namespace pointloom::playback {

namespace {

class PlayerTest : public testing::Test {
protected:
    test::ClipFolder folder;
};

}

TEST_F(PlayerTest, LoadingShowsTheFirstFrameAndKnowsTheFile) {
    Watched watched;
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    EXPECT_EQ(watched.frameNumber(), 0);
    EXPECT_DOUBLE_EQ(watched.player.time(), 0);
    EXPECT_NEAR(watched.player.duration(), 2.0, 0.001);
    EXPECT_EQ(watched.player.size(), QSize(320, 64));
    EXPECT_FALSE(watched.player.isPlaying());
    EXPECT_FALSE(watched.player.isSeeking());
    EXPECT_THAT(watched.failures, testing::IsEmpty());
    watched.player.unload();
    EXPECT_FALSE(watched.player.isLoaded());
    EXPECT_DOUBLE_EQ(watched.player.duration(), 0);
    EXPECT_TRUE(watched.player.size().isEmpty());
}

TEST_F(PlayerTest, PlaysToTheEndPausesThereAndPlaysAgainFromTheBeginning) {
    Watched watched;
    ASSERT_TRUE(
        watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.frames = 20, .sound = true})));
    watched.player.play();
    EXPECT_TRUE(watched.player.isPlaying());
    ASSERT_TRUE(Watched::waitFor([&] { return watched.ends == 1; }));
    EXPECT_FALSE(watched.player.isPlaying());
    EXPECT_TRUE(watched.showsFrame(19));
    EXPECT_TRUE(std::is_sorted(watched.times.begin(), watched.times.end()));
    EXPECT_GT(watched.times.size(), 5U);

    watched.player.play();
    ASSERT_TRUE(Watched::waitFor([&] { return watched.ends == 2; }));
    EXPECT_TRUE(watched.showsFrame(19));
}

TEST_F(PlayerTest, TimesWhilePlayingAreThoseOfFrames) {
    Watched watched;
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    watched.player.play();
    ASSERT_TRUE(Watched::waitFor([&] { return watched.player.time() > 0.8; }));
    watched.player.pause();
    Watched::settle();
    for (const double time : watched.times)
        EXPECT_NEAR(time, std::round(time / frame) * frame, 0.0005);
    EXPECT_TRUE(watched.showsFrame(static_cast<int>(std::lround(watched.player.time() / frame))));
}

TEST_F(PlayerTest, TimesOfFramesAreThoseOfTheFileToTheLastDigits) {
    struct Clock {
        QString rate;
        double framesPerSecond;
        QString timescale;
    };
    for (const auto& [rate, framesPerSecond, timescale] :
         {Clock{QStringLiteral("24"), 24, QStringLiteral("12288")},
          Clock{QStringLiteral("24"), 24, QStringLiteral("24")},
          Clock{QStringLiteral("30"), 30, QStringLiteral("15360")},
          Clock{QStringLiteral("30000/1001"), 30000 / 1001.0, QStringLiteral("30000")}}) {
        Watched watched;
        ASSERT_TRUE(watched.load(makeNumberedClip(
            folder, QStringLiteral("clip.mp4"),
            {.rate = rate, .frames = 40, .more = {QStringLiteral("-video_track_timescale"), timescale}})));
        for (int number = 1; number < 40; ++number) {
            watched.player.stepForward();
            ASSERT_TRUE(watched.reaches(number / framesPerSecond));
            EXPECT_NEAR(watched.player.time(), number / framesPerSecond, 1e-9) << rate.toStdString();
        }
    }
}

TEST_F(PlayerTest, SpeedIsKeptInItsRangeAndPlaysFaster) {
    Watched watched;
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.frames = 100})));
    watched.player.setSpeed(100);
    EXPECT_DOUBLE_EQ(watched.player.speed(), Player::maximumSpeed);
    QElapsedTimer timer;
    timer.start();
    watched.player.play();
    ASSERT_TRUE(Watched::waitFor([&] { return watched.ends == 1; }));
    EXPECT_LT(timer.elapsed(), 3500) << "four seconds of clip at four times the speed";
    watched.player.setSpeed(0);
    EXPECT_DOUBLE_EQ(watched.player.speed(), Player::minimumSpeed);
}

TEST_F(PlayerTest, PlayingBeforeTheFileIsOpenStartsWhenItIs) {
    Watched watched;
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.frames = 10});
    watched.player.load(clip);
    watched.player.play();
    EXPECT_TRUE(Watched::waitFor([&] { return watched.ends == 1; }));
}

TEST_F(PlayerTest, TheNewestOfSeveralLoadsWins) {
    Watched watched;
    const QString small = makeNumberedClip(folder, QStringLiteral("small.mp4"), {.frames = 10});
    const QString large = makeNumberedClip(folder, QStringLiteral("large.mp4"),
                                           {.frames = 10, .size = QStringLiteral("640x128")});
    for (int i = 0; i < 10; ++i) {
        watched.player.load(small);
        watched.player.load(folder.path(QStringLiteral("missing.mp4")));
        watched.player.load(large);
        if (i % 3 == 0)
            Watched::settle(5);
    }
    ASSERT_TRUE(Watched::waitFor([&] { return watched.player.isLoaded(); }));
    Watched::settle();
    EXPECT_EQ(watched.player.size(), QSize(640, 128));
    EXPECT_EQ(watched.player.path(), large);
    EXPECT_THAT(watched.failures, testing::IsEmpty());
}

TEST_F(PlayerTest, AFileWaitsForAViewAndOutlivesIt) {
    Player player(Sound::none);
    player.load(makeNumberedClip(folder, QStringLiteral("clip.mp4")));
    Watched::settle(200);
    EXPECT_FALSE(player.isLoaded());
    {
        PlayerView view(player, PlayerView::Rendering::software);
        view.show();
        ASSERT_TRUE(Watched::waitFor([&] { return player.isLoaded(); }));
        player.seek(1);
        ASSERT_TRUE(Watched::waitFor([&] { return !player.isSeeking(); }));
    }
    Watched::settle();
    PlayerView view(player, PlayerView::Rendering::software);
    EXPECT_TRUE(player.isSeeking());
    view.resize(320, 64);
    view.show();
    ASSERT_TRUE(
        Watched::waitFor([&] { return !player.isSeeking() && frameNumberIn(view.grab().toImage()) == 25; }));
}

TEST_F(PlayerTest, HardwareDecodingAndSoundSettingsDoNotDisturbPlayback) {
    Watched watched;
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true})));
    watched.player.setVolume(7);
    EXPECT_DOUBLE_EQ(watched.player.volume(), 1);
    watched.player.setMuted(true);
    watched.player.setHardwareDecoding(true);
    ASSERT_TRUE(watched.seek(1));
    EXPECT_TRUE(watched.showsFrame(25));
    watched.player.setHardwareDecoding(false);
    ASSERT_TRUE(watched.seek(1 + frame));
    EXPECT_TRUE(watched.showsFrame(26));
    EXPECT_THAT(watched.failures, testing::IsEmpty());
}

TEST(PlayerLocale, ADecimalCommaInTheDesktopsLocaleDoesNotReachThePlayer) {
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // where it is not installed this changes nothing
    const Player player(Sound::none);
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

}
