// The pictures of a small copy in place of the file's own. The copies here are negatives, so that frame n of
// one shows the number 255 - n.
#include "playback/NumberedClip.h"
#include "playback/Watched.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QFile>

namespace pointloom::playback {

namespace {

class CopyTest : public testing::Test {
protected:
    QString makeNegative(const QString& clip) const {
        return folder.make(QStringLiteral("copy.mp4"),
                           QStringList{QStringLiteral("-i"), clip} +
                               QString::fromLatin1("-an -vf negate,scale=160:32 -fps_mode passthrough "
                                                   "-enc_time_base 1/16000 -c:v libx264 -bf 0 -g 8")
                                   .split(u' '));
    }

    bool showsNegative(int number) { return watched.showsFrame(255 - number); }

    test::ClipFolder folder;
    Watched watched;
};

}

TEST_F(CopyTest, TakesOverWithoutAJumpAndIsAsExactAsTheFile) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true});
    ASSERT_TRUE(watched.load(clip));
    ASSERT_TRUE(watched.seek(33 * frame));
    const double duration = watched.player.duration();
    watched.times.clear();
    watched.player.showCopy(makeNegative(clip));
    ASSERT_TRUE(showsNegative(33)) << watched.frameNumber();
    EXPECT_TRUE(watched.times.empty()) << "the playhead moved";
    EXPECT_TRUE(watched.player.showsCopy());
    EXPECT_FALSE(watched.player.isPlaying());
    EXPECT_EQ(watched.player.size(), QSize(320, 64));
    EXPECT_DOUBLE_EQ(watched.player.duration(), duration);

    for (const int number : {49, 1, 24, 25, 0, 13}) {
        ASSERT_TRUE(watched.seek(number * frame, Player::SeekMode::keyframe));
        EXPECT_TRUE(showsNegative(number)) << number << " is " << 255 - watched.frameNumber();
        EXPECT_NEAR(watched.player.time(), number * frame, 0.0005);
    }
    watched.player.stepForward();
    EXPECT_TRUE(showsNegative(14));
    watched.player.stepBackward();
    EXPECT_TRUE(showsNegative(13));

    watched.player.showCopy({});
    EXPECT_TRUE(watched.showsFrame(13)) << watched.frameNumber();
    ASSERT_TRUE(watched.seek(40 * frame));
    EXPECT_TRUE(watched.showsFrame(40));
}

TEST_F(CopyTest, PlaybackGoesOnThroughTheChangeToTheEnd) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.frames = 75, .sound = true});
    const QString copy = makeNegative(clip);
    ASSERT_TRUE(watched.load(clip));
    watched.player.setVolume(0.3);
    watched.player.play();
    ASSERT_TRUE(Watched::waitFor([&] { return watched.player.time() > 0.4; }));
    watched.player.showCopy(copy);
    ASSERT_TRUE(Watched::waitFor([&] { return watched.ends == 1; }));
    EXPECT_TRUE(showsNegative(74)) << watched.frameNumber();
    EXPECT_TRUE(std::is_sorted(watched.times.begin(), watched.times.end()));
    EXPECT_DOUBLE_EQ(watched.player.volume(), 0.3);
    EXPECT_TRUE(watched.failures.isEmpty());
}

TEST_F(CopyTest, FramesOfAVariableRateKeepTheirTimes) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), variableRate());
    ASSERT_TRUE(watched.load(clip));
    watched.player.showCopy(makeNegative(clip));
    ASSERT_TRUE(showsNegative(0));
    for (const int number : {11, 4, 10, 1}) {
        const double time = variableRateTime(number);
        ASSERT_TRUE(watched.seek(time));
        EXPECT_NEAR(watched.player.time(), time, 0.001);
        EXPECT_TRUE(showsNegative(number)) << number << " is " << 255 - watched.frameNumber();
    }
}

TEST_F(CopyTest, StandsForAllFilesOfARecording) {
    const ClipOptions second{.frames = 25, .sound = true};
    const QString first = makeNumberedClip(folder, QStringLiteral("1.mp4"), second);
    const QString further = makeNumberedClip(folder, QStringLiteral("2.mp4"), second);
    const QString copy =
        folder.make(QStringLiteral("copy.mp4"),
                    qPrintable(QStringLiteral("-i %1 -i %2 -filter_complex [0:v][1:v]concat=n=2,negate -c:v "
                                              "libx264 -bf 0 -g 8")
                                   .arg(first, further)));
    watched.player.load(media::Recording(first, std::vector{first, further}));
    ASSERT_TRUE(Watched::waitFor([&] { return watched.loads == 1; }));
    watched.player.showCopy(copy);
    for (const int number : {35, 10, 49, 26}) {
        ASSERT_TRUE(watched.seek(number * frame));
        EXPECT_TRUE(showsNegative(number % 25)) << number << " is " << 255 - watched.frameNumber();
        EXPECT_NEAR(watched.player.time(), number * frame, 0.0005);
    }
}

TEST_F(CopyTest, TheFilesOwnPicturesReturnWhenTheCopyIsDeleted) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    const QString copy = makeNegative(clip);
    ASSERT_TRUE(watched.load(clip));
    watched.player.showCopy(copy);
    ASSERT_TRUE(watched.seek(20 * frame));
    ASSERT_TRUE(showsNegative(20));
    ASSERT_TRUE(QFile::remove(copy));
    EXPECT_TRUE(watched.showsFrame(20)) << watched.frameNumber();
    EXPECT_FALSE(watched.player.showsCopy());
    EXPECT_TRUE(watched.failures.isEmpty());
}

TEST_F(CopyTest, WhatIsNoVideoIsNotShown) {
    ASSERT_TRUE(watched.load(makeNumberedClip(folder, QStringLiteral("clip.mp4"))));
    watched.player.showCopy(folder.write(QStringLiteral("copy.mp4"), "not a video"));
    Watched::settle();
    ASSERT_TRUE(watched.seek(5 * frame));
    EXPECT_TRUE(watched.showsFrame(5));
    EXPECT_TRUE(watched.failures.isEmpty());
}

TEST_F(CopyTest, AnotherFileIsShownWithoutIt) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    ASSERT_TRUE(watched.load(clip));
    watched.player.showCopy(makeNegative(clip));
    ASSERT_TRUE(watched.load(clip));
    ASSERT_TRUE(watched.seek(9 * frame));
    EXPECT_TRUE(watched.showsFrame(9));
}

}
