// Which frames come out, when, and what is said of them.
#include "media/VideoReader.h"

#include "support/TestClips.h"
#include "TestFrames.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pointloom::test {

using namespace media;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

namespace {

// Frame n has brightness 16 + 4 n, so that each can be told from its neighbours.
constexpr const char* numberedFrames =
    "-f lavfi -i color=s=64x64:r=25:d=2,format=yuv420p,geq=lum='16+4*N':cb=128:cr=128 -c:v libx264 -bf 3 -g "
    "12 -qp 2";

struct Shown {
    double time = 0;
    int number = 0;
};

Shown shown(const VideoFrame& frame) {
    return {frame.time(), static_cast<int>(std::lround((sampleAt(frame, 32, 32).y - 16) / 4.0))};
}

std::vector<Shown> readAll(VideoReader& reader) {
    std::vector<Shown> frames;
    while (const std::optional<VideoFrame> frame = reader.read())
        frames.push_back(shown(*frame));
    return frames;
}

QStringList words(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

}

TEST(VideoReader, FramesComeInPresentationOrderWithTheirTimes) {
    const ClipFolder folder;
    VideoReader reader = VideoReader::open(folder.make(QStringLiteral("b.mp4"), numberedFrames));
    const std::vector<Shown> frames = readAll(reader);
    ASSERT_EQ(frames.size(), 50U);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(frames[i].number, static_cast<int>(i));
        EXPECT_NEAR(frames[i].time, static_cast<double>(i) / 25, 1e-9);
    }
    EXPECT_EQ(reader.damage(), Damage{});
    EXPECT_NEAR(reader.info().duration, 2.0, 1e-3);
    EXPECT_EQ(reader.track().frameRate, (Rational{25, 1}));
}

TEST(VideoReader, SeekLandsOnTheFrameThatIsShownThen) {
    const ClipFolder folder;
    VideoReader reader = VideoReader::open(folder.make(QStringLiteral("b.mp4"), numberedFrames));
    for (const double time :
         {0.0, 0.04, 0.039, 0.479, 0.48, 0.5, 0.96, 1.0, 1.119999, 1.999, 0.2, 50.0, -3.0}) {
        reader.seek(time);
        const int expected = std::clamp(static_cast<int>(std::floor(time * 25 + 1e-6)), 0, 49);
        const std::optional<VideoFrame> first = reader.read();
        ASSERT_TRUE(first) << time;
        EXPECT_EQ(shown(*first).number, expected) << time;
        if (const std::optional<VideoFrame> second = reader.read()) {
            EXPECT_EQ(shown(*second).number, expected + 1) << "reading goes on after " << time;
        } else {
            EXPECT_EQ(expected, 49);
        }
    }
}

TEST(VideoReader, ASeekThroughManyFramesCanBeStopped) {
    const ClipFolder folder;
    VideoReader reader = VideoReader::open(
        folder.make(QStringLiteral("long.mp4"),
                    "-f lavfi -i testsrc2=s=64x64:r=25:d=8 -c:v libx264 -g 999 -pix_fmt yuv420p"));
    int polls = 0;
    reader.seek(7, [&] { return ++polls == 5; });
    EXPECT_EQ(polls, 5) << "of 175 frames";
}

TEST(VideoReader, AClockAsCoarseAsTheRateIsCountedInFinerTicks) {
    const ClipFolder folder;
    VideoReader reader = VideoReader::open(
        folder.make(QStringLiteral("coarse.mp4"),
                    "-f lavfi -i testsrc2=s=64x64:r=24:d=2 -c:v libx264 -g 12 -bf 2 -pix_fmt yuv420p "
                    "-video_track_timescale 24"));
    EXPECT_EQ(reader.track().timeBase, (Rational{1, 600}));
    for (const int start : {0, 25, 47}) {
        reader.seek(start / 24.0);
        for (int number = start; number < 48; ++number) {
            const std::optional<VideoFrame> frame = reader.read();
            ASSERT_TRUE(frame);
            EXPECT_EQ(frame->timestamp(), number * 25);
        }
        EXPECT_FALSE(reader.read());
        EXPECT_EQ(reader.damage(), Damage{});
    }
}

TEST(VideoReader, AQuickSeekGoesOnFromTheKeyFrameBefore) {
    const ClipFolder folder;
    VideoReader reader = VideoReader::open(folder.make(QStringLiteral("b.mp4"), numberedFrames));
    constexpr int keyFrameDistance = 12;
    for (const double time : {1.2, 0.1, 0.49, 1.99, 0.0}) {
        reader.seekToKeyFrame(time);
        const int wanted = static_cast<int>(std::floor(time * 25 + 1e-6));
        const int number = shown(*reader.read()).number;
        EXPECT_EQ(number % keyFrameDistance, 0) << time;
        EXPECT_LE(number, wanted) << time;
        EXPECT_GT(number, wanted - 2 * keyFrameDistance) << time;
        EXPECT_EQ(shown(*reader.read()).number, number + 1) << "reading goes on after " << time;
    }
}

TEST(VideoReader, AnEditListCutsFramesAndMovesTimeZero) {
    const ClipFolder folder;
    const QString whole = folder.make(QStringLiteral("b.mp4"), numberedFrames);
    const QString cut =
        folder.make(QStringLiteral("cut.mp4"), words("-ss 0.52 -i") + QStringList{whole} + words("-c copy"));
    VideoReader reader = VideoReader::open(cut);
    const std::vector<Shown> frames = readAll(reader);
    ASSERT_EQ(frames.size(), 37U);
    EXPECT_EQ(frames.front().number, 13) << "the key frame 12 lies before the cut";
    EXPECT_NEAR(frames.front().time, 0, 1e-9);
    reader.seek(0.4);
    EXPECT_EQ(shown(*reader.read()).number, 23);
    reader.seek(0);
    EXPECT_EQ(shown(*reader.read()).number, 13);
}

TEST(VideoReader, ALateFirstFrameKeepsItsTime) {
    const ClipFolder folder;
    const QString whole = folder.make(QStringLiteral("b.mp4"), numberedFrames);
    const QString late = folder.make(QStringLiteral("late.mp4"),
                                     words("-f lavfi -i sine=d=3 -itsoffset 1 -i") + QStringList{whole} +
                                         words("-map 0:a -map 1:v -c:v copy -c:a aac"));
    VideoReader reader = VideoReader::open(late);
    EXPECT_NEAR(reader.read()->time(), 1.0, 1e-6);
    reader.seek(0.3);
    EXPECT_EQ(shown(*reader.read()).number, 0);
    reader.seek(1.5);
    EXPECT_EQ(shown(*reader.read()).number, 12);
    EXPECT_NEAR(reader.info().duration, 3.0, 0.05);
}

TEST(VideoReader, VariableRatesAndFragmentsKeepEveryTime) {
    const ClipFolder folder;
    const QStringList variable =
        words("-f lavfi -i color=s=64x64:r=25:d=0.4,settb=1/1000,setpts='N*N*7+N*33' "
              "-fps_mode passthrough -enc_time_base 1:1000 -c:v libx264 -video_track_timescale 1000");
    std::vector<double> expected;
    for (int n = 0; n < 10; ++n)
        expected.push_back((n * n * 7 + n * 33) / 1000.0);
    for (const char* flags : {"-movflags +faststart", "-movflags +frag_keyframe+empty_moov -g 3 -bf 0"}) {
        VideoReader reader = VideoReader::open(folder.make(QStringLiteral("v.mp4"), variable + words(flags)));
        std::vector<double> times;
        for (const Shown& frame : readAll(reader))
            times.push_back(frame.time);
        EXPECT_THAT(times, Pointwise(DoubleNear(1e-9), expected)) << flags;
        reader.seek(0.3);
        EXPECT_NEAR(reader.read()->time(), expected[4], 1e-9) << flags;
        reader.seek(0);
        EXPECT_NEAR(reader.read()->time(), 0, 1e-9) << flags;
    }
}

TEST(VideoReader, WhatAFileLeavesOutIsFilledInAsPlayersDo) {
    const ClipFolder folder;
    const auto colorOf = [&](const char* arguments) {
        return VideoReader::open(folder.make(QStringLiteral("c.mp4"), arguments)).track().color;
    };
    const ColorDescription small = colorOf("-f lavfi -i color=s=640x480:d=0.1 -pix_fmt yuv420p -c:v libx264");
    EXPECT_EQ(small.matrix, Matrix::bt601);
    EXPECT_EQ(small.range, Range::limited);
    EXPECT_EQ(small.primaries, Primaries::bt601_525);
    EXPECT_EQ(colorOf("-f lavfi -i color=s=1280x320:d=0.1 -pix_fmt yuv420p -c:v libx264").matrix,
              Matrix::bt709);
    EXPECT_EQ(colorOf("-f lavfi -i color=s=320x578:d=0.1 -pix_fmt yuv420p -c:v libx264").matrix,
              Matrix::bt709);
    EXPECT_EQ(colorOf("-f lavfi -i color=s=64x64:d=0.1 -pix_fmt yuvj420p -c:v libx264").range, Range::full);
    const ColorDescription pq =
        colorOf("-f lavfi -i color=s=64x64:d=0.1 -pix_fmt yuv420p10le -c:v libx265 -x265-params "
                "log-level=none:colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc");
    EXPECT_EQ(pq, (ColorDescription{Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020,
                                    ChromaLocation::left}));
}

TEST(VideoReader, FramesSayTheSameAsTheirTrack) {
    const ClipFolder folder;
    VideoReader reader = VideoReader::open(folder.make(
        QStringLiteral("f.mp4"), "-f lavfi -i color=s=64x64:d=0.1 -pix_fmt yuvj422p -c:v libx264"));
    const FrameFormat expected{Subsampling::s422, 8, reader.track().color};
    EXPECT_EQ(reader.track().format, expected);
    EXPECT_EQ(reader.read()->format(), expected);
}

TEST(VideoReader, UprightSizeCountsThePixelShapeAndTheTurn) {
    VideoTrackInfo track;
    track.storedSize = QSize(720, 576);
    track.sampleAspectRatio = {64, 45};
    EXPECT_EQ(track.uprightSize(), QSize(1024, 576));
    track.orientation = {false, 3};
    EXPECT_EQ(track.uprightSize(), QSize(576, 1024));
}

}
