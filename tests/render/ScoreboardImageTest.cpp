#include "render/ScoreboardImage.h"

#include "render/ScoreboardLayout.h"
#include "render/ScoreboardTemplate.h"
#include "render/TemplateRenderer.h"
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

TEST(ScoreboardImage, KeepsTheRoomAroundABoardSmallerThanItsCanvas) {
    const QImage image = renderScoreboardImage(TemplateID::minimal, tennisScore(), shortMatch(), {}, 1);
    EXPECT_EQ(image.size(), QSize(270, 97)) << "as the others, though its board is 240 x 73";
}

TEST(ScoreboardImage, TemplatesLeaveThePainterAsItWas) {
    for (const TemplateID id : allCases<TemplateID>()) {
        QImage image = transparentImage(400, 300);
        QPainter painter(&image);
        painter.translate(3, 4);
        const auto before = std::tuple(painter.transform(), painter.renderHints(), painter.hasClipping());
        const SportScoreState score = scoreFor(id);
        TemplateRegistry::templateFor(id).draw(painter, {score, shortMatch(), QSizeF(400, 300), {}},
                                               {10, 10});
        EXPECT_EQ(before, std::tuple(painter.transform(), painter.renderHints(), painter.hasClipping()))
            << rawValue(id);
    }
}

TEST(ScoreboardImage, BoundsScaleAndSize) {
    EXPECT_TRUE(renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, 0).isNull());
    EXPECT_TRUE(renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, -1).isNull());
    EXPECT_TRUE(
        renderScoreboardImage(TemplateID::classic, tennisScore(), shortMatch(), {}, std::nan("")).isNull());
    EXPECT_EQ(renderScoreboardImage(TemplateID::classic, tennisScore({}), shortMatch(), {}, 1e9).height(),
              97 * 16);
    const QImage tall = renderScoreboardImage(TemplateID::stacked, tennisScore(std::vector<SetScore>(40)),
                                              shortMatch(), {}, 1e9);
    EXPECT_NEAR(static_cast<double>(tall.width()) * tall.height(), 64e6, 1e6)
        << "pixels of a card of 40 sets";
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
    EXPECT_DOUBLE_EQ(card.canvasSize(3, matchBetween(QString(15, u'i'), {})).width(),
                     2 * (15 * 7.8 + 24) + 46 + 20);
    EXPECT_GT(five.height(), three.height());
    EXPECT_GT(card.canvasSize(3, longDoubles()).height(), three.height());
    EXPECT_EQ(card.canvasSize(0, shortMatch()), card.boardSize(0, shortMatch()) + QSizeF(20, 20));
    EXPECT_LT(card.canvasSize(3, matchBetween(QString(400, u'W'), {})).width(), 500) << "long names are cut";
}

TEST(StackedTemplate, ShowsEachValueInItsTeamsColumn) {
    const ScoreState score = tennisScore({{6, 4, {}}, {6, 7, {}}, {3, 2, {}}});
    const MatchConfig match = shortMatch();
    const auto card = [](const ScoreState& shown, const MatchConfig& config) {
        return renderScoreboardImage(TemplateID::stacked, shown, config, {}, 2);
    };
    const auto withScore = [&](auto change) {
        ScoreState changed = score;
        change(changed);
        return card(changed, match);
    };
    const QString other = QStringLiteral("M");
    struct Change {
        const char* what;
        QImage image;
        QRect place; // of the card without its margin
    };
    const Change changes[] = {
        {"name 1", card(score, matchBetween(other, QStringLiteral("B"))), {0, 4, 106, 38}},
        {"name 2", card(score, matchBetween(QStringLiteral("A"), other)), {152, 4, 106, 38}},
        {"game 1", withScore([](auto& s) { s.currentGame.team1 = GamePoint::zero; }), {0, 42, 106, 54}},
        {"game 2", withScore([](auto& s) { s.currentGame.team2 = GamePoint::zero; }), {152, 42, 106, 54}},
        {"set 1 of 1", withScore([](auto& s) { s.sets[0].team1 = 8; }), {0, 96, 106, 25}},
        {"set 2 of 2", withScore([](auto& s) { s.sets[1].team2 = 9; }), {152, 121, 106, 25}},
        {"set 3 of 2", withScore([](auto& s) { s.sets[2].team2 = 1; }), {152, 146, 106, 25}},
        {"tie-break", withScore([](auto& s) { s.sets[1].tiebreak = 5; }), {53, 121, 53, 25}},
    };
    const QImage plain = card(score, match);
    for (const auto& [what, image, place] : changes) {
        ASSERT_EQ(image.size(), plain.size()) << what;
        QRect changed;
        for (int y = 0; y < plain.height(); ++y) {
            for (int x = 0; x < plain.width(); ++x) {
                if (plain.pixel(x, y) != image.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
            }
        }
        EXPECT_FALSE(changed.isEmpty()) << what;
        const QRect allowed((place.topLeft() + QPoint(10, 10)) * 2, place.size() * 2);
        EXPECT_TRUE(allowed.contains(changed)) << what << " is drawn elsewhere";
    }
}

TEST(StackedTemplate, LooksLikeACardWithALitWinner) {
    const ScoreState score = tennisScore({{6, 4, {}}, {0, 0, {}}});
    MatchConfig match = shortMatch();
    const QImage card = renderScoreboardImage(TemplateID::stacked, score, match, {}, 2);
    const auto at = [&card](double x, double y) {
        return card.pixelColor(static_cast<int>((10 + x) * 2), static_cast<int>((10 + y) * 2));
    };
    EXPECT_TRUE(isNear(at(129, 2), Rgba{0.835, 0.075, 0.137}.color())) << "the red edge";
    EXPECT_TRUE(isNear(at(245, 2), at(129, 2)));
    EXPECT_GT(at(60, 10).alpha(), 240);
    EXPECT_FALSE(isNear(at(1, 1), at(129, 2), 60)) << "a corner with a radius of 10";
    EXPECT_TRUE(isNear(at(3.7, 3.7), at(129, 2), 20));

    const auto brightest = [&card](int left, int top) {
        int most = 0;
        for (int y = top * 2; y < (top + 25) * 2; ++y) {
            for (int x = left * 2; x < (left + 106) * 2; ++x)
                most = std::max(most, card.pixelColor(10 * 2 + x, 10 * 2 + y).green());
        }
        return most;
    };
    EXPECT_GT(brightest(0, 96), 245) << "who won the set";
    EXPECT_LT(brightest(152, 96), 190) << "who lost it";
    EXPECT_LT(brightest(0, 121), 190) << "a set not begun";

    // A single player beside a pair is halfway between its lines.
    match.format = MatchFormat::doubles;
    match.team2.player2 = QStringLiteral("C");
    const QImage uneven = renderScoreboardImage(TemplateID::stacked, score, match, {}, 2);
    const auto isText = [](const QColor& color) { return color.green() > 200; };
    const QRect single = pixelsWhere(uneven.copy(20, 30, 212, 110), isText);
    EXPECT_NEAR(single.center().y(), (4 + 9 + 20) * 2 - 10, 4);
}

// Drawn a second time from the list of its parts, in template units.
TEST(StackedTemplate, ConsistsOfTheseParts) {
    constexpr int scale = 2;
    const Rgba white{1, 1, 1, 1};
    const auto dim = [](double alpha) { return Rgba{1, 1, 1, alpha}; };
    const QRectF board(0, 0, 106 + 46 + 106, 4 + 38 + 54 + 2 * 25 + 7);
    QImage expected(QSize(278, 173) * scale, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    {
        QPainter painter(&expected);
        painter.scale(scale, scale);
        painter.translate(10, 10);
        const auto fill = [&](const QRectF& rect, double radius, const QBrush& brush) {
            fillShape(painter, cgRoundRect(rect, radius), brush);
        };
        QLinearGradient ground(0, 0, 0, board.height());
        ground.setColorAt(0, Rgba{0.125, 0.137, 0.165, 0.97}.color());
        ground.setColorAt(1, Rgba{0.06, 0.067, 0.086, 0.97}.color());
        fill(board, 10, ground);
        const Rgba red{0.835, 0.075, 0.137, 1};
        painter.fillRect(QRectF(0, 0, 258, 4), red.color());
        fill({22, 47, 62, 44}, 7, red.color());
        fill({174, 47, 62, 44}, 7, dim(0.1).color());
        fill({6.5, 64.5, 9, 9}, 4.5, Rgba{0.98, 0.8, 0.08, 1}.color());
        fill({122, 67.5, 14, 3}, 1.5, dim(0.5).color());
        painter.fillRect(QRectF(0, 96, 258, 1), dim(0.14).color());
        painter.fillRect(QRectF(0, 96, 258, 25), dim(0.05).color());
        struct Text {
            const char* text;
            double size;
            Rgba color;
            QPointF center;
        };
        for (const Text& text : {Text{"A", 15, white, {53, 23}},
                                 {"B", 15, white, {205, 23}},
                                 {"40", 30, white, {53, 69}},
                                 {"30", 30, white, {205, 69}},
                                 {"1", 10.5, dim(0.5), {129, 108.5}},
                                 {"6", 17, white, {53, 108.5}},
                                 {"4", 17, dim(0.55), {205, 108.5}},
                                 {"2", 10.5, dim(0.5), {129, 133.5}},
                                 {"6", 17, dim(0.55), {53, 133.5}},
                                 {"7", 17, white, {205, 133.5}}})
            drawCenteredText(painter, QString::fromUtf8(text.text), {FontFace::bold, text.size}, text.color,
                             text.center);
        const double six = ctTextWidth(QStringLiteral("6"), {FontFace::bold, 17});
        drawLeftText(painter, QStringLiteral("(5)"), {FontFace::bold, 9}, dim(0.55),
                     {53 + six / 2 + 1.5, 129.5});
    }
    const QImage card = renderScoreboardImage(TemplateID::stacked, tennisScore({{6, 4, {}}, {6, 7, 5}}),
                                              shortMatch(), {}, scale);
    ASSERT_EQ(card.size(), expected.size());
    const QRect inside(QPoint(13, 14) * scale, QSize(252, 146) * scale); // without the corners
    QRect different;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (!isNear(card.pixelColor(x, y), expected.pixelColor(x, y), 14))
                different |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_TRUE(different.isEmpty()) << different.x() / 2 - 10 << ", " << different.y() / 2 - 10 << " to "
                                     << different.right() / 2 - 10 << ", " << different.bottom() / 2 - 10;
}

TEST(StackedTemplate, ShowsServeAndLogo) {
    const QImage served1 = renderScoreboardImage(TemplateID::stacked, tennisScore(), shortMatch(), {}, 2);
    ScoreState other = tennisScore();
    other.servingTeam = 2;
    const QImage served2 = renderScoreboardImage(TemplateID::stacked, other, shortMatch(), {}, 2);
    const auto isDot = [](const QColor& color) { return isNear(color, QColor(250, 204, 20), 6); };
    EXPECT_LT(pixelsWhere(served1, isDot).center().x(), served1.width() / 2);
    EXPECT_GT(pixelsWhere(served2, isDot).center().x(), served2.width() / 2);

    QImage logo(64, 64, QImage::Format_ARGB32_Premultiplied);
    logo.fill(Qt::cyan);
    const QImage withLogo = renderScoreboardImage(TemplateID::stacked, tennisScore(), shortMatch(), logo, 2);
    const auto isLogo = [](const QColor& color) { return isNear(color, QColor(Qt::cyan)); };
    EXPECT_EQ(pixelsWhere(withLogo, isLogo), QRect((10 + 111) * 2, (10 + 51) * 2, 72, 72));
}
