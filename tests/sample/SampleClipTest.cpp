#include "sample/SampleClip.h"

#include "sample/Match.h"
#include "support/TestClips.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QDir>

namespace pointloom::test {
namespace {

constexpr sample::ClipOptions small{.size = {320, 180}, .seconds = 3, .framesPerSecond = 8};

bool goOn(double) {
    return true;
}

TEST(SampleClip, IsAVideoOfTheCourtWithSound) {
    const ClipFolder folder;
    const QString path = folder.path(QStringLiteral("sample.mp4"));
    double last = 0;
    ASSERT_TRUE(sample::writeClip(path, sample::Match(3), small, [&last](double fraction) {
        EXPECT_GT(fraction, last);
        last = fraction;
        return true;
    }));
    EXPECT_EQ(last, 1);
    const auto streams = probe(path).at("streams");
    ASSERT_EQ(streams.size(), 2U);
    EXPECT_EQ(streams[0].at("codec_name"), "h264");
    EXPECT_EQ(streams[0].at("color_space"), "bt709");
    EXPECT_EQ(streams[0].at("nb_frames"), "24");
    EXPECT_EQ(streams[1].at("codec_name"), "aac");
    EXPECT_NEAR(std::stod(streams[1].at("duration").get<std::string>()), 3, 0.1);

    // The first stroke is heard.
    const QByteArray sound = decode(path, {QStringLiteral("-f"), QStringLiteral("s8")});
    EXPECT_TRUE(std::ranges::any_of(sound, [](char sample) { return std::abs(sample) > 32; }));

    // Below the net the court is blue, beside it green.
    const QByteArray picture = firstPicture(path, QStringLiteral("rgb24"));
    const auto channel = [&](int x, int y, int which) {
        return static_cast<int>(static_cast<unsigned char>(picture.at((y * 320 + x) * 3 + which)));
    };
    EXPECT_GT(channel(130, 140, 2), channel(130, 140, 0) + 60);
    EXPECT_GT(channel(130, 140, 2), channel(130, 140, 1) + 30);
    EXPECT_GT(channel(30, 165, 1), channel(30, 165, 0) + 20);
    EXPECT_GT(channel(30, 165, 1), channel(30, 165, 2));
}

TEST(SampleClip, StoppedHalfWayLeavesNoFile) {
    const ClipFolder folder;
    EXPECT_FALSE(sample::writeClip(folder.path(QStringLiteral("sample.mp4")), sample::Match(3), small,
                                   [](double fraction) { return fraction < 0.5; }));
    EXPECT_TRUE(QDir(folder.path({})).entryList(QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_ANY_THROW((void)sample::writeClip(folder.path(QStringLiteral("nowhere/sample.mp4")),
                                             sample::Match(3), small, goOn));
}

}
}
