#include "render/Shadow.h"

#include "RenderSupport.h"

#include <numbers>

using namespace pointloom;

namespace {

/// A square of 60 units with its top left corner at (40, 40), its shadow only.
QImage shadowOnly(double scale, const Shadow& shadow, double fillAlpha = 1) {
    QImage image = transparentImage(static_cast<int>(140 * scale), static_cast<int>(140 * scale));
    QPainter painter(&image);
    painter.scale(scale, scale);
    QPainterPath square;
    square.addRect(40, 40, 60, 60);
    drawShadow(painter, square, shadow, fillAlpha);
    return image;
}

double alphaAt(const QImage& image, double x, double y) {
    return qAlpha(image.pixel(static_cast<int>(x), static_cast<int>(y))) / 255.0;
}

}

TEST(Shadow, IsAGaussianOfHalfTheBlur) {
    const QImage image = shadowOnly(1, {{0, 0, 0, 1}, 8, {}});
    // Across a long straight edge, the integral of the bell: half on the edge itself.
    for (const int distance : {-6, -3, 0, 3, 6}) {
        const double expected = 0.5 * std::erfc((distance + 0.5) / (4 * std::numbers::sqrt2));
        EXPECT_NEAR(alphaAt(image, 100 + distance, 70), expected, 0.015) << distance << " pixels outside";
    }
    EXPECT_NEAR(alphaAt(image, 70, 70), 1, 0.01) << "inside too";
    EXPECT_NEAR(alphaAt(image, 100, 100), 0.25, 0.06) << "a corner is the product of two edges";
}

TEST(Shadow, IsTheSameAlongTheWholeOfALongShape) {
    QImage image = transparentImage(300, 40);
    QPainter painter(&image);
    QPainterPath bar;
    bar.addRect(20, 10, 260, 20);
    drawShadow(painter, bar, {{0, 0, 0, 1}, 8, {}}, 1);
    painter.end();
    for (int x = 40; x < 260; ++x)
        ASSERT_EQ(image.pixel(x, 31), image.pixel(150, 31)) << x;
    EXPECT_EQ(image.pixel(18, 20), image.pixel(281, 20)) << "both ends";
    EXPECT_GT(alphaAt(image, 281, 20), 0.1);
}

TEST(Shadow, ScalesWithThePainter) {
    const Shadow shadow{{0, 0, 0, 0.5}, 8, {3, 5}};
    const QImage once = shadowOnly(1, shadow);
    for (const int scale : {3, 9}) { // the larger one is computed in coarser pixels
        const QImage scaled = shadowOnly(scale, shadow);
        for (int y = 30; y < 120; y += 7) {
            for (int x = 30; x < 120; x += 7)
                EXPECT_NEAR(alphaAt(once, x, y), alphaAt(scaled, (x + 0.5) * scale, (y + 0.5) * scale), 0.02)
                    << x << ", " << y << " at " << scale;
        }
    }
}

TEST(Shadow, IsAsStrongAsTheFillIsOpaque) {
    const QImage image = shadowOnly(1, {{0, 0, 1, 0.5}, 8, {}}, 0.6);
    EXPECT_NEAR(alphaAt(image, 70, 70), 0.3, 0.01);
    EXPECT_TRUE(isNear(image.pixelColor(70, 70), QColor(0, 0, 255, 77), 4));
}

TEST(Shadow, HugeAndDegenerateOnesAreHarmless) {
    QImage image = transparentImage(50, 50);
    QPainter painter(&image);
    QPainterPath endless;
    endless.addRect(-1e7, -1e7, 2e7, 2e7);
    drawShadow(painter, endless, {{0, 0, 0, 1}, 1e6, {}}, 1);
    drawShadow(painter, {}, {{0, 0, 0, 1}, 8, {}}, 1);
    drawShadow(painter, endless, {{0, 0, 0, 1}, 0, {}}, 1);
    painter.end();
    EXPECT_GT(qAlpha(image.pixel(25, 25)), 250);
}
