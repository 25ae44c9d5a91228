#include "render/RowTemplate.h"
#include "render/ScoreboardTemplate.h"
#include "render/TemplateRenderer.h"
#include "RenderSupport.h"

using namespace pointloom;

namespace {

constexpr int scale = 4;

QImage drawn(TemplateID id, const SportScoreState& score, const MatchConfig& config = shortMatch(),
             const QImage& logo = {}) {
    return renderScoreboardImage(id, score, config, logo, scale);
}

/// The colour at a place of the scoreboard, in template units from its top left corner.
QColor at(const QImage& image, double x, double y) {
    return image.pixelColor(static_cast<int>((canvasMargin + x) * scale),
                            static_cast<int>((canvasMargin + y) * scale));
}

QImage solidLogo(int width, int height) {
    QImage logo(width, height, QImage::Format_ARGB32_Premultiplied);
    logo.fill(QColor(255, 0, 255));
    return logo;
}

bool isLogoColor(const QColor& color) {
    return isNear(color, QColor(255, 0, 255), 40);
}

}

TEST(RowTemplate, WithoutSetsTheGameFollowsTheName) {
    const QImage image = drawn(TemplateID::classic, tennisScore({}));
    EXPECT_EQ(image.width(), (120 + 46 + 20) * scale);
    EXPECT_TRUE(isNear(at(image, 120 + 2, 36), Rgba{0.784, 0.294, 0.067}.color()));
}

TEST(RowTemplate, DrawsPairsOnlyInSportsThatHaveThem) {
    MatchConfig config = shortMatch();
    config.team1.player2 = QStringLiteral("A partner with a name that widens the board");
    for (const SportID sport : {SportID::padel, SportID::volleyball}) {
        const TemplateID id = filteredTemplates(sport).front();
        config.sport = sport;
        config.format = MatchFormat::singles;
        const QImage single = drawn(id, scoreFor(id), config);
        config.format = MatchFormat::doubles;
        EXPECT_EQ(drawn(id, scoreFor(id), config) == single, sport == SportID::volleyball) << rawValue(sport);
    }
}

TEST(RowTemplate, DrawsOnlyScoresOfItsOwnFamily) {
    for (const TemplateID id : allCases<TemplateID>()) {
        SportScoreState other = pointScore();
        if (!usesTennisScoring(sportOf(id)))
            other = tennisScore();
        EXPECT_TRUE(isTransparent(drawn(id, other))) << rawValue(id);
        EXPECT_FALSE(isTransparent(drawn(id, scoreFor(id)))) << rawValue(id);
    }
}

TEST(RowTemplate, OnlyTennisDrawsTheLogoAndAlwaysAsASquare) {
    const QImage wide = solidLogo(400, 100);
    const QRect slot =
        pixelsWhere(drawn(TemplateID::classic, tennisScore(), shortMatch(), wide), isLogoColor);
    EXPECT_EQ(slot, QRect((10 + 7) * scale, static_cast<int>((10 + 23.5) * scale), 30 * scale, 30 * scale));
    const QImage point = drawn(TemplateID::volleyArena, pointScore(), shortMatch(), wide);
    EXPECT_TRUE(pixelsWhere(point, isLogoColor).isEmpty());

    QImage low = transparentImage(80, 80);
    QPainter painter(&low);
    drawLogoInScoreboard(painter, wide, {0, 0}, 30);
    painter.end();
    EXPECT_EQ(pixelsWhere(low, isLogoColor), QRect(11, 4, 22, 22));
}

TEST(RowTemplate, LogoStandsUprightWhicheverWayTheAxisRuns) {
    QImage halves = solidLogo(60, 60);
    QPainter(&halves).fillRect(0, 30, 60, 30, Qt::green);
    for (const bool upward : {false, true}) {
        QImage image = transparentImage(80, 80);
        QPainter painter(&image);
        if (upward) {
            painter.translate(0, 80);
            painter.scale(1, -1);
        }
        drawLogoInScoreboard(painter, halves, {0, 0}, 80);
        painter.end();
        EXPECT_TRUE(isNear(image.pixelColor(22, 30), QColor(255, 0, 255))) << "top, upward axis " << upward;
        EXPECT_TRUE(isNear(image.pixelColor(22, 50), QColor(Qt::green))) << "bottom, upward axis " << upward;
    }
}

TEST(TiebreakMark, StandsOnTheLosersRowOfACloseSet) {
    EXPECT_TRUE(showsTiebreakMark({6, 7, 5}, Side::first));
    EXPECT_FALSE(showsTiebreakMark({6, 7, 5}, Side::second));
    EXPECT_TRUE(showsTiebreakMark({8, 7, 10}, Side::second));
    EXPECT_FALSE(showsTiebreakMark({6, 4, 5}, Side::second));
    EXPECT_FALSE(showsTiebreakMark({7, 5, 5}, Side::second));
    EXPECT_FALSE(showsTiebreakMark({7, 7, 5}, Side::first));
    EXPECT_FALSE(showsTiebreakMark({6, 7, {}}, Side::first));
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_FALSE(showsTiebreakMark({largest, largest, 5}, Side::first));
    EXPECT_TRUE(showsTiebreakMark({largest, largest - 1, 5}, Side::second));
}

TEST(RowTemplate, LongNamesAreCutAtTheColumnsEdge) {
    QImage image = transparentImage(400, 60);
    QPainter painter(&image);
    const ScoreboardLayout layout(38, 28, 46, shortMatch()); // measured for a short name
    const RowColors colors{{0, 0, 0}, {0, 1, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    drawScoreboardRow(painter, layout, {10, 10}, QString(40, u'W'), tennisScore({{6, 4, {}}}).sets,
                      Side::second, QStringLiteral("0"), false, colors);
    painter.end();
    const auto isText = [](const QColor& color) { return color.green() > 30; };
    const QRect name = pixelsWhere(image.copy(0, 0, 135, 60), isText);
    EXPECT_EQ(name.right(), 10 + 120 - 1);
    EXPECT_GE(name.left(), 10 + 44 - 1);
}

TEST(RowTemplate, AbsurdNumbersDraw) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    const PointScoreState score{{{most, least, least}}, {least, most}, least};
    EXPECT_FALSE(isTransparent(drawn(TemplateID::ttClassic, score)));
}
