#include "render/RowTemplate.h"
#include "render/TemplateRegistry.h"
#include "render/TemplateRenderer.h"
#include "RenderSupport.h"

using namespace pointloom;

namespace {

constexpr int scale = 4;

QImage drawn(TemplateID id, const SportScoreState& score, const MatchConfig& config = shortMatch(),
             const QImage& logo = {}) {
    return renderScoreboardImage(id, score, config, logo, scale);
}

/// The colour at a place of the board, in template units from its top left corner.
QColor at(const QImage& image, double x, double y) {
    return image.pixelColor(static_cast<int>((canvasMargin + x) * scale),
                            static_cast<int>((canvasMargin + y) * scale));
}

QColor rgb(double red, double green, double blue, double alpha = 1) {
    return Rgba{red, green, blue, alpha}.color();
}

/// What the 38-28-46 templates show: name column, first and second set, game cell; of both teams.
struct ExpectedBoard {
    TemplateID id;
    std::array<QColor, 4> team1;
    std::array<QColor, 4> team2;
};

class OpaqueRowTemplate : public testing::TestWithParam<ExpectedBoard> {};

QImage solidLogo(int width, int height) {
    QImage logo(width, height, QImage::Format_ARGB32_Premultiplied);
    logo.fill(QColor(255, 0, 255));
    return logo;
}

bool isLogoColor(const QColor& color) {
    return isNear(color, QColor(255, 0, 255), 40);
}

}

TEST_P(OpaqueRowTemplate, PaintsItsCells) {
    const ExpectedBoard& expected = GetParam();
    const QImage image = drawn(expected.id, scoreFor(expected.id));
    // Near the cells' lower left corners, clear of dots and digits.
    constexpr std::array columns{80.0, 120 + 1.5, 148 + 1.5, 204 + 2.0};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const QColor first = at(image, columns[i], 36);
        const QColor second = at(image, columns[i], 39 + 36);
        EXPECT_TRUE(isNear(first, expected.team1[i]))
            << "team 1, column " << i << ": " << qPrintable(first.name(QColor::HexArgb));
        EXPECT_TRUE(isNear(second, expected.team2[i]))
            << "team 2, column " << i << ": " << qPrintable(second.name(QColor::HexArgb));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Templates, OpaqueRowTemplate,
    testing::Values(
        ExpectedBoard{TemplateID::classic,
                      {rgb(0.118, 0.227, 0.373), rgb(0.086, 0.188, 0.349), rgb(0.118, 0.227, 0.373),
                       rgb(0.784, 0.294, 0.067)},
                      {rgb(0.102, 0.2, 0.329), rgb(0.071, 0.157, 0.282), rgb(0.102, 0.2, 0.329),
                       rgb(0.784, 0.294, 0.067)}},
        ExpectedBoard{TemplateID::dark,
                      {rgb(0.067, 0.067, 0.067), rgb(0.102, 0.102, 0.102), rgb(0.067, 0.067, 0.067),
                       rgb(0.722, 0.525, 0.043)},
                      {rgb(0.039, 0.039, 0.039), rgb(0.067, 0.067, 0.067), rgb(0.039, 0.039, 0.039),
                       rgb(0.722, 0.525, 0.043)}},
        ExpectedBoard{
            TemplateID::wimbledon,
            {rgb(0, 0.259, 0.184), rgb(0, 0.322, 0.22), rgb(0, 0.259, 0.184), rgb(0.298, 0.153, 0.459)},
            {rgb(0, 0.22, 0.149), rgb(0, 0.271, 0.184), rgb(0, 0.22, 0.149), rgb(0.298, 0.153, 0.459)}},
        ExpectedBoard{
            TemplateID::volleyCourt,
            {rgb(0.55, 0.35, 0.15), rgb(0.48, 0.3, 0.12), rgb(0.55, 0.35, 0.15), rgb(0.2, 0.55, 0.2)},
            {rgb(0.46, 0.28, 0.1), rgb(0.4, 0.24, 0.08), rgb(0.46, 0.28, 0.1), rgb(0.2, 0.55, 0.2)}},
        ExpectedBoard{
            TemplateID::badmintonGym,
            {rgb(0.1, 0.3, 0.15), rgb(0.08, 0.24, 0.12), rgb(0.1, 0.3, 0.15), rgb(0.9, 0.9, 0.9)},
            {rgb(0.08, 0.24, 0.12), rgb(0.06, 0.18, 0.09), rgb(0.08, 0.24, 0.12), rgb(0.9, 0.9, 0.9)}},
        ExpectedBoard{
            TemplateID::ttRetro,
            {rgb(0.6, 0.05, 0.05), rgb(0.7, 0.1, 0.1), rgb(0.6, 0.05, 0.05), rgb(0.05, 0.05, 0.05)},
            {rgb(0.48, 0.03, 0.03), rgb(0.58, 0.08, 0.08), rgb(0.48, 0.03, 0.03), rgb(0.05, 0.05, 0.05)}},
        ExpectedBoard{TemplateID::pickleballClassic,
                      {rgb(0, 0.27, 0.53), rgb(0, 0.18, 0.38), rgb(0, 0.27, 0.53), rgb(0.83, 0.68, 0.21)},
                      {rgb(0, 0.22, 0.45), rgb(0, 0.18, 0.38), rgb(0, 0.22, 0.45), rgb(0.83, 0.68, 0.21)}}),
    [](const auto& test) { return std::string(rawValue(test.param.id)); });

TEST(RowTemplate, ThirdSetHasTheAccentOfTheFirst) {
    const QImage image = drawn(TemplateID::classic, tennisScore());
    EXPECT_EQ(at(image, 176 + 1.5, 36), at(image, 120 + 1.5, 36));
    EXPECT_NE(at(image, 176 + 1.5, 36), at(image, 148 + 1.5, 36));
}

TEST(RowTemplate, TranslucentPanelLetsItsShadowThrough) {
    // Shadow, panel, cell: all three are translucent and lie one over the other.
    const QImage image = drawn(TemplateID::minimal, tennisScore());
    const auto alphaOf = [](std::initializer_list<double> layers) {
        double clear = 1;
        for (const double alpha : layers)
            clear *= 1 - alpha;
        return 1 - clear;
    };
    EXPECT_NEAR(at(image, 80, 34).alphaF(), alphaOf({0.4 * 0.72, 0.72}), 0.03);
    EXPECT_NEAR(at(image, 120 + 1.5, 18).alphaF(), alphaOf({0.4 * 0.72, 0.72, 0.08}), 0.03);
}

TEST(RowTemplate, DividerLiesInTheGapBetweenTheRows) {
    const QImage classic = onBlack(drawn(TemplateID::classic, tennisScore()));
    EXPECT_TRUE(isNear(at(classic, 80, 38.5), layered({rgb(0.118, 0.227, 0.373), rgb(1, 1, 1, 0.15)})));
    const QImage neon = onBlack(drawn(TemplateID::ttNeon, pointScore()));
    EXPECT_GT(at(neon, 80, 38.5).red(), at(neon, 80, 37).red() + 80) << "the orange divider";
    const QImage dark = onBlack(drawn(TemplateID::dark, tennisScore()));
    EXPECT_TRUE(isNear(at(dark, 80, 38.5), rgb(0.067, 0.067, 0.067))) << "the panel, no divider";
}

TEST(RowTemplate, BroadcastSplitsIntoBlueAboveRed) {
    const QImage image = drawn(TemplateID::broadcast, tennisScore());
    EXPECT_TRUE(isNear(at(image, 1, 1), rgb(0, 0.188, 0.529))) << "square corner";
    EXPECT_TRUE(isNear(at(image, 80, 39), rgb(0, 0.188, 0.529)));
    EXPECT_TRUE(isNear(at(image, 80, 42), rgb(0.784, 0.063, 0.18)));
    EXPECT_TRUE(isNear(at(image, 120 + 90 + 2, 20), rgb(1, 1, 1))) << "white game cell";
    const QImage pixels = onBlack(image);
    EXPECT_FALSE(isNear(at(pixels, 80, 40.5), QColor(Qt::black), 30)) << "no gap between the bands";
}

TEST(RowTemplate, DecorationsShowTheirColours) {
    const QImage gradient = drawn(TemplateID::gradient, tennisScore());
    EXPECT_GT(at(gradient, 110, 70).blueF(), at(gradient, 60, 4).blueF() + 0.03F) << "runs to the purple";

    const QImage retro = drawn(TemplateID::retro, tennisScore());
    EXPECT_TRUE(isNear(at(retro, 80, 0.5), rgb(0.722, 0.588, 0.047))) << "border, inside";
    EXPECT_TRUE(isNear(at(retro, 80, -0.5), rgb(0.722, 0.588, 0.047))) << "border, outside";
    EXPECT_TRUE(isNear(at(retro, 80, 38.5), rgb(0.722, 0.588, 0.047))) << "rule";

    EXPECT_TRUE(isNear(at(drawn(TemplateID::rolandgarros, tennisScore()), 2, 60), rgb(0.627, 0.259, 0.102)));
    EXPECT_TRUE(isNear(at(drawn(TemplateID::wimbledon, tennisScore()), 2, 60), rgb(0.298, 0.153, 0.459)));

    const QImage night = onBlack(drawn(TemplateID::nightsession, tennisScore()));
    EXPECT_GT(at(night, 80, 0.1).blue(), at(night, 80, 4).blue() + 40) << "a line around the glass";
    EXPECT_GT(at(night, 80, -3).blue(), 30) << "a blue glow outside";
}

TEST(RowTemplate, ServeDotMarksTheServingRow) {
    const auto isDot = [](const QColor& color) { return isNear(color, serveDotColor.color()); };
    const QRect team1 = pixelsWhere(drawn(TemplateID::classic, tennisScore()), isDot);
    const QRect team2 = pixelsWhere(drawn(TemplateID::volleyCourt, pointScore()), isDot);
    EXPECT_NEAR(team1.center().x(), (canvasMargin + 10) * scale, 2);
    EXPECT_NEAR(team1.center().y(), (canvasMargin + 19) * scale, 2);
    EXPECT_NEAR(team1.width(), 2 * 0.14 * 38 * scale, 4);
    EXPECT_NEAR(team2.center().y(), (canvasMargin + 39 + 19) * scale, 2);

    ScoreState nobody = tennisScore();
    nobody.servingTeam = 0;
    EXPECT_TRUE(pixelsWhere(drawn(TemplateID::classic, nobody), isDot).isEmpty());
}

TEST(RowTemplate, WithoutSetsTheGameFollowsTheName) {
    const QImage image = drawn(TemplateID::classic, tennisScore({}));
    EXPECT_EQ(image.width(), (120 + 46 + 20) * scale);
    EXPECT_TRUE(isNear(at(image, 120 + 2, 36), rgb(0.784, 0.294, 0.067)));
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

TEST(RowTemplate, VolleyMinimalCastsALighterShadow) {
    const double lighter = at(drawn(TemplateID::volleyMinimal, pointScore()), 80, -3).alphaF();
    const double usual = at(drawn(TemplateID::ttMinimal, pointScore()), 80, -3).alphaF();
    EXPECT_NEAR(lighter / usual, 0.4 / 0.5, 0.05);
}

TEST(TiebreakMark, StandsOnTheLosersRowOfACloseSet) {
    EXPECT_TRUE(showsTiebreakMark({6, 7, 5}, 1));
    EXPECT_FALSE(showsTiebreakMark({6, 7, 5}, 2));
    EXPECT_TRUE(showsTiebreakMark({8, 7, 10}, 2));
    EXPECT_FALSE(showsTiebreakMark({6, 4, 5}, 2));
    EXPECT_FALSE(showsTiebreakMark({7, 5, 5}, 2));
    EXPECT_FALSE(showsTiebreakMark({7, 7, 5}, 1));
    EXPECT_FALSE(showsTiebreakMark({6, 7, {}}, 1));
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_FALSE(showsTiebreakMark({largest, largest, 5}, 1));
    EXPECT_TRUE(showsTiebreakMark({largest, largest - 1, 5}, 2));
}

TEST(TiebreakMark, IsDrawnBesideTheGamesNearTheTop) {
    const QImage plain = drawn(TemplateID::classic, tennisScore({{6, 7, {}}}));
    const QImage marked = drawn(TemplateID::classic, tennisScore({{6, 7, 5}}));
    QRect changed;
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            if (plain.pixel(x, y) != marked.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
        }
    }
    ASSERT_FALSE(changed.isEmpty());
    EXPECT_GE(changed.left(), (canvasMargin + 120 + 14) * scale) << "right of the cell's centre";
    EXPECT_LT(changed.bottom(), (canvasMargin + 19) * scale) << "in the upper half of the first row";
}

TEST(RowTemplate, LongNamesAreCutAtTheColumnsEdge) {
    QImage image = transparentImage(400, 60);
    QPainter painter(&image);
    const ScoreboardLayout layout(38, 28, 46, shortMatch()); // measured for a short name
    const RowColors colors{{0, 0, 0}, {0, 1, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    drawScoreboardRow(painter, layout, {10, 10}, QString(40, u'W'), tennisScore({{6, 4, {}}}).sets, 2,
                      QStringLiteral("0"), false, colors);
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
