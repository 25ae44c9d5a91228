// Clips that are cut short or spoilt give what can be decoded, and say what was lost.
#include "media/VideoReader.h"
#include "support/TestClips.h"

#include <gtest/gtest.h>

namespace pointloom::test {

using namespace media;

namespace {

struct Reading {
    int frames = 0;
    double lastTime = -1;
    Damage damage;
};

Reading readAll(const QString& path) {
    VideoReader reader = VideoReader::open(path);
    Reading reading;
    while (const std::optional<VideoFrame> frame = reader.read()) {
        EXPECT_GT(frame->time(), reading.lastTime);
        reading.lastTime = frame->time();
        ++reading.frames;
    }
    reading.damage = reader.damage();
    return reading;
}

/// Four seconds of 25 frames, the index at the front.
QByteArray clipOf(const ClipFolder& folder, const QString& encoder) {
    return readFile(
        folder.make(QStringLiteral("clip.mp4"),
                    {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                     QStringLiteral("testsrc2=s=320x240:r=25:d=4"), QStringLiteral("-pix_fmt"),
                     QStringLiteral("yuv420p"), QStringLiteral("-c:v"), encoder, QStringLiteral("-g"),
                     QStringLiteral("10"), QStringLiteral("-movflags"), QStringLiteral("+faststart")}));
}

}

TEST(Damage, InTheMiddleLeavesFramesOutAndIsCounted) {
    const ClipFolder folder;
    QByteArray clip = clipOf(folder, QStringLiteral("libx264"));
    const auto begin = clip.indexOf("mdat");
    for (auto i = begin + clip.size() / 4; i < begin + clip.size() / 3; ++i)
        clip[i] = static_cast<char>(i * 7919);
    const Reading reading = readAll(folder.write(QStringLiteral("damaged.mp4"), clip));
    EXPECT_GT(reading.frames, 50);
    EXPECT_GE(reading.frames + reading.damage.lostFrames, 95) << "most of what is left out is counted";
    EXPECT_GT(reading.damage.lostFrames + reading.damage.faultyFrames, 0);
    EXPECT_EQ(reading.damage.secondsMissing, 0);
    EXPECT_NEAR(reading.lastTime, 3.96, 1e-6) << "after the damage the picture comes back";
}

TEST(Damage, WhatIsCutOffIsMeasured) {
    const ClipFolder folder;
    for (const char* encoder : {"libx264", "libx265", "mpeg4"}) {
        const QByteArray clip = clipOf(folder, QString::fromLatin1(encoder));
        const Reading whole = readAll(folder.path(QStringLiteral("clip.mp4")));
        EXPECT_EQ(whole.frames, 100) << encoder;
        EXPECT_EQ(whole.damage, Damage{}) << encoder;
        const Reading cut = readAll(folder.write(QStringLiteral("cut.mp4"), clip.left(clip.size() * 2 / 3)));
        constexpr double reordering = 0.16; // seconds that decoding times run ahead by
        EXPECT_GT(cut.frames, 50) << encoder;
        EXPECT_NEAR(cut.lastTime + cut.damage.secondsMissing, 3.96, reordering) << encoder;
        EXPECT_LE(cut.damage.lostFrames, 1) << encoder << ": what is missing is not damaged";
    }
}

}
