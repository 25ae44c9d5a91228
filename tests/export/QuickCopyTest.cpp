// Small copies for the preview, compared with their originals by ffprobe.
#include "export/preview/QuickCopy.h"
#include "support/TestClips.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <QDir>
#include <QFile>
#include <QSysInfo>

namespace pointloom {

namespace {

constexpr double always = 0; // seconds: every clip counts as slow

class QuickCopyTest : public testing::Test {
protected:
    SegmentCache cache(qint64 limit = SegmentCache::usualLimit) const {
        return SegmentCache(folder.path(QStringLiteral("cache")), limit, 0);
    }

    QStringList cached() const {
        return QDir(cache().folder()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QString makeClip(const char* encoding = "-c:v libx264 -g 50 -pix_fmt yuv420p",
                     const char* picture = "testsrc2=s=320x180:r=25:d=2") const {
        return folder.make(QStringLiteral("GX010123.MP4"),
                           qPrintable(QStringLiteral("-f lavfi -i %1 %2")
                                          .arg(QString::fromLatin1(picture), QString::fromLatin1(encoding))));
    }

    QString copyOf(const QString& clip) const {
        const QString copy = folder.path(QStringLiteral("copy.mp4"));
        QuickCopy::make(clip, copy, {});
        return copy;
    }

    test::ClipFolder folder;
};

void expectSameTimes(const QString& copy, const QString& original) {
    const auto theirs = test::frameTimes(original);
    const auto ours = test::frameTimes(copy);
    ASSERT_EQ(ours.size(), theirs.size()) << original.toStdString();
    for (std::size_t i = 0; i < ours.size(); ++i)
        ASSERT_NEAR(ours[i], theirs[i], 2e-6) << original.toStdString() << ", frame " << i;
}

nlohmann::json streamOf(const QString& path) {
    return test::probe(path)["streams"][0];
}

}

TEST_F(QuickCopyTest, IsSmallWithKeyFramesCloseTogether) {
    const QString copy = copyOf(makeClip("-c:v libx264 -pix_fmt yuv420p", "testsrc2=s=1000x1500:r=25:d=0.8"));
    EXPECT_EQ(streamOf(copy)["width"], 720) << "the shorter side";
    EXPECT_EQ(streamOf(copy)["height"], 1080);
    int sinceKeyFrame = 0;
    for (const auto& packet : test::probePackets(copy)) {
        const bool isKeyFrame = packet["flags"].get<std::string>().starts_with('K');
        sinceKeyFrame = isKeyFrame ? 0 : sinceKeyFrame + 1;
        EXPECT_LT(sinceKeyFrame, 10);
    }
}

TEST_F(QuickCopyTest, KeepsTimesOfAVariableRateThatBeginsLate) {
    const QString clip =
        makeClip("-vf settb=1/1000,setpts=N*(N+3)*10+700 -fps_mode passthrough -enc_time_base 1/1000 "
                 "-c:v libx264 -bf 3 -pix_fmt yuv420p",
                 "testsrc2=s=320x180:r=25:d=1");
    ASSERT_NEAR(test::frameTimes(clip).front(), 0.7, 0.001);
    expectSameTimes(copyOf(clip), clip);
}

TEST_F(QuickCopyTest, TheFilesOfARecordingBecomeOneCopy) {
    const QString first = makeClip("-c:v libx264 -pix_fmt yuv420p", "testsrc2=s=320x180:r=24:d=1");
    const QString second = folder.path(QStringLiteral("GX020123.MP4"));
    ASSERT_TRUE(QFile::copy(first, second));
    const media::Recording recording(first, std::vector{first, second});
    const auto copy = QuickCopy::find(recording, cache(), {}, always);
    ASSERT_TRUE(copy);
    const auto times = test::frameTimes(*copy);
    ASSERT_EQ(times.size(), 48U);
    for (std::size_t i = 0; i < times.size(); ++i)
        EXPECT_NEAR(times[i], static_cast<double>(i) / 24, 2e-6);
    EXPECT_NE(QuickCopy::keyOf(recording), QuickCopy::keyOf(first));
}

TEST_F(QuickCopyTest, KeepsTimesOfRealClips) {
    if (test::realClips().isEmpty())
        GTEST_SKIP() << "no real clips here";
    for (const char* name : {"edit_list_positive_shift.mp4", "h265_bframes.mp4",
                             "iibbibb_editlist_videoonly.mp4", "sample_fragmented_seekable.mp4"}) {
        if (const auto clip = test::realClip(QString::fromLatin1(name)))
            expectSameTimes(copyOf(*clip), *clip);
    }
}

TEST_F(QuickCopyTest, KeepsTheTurnOfTheFrames) {
    const QString turned =
        test::makeTurned(test::clockwise, folder, makeClip(), QStringLiteral("turned.mp4"));
    const auto rotation = [](const QString& path) { return streamOf(path)["side_data_list"][0]["rotation"]; };
    ASSERT_EQ(std::abs(rotation(turned).get<int>()), 90);
    EXPECT_EQ(rotation(copyOf(turned)), rotation(turned));
}

// Reference white of HLG, three quarters of full scale, is drawn near the white of a screen.
TEST_F(QuickCopyTest, ShowsHdrInColoursOfAScreen) {
    const QString clip =
        makeClip("-vf format=yuv420p10le,lutyuv=y=721:u=512:v=512 -c:v libx265 -x265-params "
                 "log-level=none:colorprim=bt2020:transfer=arib-std-b67:colormatrix=bt2020nc",
                 "color=black:s=320x180:r=25:d=0.4");
    const QString copy = copyOf(clip);
    EXPECT_EQ(streamOf(copy)["color_transfer"], "bt709");
    const QByteArray grey = test::firstPicture(copy, QStringLiteral("gray"));
    EXPECT_GT(static_cast<uchar>(grey.at(grey.size() / 2)), 170);
}

TEST_F(QuickCopyTest, IsMadeOnceKeptAndMadeAgainWhenDamaged) {
    const QString clip = makeClip();
    int steps = 0;
    const ExportControl counting{{}, [&](const ExportProgress&) { ++steps; }};
    const auto copy = QuickCopy::find(clip, cache(), counting, always);
    ASSERT_TRUE(copy);
    expectSameTimes(*copy, clip);
    EXPECT_GT(steps, 2);
    EXPECT_EQ(cached().size(), 1);

    steps = 0;
    EXPECT_EQ(QuickCopy::find(clip, cache(), counting, always), copy);
    EXPECT_EQ(steps, 0) << "it was there";

    QFile file(*copy);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
    file.write("damage");
    file.close();
    EXPECT_EQ(QuickCopy::find(clip, cache(), counting, always), copy);
    EXPECT_GT(steps, 2);
    expectSameTimes(*copy, clip);
}

TEST_F(QuickCopyTest, ClipsThatSeekQuicklyNeedNone) {
    EXPECT_FALSE(QuickCopy::find(makeClip(), cache(), {}, std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(cached().isEmpty());
}

TEST_F(QuickCopyTest, LeavesNothingWhenItIsCancelledOrThereIsNoSpace) {
    const QString clip = makeClip();
    bool isUnderWay = false;
    const ExportControl cancelled{
        [&] { return isUnderWay; },
        [&](const ExportProgress& progress) { isUnderWay = progress.fraction > 0.3; }};
    EXPECT_FALSE(QuickCopy::find(clip, cache(), cancelled, always));
    EXPECT_TRUE(isUnderWay);
    EXPECT_TRUE(cached().isEmpty()) << cached().join(u' ').toStdString();
    for (const qint64 limit : {0, 5'000}) {
        EXPECT_FALSE(QuickCopy::find(clip, cache(limit), {}, always));
        EXPECT_TRUE(cached().isEmpty()) << cached().join(u' ').toStdString();
    }
    EXPECT_FALSE(QuickCopy::find(folder.path(QStringLiteral("none.mp4")), cache(), {}, always));
}

TEST_F(QuickCopyTest, WhatAKilledProcessLeftIsRemovedWithTheNextVideo) {
    const QString remains =
        QStringLiteral("cache/quick.mp4.%1.999999999.1.unfinished").arg(QSysInfo::machineHostName());
    ASSERT_TRUE(QDir().mkpath(cache().folder()));
    folder.write(remains, "half a copy");
    EXPECT_FALSE(QuickCopy::find(makeClip(), cache(), {}, std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(cached().isEmpty()) << cached().join(u' ').toStdString();
}

TEST_F(QuickCopyTest, TheCamerasOwnIsTakenWhenItHasTheSameFrames) {
    const QString coding =
        QStringLiteral("-c:v libx264 -pix_fmt yuv420p -color_primaries bt709 -color_trc bt709 "
                       "-colorspace bt709 -f mp4");
    const QString clip = makeClip(qPrintable(coding), "testsrc2=s=640x360:r=30000/1001:d=2");
    const auto record = [&](const char* name, const QString& arguments) {
        return folder.make(QString::fromLatin1(name),
                           qPrintable(QStringLiteral("-i %1 %2 %3").arg(clip, coding, arguments)));
    };
    record("GL010123.LRV", QStringLiteral("-s 320x180 -t 1.5"));
    EXPECT_FALSE(QuickCopy::ofCamera(clip)) << "shorter";
    record("GL010123.LRV", QStringLiteral("-s 320x180 -r 25"));
    EXPECT_FALSE(QuickCopy::ofCamera(clip)) << "other times";
    record("GL010123.LRV", QStringLiteral("-vf scale=320:240,setsar=1"));
    EXPECT_FALSE(QuickCopy::ofCamera(clip)) << "another shape";
    folder.write(QStringLiteral("GL010123.LRV"), "no video");
    EXPECT_FALSE(QuickCopy::ofCamera(clip));
    const QString small = record("GL010123.LRV", QStringLiteral("-s 320x180"));
    EXPECT_EQ(QuickCopy::ofCamera(clip), small);
    ASSERT_TRUE(QFile::rename(small, folder.path(QStringLiteral("GX010123.lrf"))));
    EXPECT_EQ(QuickCopy::ofCamera(clip), folder.path(QStringLiteral("GX010123.lrf")));
}

}
