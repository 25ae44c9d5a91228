#include "render/OverlayPlacement.h"

#include <gtest/gtest.h>

using namespace pointloom;
using namespace pointloom::OverlayPlacement;

namespace {

constexpr QRectF halfSizePreview(100, 50, 960, 540);
constexpr QSizeF canvas(270, 97);

}

TEST(OverlayPlacement, PreviewScaleFollowsTheVideosWidth) {
    EXPECT_DOUBLE_EQ(previewScale(halfSizePreview, 1920), 0.5);
    EXPECT_DOUBLE_EQ(previewScale(halfSizePreview, 0), 0.5) << "by height, before the video is known";
    EXPECT_DOUBLE_EQ(previewScale({0, 0, 300, 270}, 0), 0.25);
}

TEST(OverlayPlacement, DragFollowsThePointerButNotOutOfThePicture) {
    EXPECT_EQ(displayPosition(halfSizePreview, {0.5, 0.5}, {10, -20}), QPointF(590, 300));
    EXPECT_EQ(displayPosition(halfSizePreview, {0.5, 0.5}, {9999, -9999}), QPointF(1060, 50));
    EXPECT_EQ(movedPosition({0.5, 0.5}, {9999, -9999}, halfSizePreview), QPointF(0.98, 0.02));
    EXPECT_EQ(movedPosition({0.5, 0.5}, {96, 54}, halfSizePreview), QPointF(0.6, 0.6));
    EXPECT_EQ(movedPosition({0.5, 0.5}, {96, 54}, {}), QPointF(0.5, 0.5)) << "no picture yet";
}

TEST(OverlayPlacement, DrawOriginIsPastTheScaledMargin) {
    const QPointF origin = drawOrigin(halfSizePreview, {0.5, 0.5}, canvas, 0.5);
    EXPECT_EQ(origin, QPointF(580 - 270 * 0.25 + 5, 320 - 97 * 0.25 + 5));
}

TEST(OverlayPlacement, ResizingStaysWithinItsBounds) {
    EXPECT_DOUBLE_EQ(resizedScale(1, {-1000, -1000}, 135), 0.3);
    EXPECT_DOUBLE_EQ(resizedScale(1, {5000, 5000}, 135), 5);
    EXPECT_DOUBLE_EQ(resizedScale(1, {135, 0}, 135), 1.5) << "the mean of both directions";
    EXPECT_DOUBLE_EQ(resizedScale(2, {0, 0}, 0), 2) << "nothing is shown yet";
}

TEST(OverlayPlacement, ExportScaleFollowsTheOutputAndHasAFloor) {
    EXPECT_DOUBLE_EQ(exportScale(3840, 1920, 1), 2);
    EXPECT_DOUBLE_EQ(exportScale(1920, 1920, 0.05), 0.1);
    EXPECT_DOUBLE_EQ(exportScale(1280, 1920, 1.5), 1);
}

TEST(OverlayPlacement, CentrePositionIsTheFramesCentrePlusTheMargin) {
    const QPointF origin = exportOrigin({1920, 1080}, {0.5, 0.5}, canvas, 2);
    const QPointF centre = origin + QPointF(canvas.width() / 2, canvas.height() / 2);
    EXPECT_EQ(centre, QPointF(480 + 10, 270 + 10));
}

TEST(OverlayPlacement, PreviewAndExportAgree) {
    const QPointF position(0.15, 0.87);
    const double userScale = 1.7;
    const double preview = previewScale(halfSizePreview, 1920) * userScale;
    const QPointF inPreview = drawOrigin(halfSizePreview, position, canvas, preview);
    const double scale = exportScale(1920, 1920, userScale);
    const QPointF inFrame = exportOrigin({1920, 1080}, position, canvas, scale) * scale;
    EXPECT_NEAR((inPreview.x() - 100) * 2, inFrame.x(), 1e-9);
    EXPECT_NEAR((inPreview.y() - 50) * 2, inFrame.y(), 1e-9);
}

TEST(OverlayPlacement, AScoreboardThatIsKeptInsideIsWholeAndHasAMargin) {
    constexpr QSizeF frame(1080, 1920); // margins of 21.6
    constexpr QSizeF board(345.6, 60);
    EXPECT_DOUBLE_EQ(fittingScale(frame, board, 1.5), 1.5) << "it fits already";
    EXPECT_DOUBLE_EQ(fittingScale(frame, board, 4), 3) << "1036.8 pixels wide";
    EXPECT_DOUBLE_EQ(fittingScale(frame, {10, 1876.8}, 4), 1) << "by its height";

    EXPECT_EQ(originInside(frame, {100, 200}, board, 1), QPointF(100, 200));
    EXPECT_EQ(originInside(frame, {-50, 1900}, board, 1), QPointF(21.6, 1920 - 60 - 21.6));
    const QPointF right = originInside(frame, {900, 0}, board, 2);
    EXPECT_DOUBLE_EQ((right.x() + board.width()) * 2, 1080 - 21.6);
    EXPECT_DOUBLE_EQ(right.y() * 2, 21.6);
}
