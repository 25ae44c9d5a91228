#include "render/ScoreboardImage.h"

#include "render/TemplateRegistry.h"
#include "RenderSupport.h"

#include <thread>

using namespace pointloom;

namespace {

MatchConfig longDoubles() {
    MatchConfig config = matchBetween(QStringLiteral("Novotníčková"), QStringLiteral("Albaret"));
    config.format = MatchFormat::doubles;
    config.team1.player2 = QStringLiteral("Dvořáčková");
    config.team1.flag1 = config.team1.flag2 = QStringLiteral("CZ");
    config.team2.player2 = QStringLiteral("Mahut");
    config.team2.flag1 = QStringLiteral("FR");
    return config;
}

}

TEST(ScoreboardImage, IsTheCanvasTimesTheScaleRoundedUp) {
    const QImage image = renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, 0.75);
    EXPECT_EQ(image.size(), QSize(203, 73)); // 202.5 x 72.75
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
    EXPECT_EQ(renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, 1.1).size(),
              QSize(297, 107));
}

TEST(ScoreboardImage, GrowsForABoardLargerThanItsCanvas) {
    const ScoreboardTemplate& broadcast = TemplateRegistry::templateFor(TemplateID::broadcast);
    const QSizeF canvas = broadcast.canvasSize(3, longDoubles());
    const QSizeF board = broadcast.boardSize(3, longDoubles());
    ASSERT_GT(board.width() + canvasMargin, canvas.width()) << "the case that needs room";
    const QImage image = renderScoreboardImage(TemplateID::broadcast, tennisScore(), longDoubles(), {}, 1);
    EXPECT_EQ(image.width(), static_cast<int>(std::ceil(board.width() + 20)));
    EXPECT_EQ(image.height(), 97) << "the height fits";
    const auto isOpaque = [](const QColor& color) { return color.alpha() == 255; };
    const QRect drawn = pixelsWhere(image, isOpaque);
    EXPECT_EQ(drawn.topLeft(), QPoint(10, 10));
    EXPECT_NEAR(drawn.right(), 10 + board.width(), 1.5) << "the game cell is whole";
}

TEST(ScoreboardImage, BoundsScaleAndSize) {
    EXPECT_TRUE(renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, 0).isNull());
    EXPECT_TRUE(renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, -1).isNull());
    EXPECT_TRUE(
        renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, std::nan("")).isNull());
    EXPECT_EQ(renderScoreboardImage(TemplateID::classic, tennisScore({}), shortMatch(), {}, 1e9).height(),
              97 * 16);
    const MatchConfig endless = matchBetween(QString(100'000, u'x'), {});
    const QImage image = renderScoreboardImage(TemplateID::classic, tennisScore(), endless, {}, 2);
    ASSERT_FALSE(image.isNull());
    EXPECT_LE(image.width(), 16384);
}

TEST(ScoreboardImage, EveryTemplateKeepsInsideItsImageAtAnyScale) {
    for (const TemplateID id : allCases<TemplateID>()) {
        for (const double scale : {0.3, 1.0, 1.37}) {
            const ScoreboardTemplate& scoreboard = TemplateRegistry::templateFor(id);
            const QImage image = renderScoreboardImage(id, scoreFor(id), longDoubles(), {}, scale);
            const auto isBoard = [](const QColor& color) { return color.alphaF() > 0.6F; };
            const QRect board = pixelsWhere(image, isBoard);
            const QSizeF size = scoreboard.boardSize(3, longDoubles()) * scale;
            EXPECT_NEAR(board.width(), size.width(), 3.5) << rawValue(id) << " at " << scale;
            EXPECT_NEAR(board.height(), size.height(), 3.5) << rawValue(id) << " at " << scale;
        }
    }
}

TEST(ScoreboardImage, ThreadsDrawTheSamePixels) {
    QImage logo(300, 300, QImage::Format_ARGB32_Premultiplied);
    logo.fill(Qt::cyan);
    const auto drawAll = [&logo] {
        std::vector<QImage> images;
        for (const TemplateID id : allCases<TemplateID>())
            images.push_back(renderScoreboardImage(id, scoreFor(id), longDoubles(), logo, 1.5));
        return images;
    };
    std::array<std::vector<QImage>, 4> results;
    std::vector<std::thread> threads;
    for (auto& result : results)
        threads.emplace_back([&] { result = drawAll(); });
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<QImage> here = drawAll();
    for (const auto& result : results)
        EXPECT_TRUE(result == here);
}

TEST(StackedTemplate, CardGrowsWithSetsAndStandsPairsOnTwoLines) {
    const ScoreboardTemplate& card = TemplateRegistry::templateFor(TemplateID::stacked);
    const QSizeF three = card.canvasSize(3, shortMatch());
    const QSizeF five = card.canvasSize(5, shortMatch());
    EXPECT_EQ(three.width(), five.width());
    EXPECT_GT(five.height(), three.height());
    EXPECT_GT(card.canvasSize(3, longDoubles()).height(), three.height());
    EXPECT_EQ(card.canvasSize(0, shortMatch()), card.boardSize(0, shortMatch()) + QSizeF(20, 20));
    EXPECT_LT(card.canvasSize(3, matchBetween(QString(400, u'W'), {})).width(), 500) << "long names are cut";
}

TEST(StackedTemplate, ShowsServeTiebreakAndLogo) {
    const QImage served1 = renderScoreboardImage(TemplateID::stacked, tennisScore(), shortMatch(), {}, 2);
    ScoreState other = tennisScore();
    other.servingTeam = 2;
    const QImage served2 = renderScoreboardImage(TemplateID::stacked, other, shortMatch(), {}, 2);
    const auto isDot = [](const QColor& color) { return isNear(color, QColor(250, 204, 20), 6); };
    EXPECT_LT(pixelsWhere(served1, isDot).center().x(), served1.width() / 2);
    EXPECT_GT(pixelsWhere(served2, isDot).center().x(), served2.width() / 2);

    const QImage plain = renderScoreboardImage(
        TemplateID::stacked, tennisScore({{6, 4, {}}, {6, 7, {}}, {3, 3, {}}}), shortMatch(), {}, 2);
    EXPECT_NE(plain, served1) << "the tie-break points";

    QImage logo(64, 64, QImage::Format_ARGB32_Premultiplied);
    logo.fill(Qt::cyan);
    const QImage withLogo = renderScoreboardImage(TemplateID::stacked, tennisScore(), shortMatch(), logo, 2);
    const auto isLogo = [](const QColor& color) { return isNear(color, QColor(Qt::cyan)); };
    EXPECT_EQ(pixelsWhere(withLogo, isLogo).size(), QSize(72, 72));
}
