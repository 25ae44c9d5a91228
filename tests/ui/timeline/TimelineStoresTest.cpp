// Thumbnails and loudness of clips, made in the background.
#include "support/TestClips.h"
#include "ui/timeline/ClipCache.h"
#include "ui/timeline/ThumbnailStore.h"
#include "ui/timeline/ThumbnailStrip.h"
#include "ui/timeline/WaveformStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTest>

namespace pointloom::test {

using testing::DoubleNear;
using testing::ElementsAre;

namespace {

constexpr int patience = 120'000; // milliseconds; the work has a low priority
constexpr std::int64_t second = static_cast<std::int64_t>(thumbnailSlotsPerSecond);

struct TimelineStores : testing::Test {
    QString clip(const QString& name, const char* arguments) { return folder.make(name, arguments); }
    QString cacheRoot() const { return folder.path(QStringLiteral("cache")); }

    ClipFolder folder;
};

// Red for a second, then blue; every frame a key frame.
constexpr const char* redThenBlue =
    "-f lavfi -i color=red:s=320x180:r=10:d=1 -f lavfi -i color=blue:s=320x180:r=10:d=1 "
    "-filter_complex [0][1]concat -c:v libx264 -g 1 -pix_fmt yuv420p";
// Silence for a second, then a tone of half the full level.
constexpr const char* silenceThenTone =
    "-f lavfi -i aevalsrc=0.5*sin(2000*t)*gte(t\\,1):d=2:s=44100 -c:a aac -b:a 192k";

}

TEST_F(TimelineStores, ThumbnailsShowTheirMomentUpright) {
    const QString path = clip(QStringLiteral("a.mp4"), redThenBlue);
    ThumbnailStore store(cacheRoot());
    store.open(path);
    store.want({0, second + 4, 100 * second});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !store.image(second + 4).isNull(); }, patience));
    EXPECT_EQ(store.image(0).size(), QSize(227, 128));
    EXPECT_GT(qRed(store.image(0).pixel(50, 50)), 200);
    EXPECT_GT(qBlue(store.image(second + 4).pixel(50, 50)), 200);

    const QString turned =
        test::makeTurned(test::counterclockwise, folder, path, QStringLiteral("turned.mp4"));
    store.open(turned);
    store.want({0});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !store.image(0).isNull(); }, patience));
    EXPECT_EQ(store.image(0).size(), QSize(72, 128));
}

TEST_F(TimelineStores, APhonesHdrClipHeldUprightHasUprightPictures) {
    const auto path = realClip(QStringLiteral("sample_edit_list.mp4"));
    if (!path)
        GTEST_SKIP() << "the real clips are not here";
    ThumbnailStore store(cacheRoot());
    store.open(*path);
    store.want({0, second});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !store.image(second).isNull(); }, patience));
    EXPECT_EQ(store.image(0).size(), QSize(72, 128));
    EXPECT_EQ(store.image(second).size(), QSize(72, 128));
}

TEST_F(TimelineStores, WhatWasMadeOnceComesFromDisk) {
    const QString path = clip(QStringLiteral("a.mp4"), redThenBlue);
    ThumbnailStore store(cacheRoot());
    store.open(path);
    store.want({3});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !store.image(3).isNull(); }, patience));
    ClipCache cache(cacheRoot(), path);
    const auto kept = cache.read(QStringLiteral("3.jpg"), 1 << 20);
    ASSERT_TRUE(kept);
    cache.write(QStringLiteral("5.jpg"), *kept);
    cache.write(QStringLiteral("6.jpg"), QByteArrayLiteral("no picture"));
    store.open(path);
    EXPECT_TRUE(store.image(3).isNull());
    store.want({5, 6});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !store.image(6).isNull(); }, patience))
        << "what is damaged is made again";
    EXPECT_FALSE(store.image(5).isNull());
}

TEST_F(TimelineStores, PicturesOfTheWholeClipAreKeptOnDiskWithoutBeingShown) {
    const QString path = clip(QStringLiteral("a.mp4"), redThenBlue);
    ThumbnailStore store(cacheRoot());
    int answers = 0;
    QObject::connect(&store, &ThumbnailStore::changed, [&] { ++answers; });
    store.open(path);
    store.keep({0, second, 3});
    const auto isKept = [&](const char* name) {
        return ClipCache(cacheRoot(), path).read(QString::fromLatin1(name), 1 << 20).has_value();
    };
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return isKept("0.jpg") && isKept("16.jpg") && isKept("3.jpg"); }, patience));
    EXPECT_EQ(answers, 0);
    store.want({3});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !store.image(3).isNull(); }, patience));
}

TEST_F(TimelineStores, AClipThatIsGoneOrDamagedHasBlanks) {
    const QString gone = folder.path(QStringLiteral("gone.mp4"));
    const QString damaged = folder.write(QStringLiteral("damaged.mp4"), QByteArray(5000, 'x'));
    for (const QString& path : {gone, damaged}) {
        ThumbnailStore thumbnails(cacheRoot());
        WaveformStore waveform(cacheRoot());
        int answers = 0;
        QObject::connect(&thumbnails, &ThumbnailStore::changed, [&] { ++answers; });
        thumbnails.open(path);
        thumbnails.want({0, 1});
        waveform.open(path);
        EXPECT_TRUE(QTest::qWaitFor([&] { return answers == 2 && !waveform.hasSound(); }, patience))
            << path.toStdString();
        EXPECT_TRUE(thumbnails.image(0).isNull());
        EXPECT_EQ(waveform.peaks().size(), 0U);
    }
}

TEST_F(TimelineStores, AClipThatVanishesWhileOpenGivesBlanksFromThen) {
    const QString path = clip(QStringLiteral("a.mp4"), redThenBlue);
    ThumbnailStore store(cacheRoot());
    store.open(path);
    store.want({0});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !store.image(0).isNull(); }, patience));
    QFile file(path);
    ASSERT_TRUE(file.resize(100));
    int answers = 0;
    QObject::connect(&store, &ThumbnailStore::changed, [&] { ++answers; });
    store.want({second + 2, second + 3});
    EXPECT_TRUE(QTest::qWaitFor([&] { return answers == 2; }, patience));
}

TEST_F(TimelineStores, ClosingStopsTheWorkAndNothingArrivesLater) {
    const QString path = clip(QStringLiteral("a.mp4"), redThenBlue);
    ThumbnailStore store(cacheRoot());
    int answers = 0;
    QObject::connect(&store, &ThumbnailStore::changed, [&] { ++answers; });
    for (int i = 0; i < 5; ++i) {
        store.open(path);
        store.want({0, 4, 8, 12, 16, 20, 24});
        store.close();
    }
    QTest::qWait(300);
    EXPECT_EQ(answers, 0);
    {
        ThumbnailStore shortLived(cacheRoot());
        shortLived.open(path);
        shortLived.want({0, 4, 8});
    }
    QTest::qWait(100);
}

TEST_F(TimelineStores, LoudnessStandsWhereTheSoundIs) {
    const QString path = clip(QStringLiteral("a.m4a"), silenceThenTone);
    WaveformStore store(cacheRoot());
    for (const char* source : {"read", "cached"}) {
        store.open(path);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return store.peaks().size() >= 2 * WaveformPyramid::peaksPerSecond - 1; }, patience))
            << source;
        EXPECT_LT(store.peaks().loudest(0, 0.9), 6) << source;
        EXPECT_NEAR(store.peaks().loudest(1.2, 1.8), 128, 12) << source;
        EXPECT_TRUE(store.hasSound());
    }
}

// Noise with strokes at 1, 2.1 and 9.5 s.
TEST_F(TimelineStores, RalliesEndWithTheirLastStroke) {
    const QString path =
        clip(QStringLiteral("a.m4a"),
             "-f lavfi -i aevalsrc=(0.004+0.6*between(t\\,1\\,1.01)+0.6*between(t\\,2.1\\,2.11)"
             "+0.6*between(t\\,9.5\\,9.51))*(random(0)-0.5):d=12:s=44100 -c:a aac -b:a 192k");
    WaveformStore store(cacheRoot());
    for (const char* source : {"read", "cached"}) {
        store.open(path);
        ASSERT_TRUE(QTest::qWaitFor([&] { return store.rallyEnds().size() == 2; }, patience)) << source;
        EXPECT_THAT(store.rallyEnds(), ElementsAre(DoubleNear(2.1, 0.03), DoubleNear(9.5, 0.03))) << source;
    }
    ClipCache(cacheRoot(), path).write(QStringLiteral("moments-1"), QByteArray(64, '\xff'));
    store.open(path);
    EXPECT_TRUE(QTest::qWaitFor([&] { return store.rallyEnds().size() == 2; }, patience))
        << "what is damaged is read again";
}

TEST_F(TimelineStores, TheCacheForgetsTheClipsUsedLongestAgo) {
    const QString root = cacheRoot();
    std::vector<QString> clips;
    for (const char* name : {"a.mp4", "b.mp4", "c.mp4", "d.mp4", "e.mp4"})
        clips.push_back(folder.write(QString::fromLatin1(name), name));
    const QByteArray content(1000, 'x');
    for (const QString& path : clips) {
        ClipCache(root, path, 2500).write(QStringLiteral("picture"), content);
        QTest::qWait(20);
    }
    const auto kept = [&](const QString& path, qint64 largest) {
        return ClipCache(root, path).read(QStringLiteral("picture"), largest);
    };
    EXPECT_FALSE(kept(clips.front(), 2000));
    EXPECT_EQ(kept(clips.back(), 2000), content);
    EXPECT_FALSE(kept(clips.back(), 10)) << "larger than expected";
    folder.write(QStringLiteral("e.mp4"), "another film");
    EXPECT_FALSE(kept(clips.back(), 2000)) << "the clip has been replaced";
}

}
