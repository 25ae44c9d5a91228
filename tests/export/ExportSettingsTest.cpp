#include "export/ExportSettings.h"
#include "export/Compositor.h"
#include "export/PictureLayout.h"
#include "export/TrimRange.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QTemporaryDir>

namespace pointloom {

namespace {

media::VideoTrackInfo track(QSize size, int quarterTurns = 0, media::Rational pixelShape = {1, 1}) {
    media::VideoTrackInfo info;
    info.storedSize = size;
    info.orientation.quarterTurns = quarterTurns;
    info.sampleAspectRatio = pixelShape;
    return info;
}

}

TEST(ExportSettings, LabelsMatchExactlyAndNothingElseDoes) {
    EXPECT_EQ(fromRawValue<ExportPreset>("Twitter / X  1080p"), ExportPreset::twitter1080p);
    EXPECT_FALSE(fromRawValue<ExportPreset>("Twitter / X 1080p"));
    EXPECT_EQ(fromRawValue<WatermarkCorner>("bottomLeft"), WatermarkCorner::bottomLeft);
    EXPECT_FALSE(fromRawValue<WatermarkCorner>("Bottom Left"));
    EXPECT_EQ(rawValue(ExportFormat::prores), "ProRes 422 (MOV)");
}

TEST(WatermarkRectangle, FitsItsBoxAndKeepsItsShapeInEachCorner) {
    struct Case {
        QSize mark;
        WatermarkCorner corner;
        QSizeF canvas;
        QRectF expected;
    };
    const Case cases[] = {
        {{300, 300}, WatermarkCorner::bottomRight, {1920, 1080}, {1770.4, 930.4, 129.6, 129.6}},
        {{400, 100}, WatermarkCorner::topRight, {1920, 1080}, {1770.4, 20, 129.6, 32.4}},
        {{100, 400}, WatermarkCorner::bottomLeft, {1920, 1080}, {20, 930.4, 32.4, 129.6}},
        {{100, 400}, WatermarkCorner::bottomRight, {1080, 1920}, {1027.6, 1770.4, 32.4, 129.6}},
        {{10, 8}, WatermarkCorner::topLeft, {640, 480}, {20, 20, 57.6, 46.08}},
    };
    for (const auto& [mark, corner, canvas, expected] : cases) {
        const QImage image(mark, QImage::Format_ARGB32_Premultiplied);
        const QRectF place = watermarkPart(image, corner, canvas).rectangle;
        const QMarginsF wrong(place.left() - expected.left(), place.top() - expected.top(),
                              place.right() - expected.right(), place.bottom() - expected.bottom());
        for (const double length : {wrong.left(), wrong.top(), wrong.right(), wrong.bottom()})
            EXPECT_NEAR(length, 0, 1e-9) << rawValue(corner) << " of " << canvas.width();
    }
}

TEST(ExportSettings, OutputIsNamedByLocalTimeAndFormat) {
    const QDateTime time(QDate(2025, 3, 7), QTime(18, 4, 59));
    EXPECT_TRUE(defaultOutputPath(ExportFormat::h264, time)
                    .endsWith(QStringLiteral("/scoreboard_2025-03-07_18-04-59.mp4")));
    EXPECT_TRUE(defaultOutputPath(ExportFormat::prores, time).endsWith(QStringLiteral("_18-04-59.mov")));
}

TEST(ExportSettings, OutputGoesToTheDownloadsOfAUserThatHasAHome) {
    const QByteArray home = qgetenv("HOME");
    const auto restore = qScopeGuard([&] { qputenv("HOME", home); });
    const QTemporaryDir user;
    qputenv("HOME", QFile::encodeName(user.path()));
    EXPECT_TRUE(defaultOutputPath(ExportFormat::h264).startsWith(user.path() + u'/'));
    qputenv("HOME", "/");
    EXPECT_TRUE(defaultOutputPath(ExportFormat::h264).startsWith(QDir::tempPath() + u'/'));
}

TEST(ExportSettings, ErrorsReadAsAUserExpects) {
    EXPECT_STREQ(ExportError::noVideoTrack().what(), "The video file has no video track.");
    EXPECT_STREQ(ExportError::exportFailed(QStringLiteral("Reader failed: unknown")).what(),
                 "Export failed: Reader failed: unknown");
}

TEST(PictureLayout, NearlyEqualShapesAreStretchedAndOthersGetBars) {
    EXPECT_EQ(fittedPicture({1920, 1080}, {3840, 2160}), QRect(0, 0, 3840, 2160));
    EXPECT_EQ(fittedPicture({1770, 1000}, {1920, 1080}), QRect(0, 0, 1920, 1080));
    EXPECT_NE(fittedPicture({1740, 1000}, {1920, 1080}), QRect(0, 0, 1920, 1080));
    const QRect portrait = fittedPicture({1920, 1080}, {1080, 1920});
    EXPECT_EQ(portrait.width(), 1080);
    EXPECT_NEAR(portrait.height(), 607.5, 1);
    EXPECT_NEAR(portrait.top(), (1920 - 607.5) / 2, 1);
    const QRect pillar = fittedPicture({1080, 1920}, {1920, 1080});
    EXPECT_EQ(pillar.height(), 1080);
    EXPECT_NEAR(pillar.width(), 607.5, 1);
    EXPECT_NEAR(pillar.left(), (1920 - 607.5) / 2, 1);
}

TEST(PictureLayout, OriginalKeepsTheStoredTurnAndAnyOtherSizeTurnsThePicture) {
    const auto stored = planPicture(track({1920, 1080}, 1), ExportPreset::original);
    EXPECT_EQ(stored.frameSize, QSize(1920, 1080));
    EXPECT_EQ(stored.orientation.quarterTurns, 1);
    EXPECT_EQ(stored.canvas, QSizeF(1080, 1920));
    const auto fitted = planPicture(track({1920, 1080}, 1), ExportPreset::youtube4k);
    EXPECT_TRUE(fitted.orientation.isIdentity());
    EXPECT_EQ(fitted.nativeVideoSize, QSizeF(1080, 1920));
    EXPECT_EQ(fitted.picture.height(), 2160);
    // A preset of the clip's own upright size changes nothing.
    EXPECT_EQ(planPicture(track({1920, 1080}, 1), ExportPreset::instagram916).orientation.quarterTurns, 1);
}

TEST(PictureLayout, AFilledFrameShowsThePartOfThePictureThatHasItsShape) {
    const auto upright = planPicture(track({1920, 1080}), ExportPreset::instagram916, 0.25);
    EXPECT_EQ(upright.picture, QRect(0, 0, 1080, 1920));
    EXPECT_NEAR(upright.seen.width() * 1920, 607.5, 1e-9);
    EXPECT_NEAR(upright.seen.x() * 1920, (1920 - 607.5) / 4, 1e-9);
    EXPECT_EQ(upright.seen.height(), 1);
    EXPECT_NEAR(upright.nativeVideoSize.width(), 607.5, 1e-9) << "templates grow with the picture";

    // A phone's: stored on its side, shown 1080 by 1920.
    const auto wide = planPicture(track({1920, 1080}, 1), ExportPreset::twitter1080p, 1);
    EXPECT_NEAR(wide.seen.height() * 1920, 607.5, 1e-9);
    EXPECT_NEAR(wide.seen.bottom(), 1, 1e-9);
    EXPECT_EQ(wide.seen.width(), 1);

    EXPECT_FALSE(planPicture(track({1920, 1088}), ExportPreset::youtube4k, 0).isFilled())
        << "nearly the same shape, which is stretched";
    EXPECT_TRUE(planPicture(track({1920, 1080}), ExportPreset::original, 0).keepsStoredPicture);
    // 4:3 on the screen by its pixels, however it is stored.
    EXPECT_NEAR(planPicture(track({720, 576}, 0, {16, 15}), ExportPreset::youtube4k, 0).seen.height(), 0.75,
                1e-9);
}

TEST(PictureLayout, PixelShapeCountsInTheCanvasAndOddSidesLoseTheirLastLine) {
    const auto wide = planPicture(track({720, 576}, 0, {64, 45}), ExportPreset::original);
    EXPECT_EQ(wide.frameSize, QSize(720, 576));
    EXPECT_EQ(wide.canvas, QSizeF(1024, 576));
    EXPECT_EQ(planPicture(track({853, 481}), ExportPreset::original).frameSize, QSize(852, 480));
}

class TrimRangeTest : public testing::Test {
protected:
    static constexpr media::Rational timeBase{1, 1000};
};

TEST_F(TrimRangeTest, FrameOnScreenAtTheStartIsShownFromTheFirstMoment) {
    const TrimRange range(1.02, 2.0);
    const auto first = range.place(1000, 40, 1040, timeBase);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->timestamp, 0);
    EXPECT_EQ(first->duration, 20);
    EXPECT_FALSE(range.place(960, 40, 1000, timeBase));
}

TEST_F(TrimRangeTest, EndIsExclusiveAndCutsTheLastStay) {
    const TrimRange range(1, 2);
    EXPECT_FALSE(range.place(2000, 40, 2040, timeBase));
    const auto last = range.place(1980, 40, 2020, timeBase);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->timestamp, 980);
    EXPECT_EQ(last->duration, 20);
    // 29.97 frames a second: the frame exactly on the end stays out although 1/600 s rounds up.
    EXPECT_FALSE(TrimRange(0, 2.002).place(60060, 1001, 61061, {1, 30000}));
}

TEST_F(TrimRangeTest, WholeFileKeepsEveryTime) {
    const TrimRange range(0, std::nullopt);
    const auto late = range.place(10000, 0, std::nullopt, timeBase);
    ASSERT_TRUE(late);
    EXPECT_EQ(late->timestamp, 10000);
    EXPECT_EQ(late->duration, 0);
}

}
