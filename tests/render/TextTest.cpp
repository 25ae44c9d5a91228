#include "render/Fonts.h"
#include "render/TemplateRenderer.h"
#include "RenderSupport.h"

using namespace pointloom;

namespace {

constexpr Rgba white{1, 1, 1, 1};

bool isInk(const QColor& color) {
    return color.alpha() > 100;
}

QRect inkOf(const QImage& image) {
    return pixelsWhere(image, isInk);
}

enum class Axis { downward, upward };

/// A text at `scale`, centred on the middle of a picture of 200 x 60 units.
QImage centred(const QString& text, const TextFont& font, double scale, Axis axis = Axis::downward) {
    QImage image = transparentImage(static_cast<int>(200 * scale), static_cast<int>(60 * scale));
    QPainter painter(&image);
    painter.scale(scale, scale);
    if (axis == Axis::upward) {
        painter.translate(0, 60);
        painter.scale(1, -1);
    }
    drawCenteredText(painter, text, font, white, {100, 30});
    return image;
}

int largestDifference(const QImage& left, const QImage& right) {
    int largest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            largest = std::max(largest, std::abs(qAlpha(left.pixel(x, y)) - qAlpha(right.pixel(x, y))));
    }
    return largest;
}

}

TEST(Fonts, AreInstalled) {
    EXPECT_EQ(Fonts::missing(), QStringList());
}

TEST(Text, HasTheWidthsOfHelvetica) {
    // Advances of the Helvetica family, in thousandths of an em.
    EXPECT_NEAR(ctTextWidth(QStringLiteral("0123"), {FontFace::regular, 1000}), 4 * 556, 2);
    EXPECT_NEAR(ctTextWidth(QStringLiteral("A"), {FontFace::regular, 1000}), 667, 2);
    EXPECT_NEAR(ctTextWidth(QStringLiteral("A"), {FontFace::bold, 1000}), 722, 2);
    EXPECT_NEAR(ctTextWidth(QStringLiteral("a b "), {FontFace::regular, 1000}), 556 + 278 + 556 + 278, 3);
    EXPECT_EQ(ctTextWidth({}, {FontFace::bold, 12}), 0);
}

TEST(Text, FractionalSizesAreExactAtEveryScale) {
    const QString text = QStringLiteral("Wawrinka 406");
    for (const double size : {8.39, 14.44, 17.48}) {
        const double width = ctTextWidth(text, {FontFace::regular, size});
        EXPECT_NEAR(width / size, ctTextWidth(text, {FontFace::regular, 1}), 1e-9);
        const double inkAtEight = inkOf(centred(text, {FontFace::regular, size}, 8)).width() / 8.0;
        for (const double scale : {1.0, 1.3, 4.0})
            EXPECT_NEAR(inkOf(centred(text, {FontFace::regular, size}, scale)).width() / scale, inkAtEight,
                        2 / scale);
    }
}

TEST(Text, IsCentredOnItsPoint) {
    const QRect digits = inkOf(centred(QStringLiteral("40"), {FontFace::bold, 17.48}, 8));
    EXPECT_NEAR(digits.center().x() / 8.0, 100, 0.5);
    EXPECT_NEAR(digits.center().y() / 8.0, 30, 0.8);
}

TEST(Text, IsAsSharpAsTheDeviceAllows) {
    // A vertical stem 8 times as large still has an edge of one pixel or two.
    const QImage image = centred(QStringLiteral("I"), {FontFace::bold, 17.48}, 8);
    int greyPixels = 0;
    for (int x = 0; x < image.width(); ++x) {
        const int alpha = qAlpha(image.pixel(x, image.height() / 2));
        greyPixels += alpha > 10 && alpha < 245 ? 1 : 0;
    }
    EXPECT_LE(greyPixels, 2);
}

TEST(Text, StandsUprightUnderAnUpwardAxis) {
    const QString text = QString::fromUtf8("🇫🇷 Gégé 17");
    const TextFont font{FontFace::regular, 14.44};
    EXPECT_LE(largestDifference(centred(text, font, 3), centred(text, font, 3, Axis::upward)), 24);
}

TEST(Text, FlagsAreColouredAndAsTallAsTheCapitals) {
    const QImage flag = centred(QString::fromUtf8("🇫🇷"), {FontFace::regular, 14.44}, 4);
    const QRect ink = inkOf(flag);
    EXPECT_NEAR(ink.height() / 4.0, 14.44 * 0.72, 2);
    EXPECT_GT(ink.width(), ink.height());
    const auto isBlue = [](const QColor& color) { return color.blue() > 100 && color.red() < 60; };
    const auto isRed = [](const QColor& color) { return color.red() > 180 && color.blue() < 90; };
    EXPECT_LT(pixelsWhere(flag, isBlue).right(), ink.center().x());
    EXPECT_GT(pixelsWhere(flag, isRed).left(), ink.center().x());

    const QRect capital = inkOf(centred(QStringLiteral("H"), {FontFace::regular, 14.44}, 4));
    EXPECT_NEAR(ink.center().y(), capital.center().y(), 3) << "side by side with a name";
}

TEST(Text, LettersThatAreNoCountryAreShownAsLetters) {
    const TextFont font{FontFace::regular, 24};
    EXPECT_EQ(centred(QString::fromUtf8("🇺🇰"), font, 2), centred(QStringLiteral("UK"), font, 2));
    EXPECT_EQ(centred(QString::fromUtf8("A🇬"), font, 2), centred(QStringLiteral("AG"), font, 2));
    EXPECT_NE(centred(QString::fromUtf8("🇬🇧"), font, 2), centred(QStringLiteral("GB"), font, 2));
}

TEST(Text, AFlagDoesNotMoveTheNameBesideIt) {
    QImage plain = transparentImage(120, 40);
    QImage flagged = plain;
    {
        QPainter painter(&plain);
        drawLeftText(painter, QStringLiteral("H"), {FontFace::regular, 24}, white, {5, 20});
        QPainter flaggedPainter(&flagged);
        drawLeftText(flaggedPainter, QString::fromUtf8("H🇫🇷"), {FontFace::regular, 24}, white, {5, 20});
    }
    EXPECT_EQ(inkOf(plain.copy(0, 0, 20, 40)), inkOf(flagged.copy(0, 0, 20, 40)));
    // It follows the letter, whose advance is 722 thousandths of an em.
    const QRect flag = pixelsWhere(
        flagged, [](const QColor& color) { return color.alpha() > 100 && color.blue() > color.red() + 40; });
    EXPECT_NEAR(flag.left(), 5 + 0.722 * 24, 4);
}

TEST(Text, RightToLeftNamesStartAtTheirLeftEdge) {
    QImage image = transparentImage(200, 40);
    QPainter painter(&image);
    drawLeftText(painter, QString::fromUtf8("שלום"), {FontFace::regular, 20}, white, {30, 20});
    painter.end();
    const QRect ink = inkOf(image);
    ASSERT_FALSE(ink.isEmpty());
    EXPECT_NEAR(ink.left(), 30, 4);
}

TEST(Text, LineBreaksStayOnOneLine) {
    const QRect broken = inkOf(centred(QStringLiteral("H\nH\u2028H"), {FontFace::regular, 14}, 4));
    EXPECT_EQ(broken, inkOf(centred(QStringLiteral("H H H"), {FontFace::regular, 14}, 4)));
}

TEST(Text, ClippedTextEndsAtItsRectangle) {
    QImage image = transparentImage(200, 60);
    QPainter painter(&image);
    drawClippedText(painter, QString(40, u'M'), {FontFace::regular, 30}, white, {20, 20, 100, 20}, 40);
    drawLeftText(painter, QStringLiteral("M"), {FontFace::regular, 20}, white, {150, 30});
    painter.end();
    EXPECT_EQ(inkOf(image.copy(0, 0, 140, 60)).right(), 119);
    EXPECT_GE(inkOf(image).top(), 20);
    EXPECT_GT(inkOf(image).right(), 150) << "the clip ends with the text";
}

TEST(RoundRect, RadiusIsAtMostHalfTheShorterSide) {
    const QPainterPath pill = cgRoundRect({0, 0, 100, 20}, 50);
    EXPECT_EQ(pill.boundingRect(), QRectF(0, 0, 100, 20));
    EXPECT_EQ(QPointF(pill.elementAt(0)), QPointF(10, 0)) << "starts after the first corner";
    EXPECT_FALSE(pill.contains(QPointF(1, 1)));
    EXPECT_TRUE(cgRoundRect({0, 0, 100, 20}, 0).contains(QPointF(0.5, 0.5)));
}
