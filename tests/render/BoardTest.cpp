// Scoreboards of one's own: what a board changes of its template, and what follows from it.
#include "render/BoardLook.h"
#include "render/TemplateRenderer.h"
#include "RenderSupport.h"

#include <cmath>

using namespace pointloom;

namespace {

constexpr int scale = 4;
constexpr BoardColor white{255, 255, 255};
constexpr BoardColor black{0, 0, 0};
constexpr BoardColor clubGreen{0x0B, 0x5D, 0x3B};
constexpr BoardColor clubYellow{0xFF, 0xD1, 0x00};

QColor colorOf(BoardColor color) {
    return {color.red, color.green, color.blue, color.alpha};
}

MatchConfig matchWith(const BoardStyle& board) {
    MatchConfig match = shortMatch();
    match.board = board;
    return match;
}

QImage drawn(TemplateID id, const MatchConfig& match, const QImage& logo = {}) {
    return renderScoreboardImage(id, scoreFor(id), match, logo, scale);
}

/// The colour at a place of the scoreboard, in template units from its top left corner.
QColor at(const QImage& image, double x, double y) {
    return image.pixelColor(static_cast<int>((canvasMargin + x) * scale),
                            static_cast<int>((canvasMargin + y) * scale));
}

BoardStyle withColors(const BoardColors& colors) {
    return {.name = QStringLiteral("Club"), .colors = colors};
}

// Nimbus Sans has neither ink nor shadow at these places of a short name's row.
constexpr double freeOfText = 100;
constexpr double firstSetEdge = 120 + 2;
constexpr double gameEdge = 120 + 3 * 28 + 2;

}

TEST(Board, ThatChangesNothingIsItsTemplate) {
    EXPECT_EQ(drawn(TemplateID::broadcast, matchWith({})), drawn(TemplateID::broadcast, shortMatch()));
    EXPECT_EQ(drawn(TemplateID::stacked, matchWith(withColors({.main = clubGreen}))),
              drawn(TemplateID::stacked, shortMatch()));
}

TEST(Board, ChosenColoursAreDrawnAsTheyAre) {
    const BoardStyle board = withColors({.main = clubGreen,
                                         .points = clubYellow,
                                         .row2 = white,
                                         .sets = BoardColor{0x20, 0x20, 0x60},
                                         .text = BoardColor{0xFF, 0x80, 0x80}});
    for (const TemplateID id : {TemplateID::classic, TemplateID::minimal, TemplateID::ttNeon}) {
        SCOPED_TRACE(rawValue(id));
        const QImage image = drawn(id, matchWith(board));
        EXPECT_TRUE(isNear(at(image, freeOfText, 10), colorOf(clubGreen)));
        EXPECT_TRUE(isNear(at(image, freeOfText, 60), colorOf(white)));
        EXPECT_TRUE(isNear(at(image, firstSetEdge, 10), QColor(0x20, 0x20, 0x60)));
        const double game = id == TemplateID::minimal ? 120 + 3 * 26 + 2 : gameEdge;
        EXPECT_TRUE(isNear(at(image, game, 10), colorOf(clubYellow)));
        EXPECT_FALSE(pixelsWhere(image, [](const QColor& color) {
                         return isNear(color, QColor(0xFF, 0x80, 0x80));
                     }).isEmpty());
    }
}

TEST(Board, OneMainColourBringsItsShades) {
    const QImage image = drawn(TemplateID::classic, matchWith(withColors({.main = clubGreen})));
    const QColor row2 = at(image, freeOfText, 60);
    const QColor sets = at(image, firstSetEdge, 10);
    for (const QColor& shade : {row2, sets}) {
        EXPECT_NEAR(shade.hsvHueF(), colorOf(clubGreen).hsvHueF(), 0.02);
        EXPECT_LT(shade.green(), clubGreen.green) << "darker, as in the template";
    }
    EXPECT_NE(row2, sets);
    EXPECT_TRUE(isNear(at(image, gameEdge, 10), QColor(200, 75, 17))) << "the template's clay";
}

TEST(Board, ContrastIsThatOfTheWebsGuidelines) {
    const auto contrast = [](BoardColor ground, BoardColor text) {
        return contrastOf(styleOf(TemplateID::ttClassic, withColors({.main = ground,
                                                                     .points = ground,
                                                                     .row2 = ground,
                                                                     .sets = ground,
                                                                     .text = text,
                                                                     .pointsText = text})));
    };
    EXPECT_NEAR(contrast(white, black).names, 21, 0.001);
    EXPECT_NEAR(contrast(white, {0x77, 0x77, 0x77}).points, 4.48, 0.005);
    EXPECT_NEAR(contrast({0x76, 0x76, 0x76}, white).names, 4.54, 0.005);
    EXPECT_NEAR(contrast({0xFF, 0, 0}, white).points, 4.00, 0.005);
    EXPECT_NEAR(contrast({0, 0, 0, 0x80}, white).names, 10.49, 0.01) << "twice over a white picture";
}

TEST(Board, TextStaysReadableOnAnyChosenGround) {
    for (const TemplateID id : allCases<TemplateID>()) {
        if (!canBecomeBoard(id))
            continue;
        for (const BoardColor color : {white, black, clubGreen, clubYellow, BoardColor{0x77, 0x77, 0x77},
                                       BoardColor{0xE0, 0x30, 0x30}}) {
            const BoardContrast contrast =
                contrastOf(styleOf(id, withColors({.main = color, .points = color, .row2 = color})));
            EXPECT_GE(contrast.names, 4) << rawValue(id) << qPrintable(color.text()); // on two shades
            EXPECT_GE(contrast.points, readableContrast) << rawValue(id) << qPrintable(color.text());
        }
    }
}

TEST(Board, PointsMayFollowTheNames) {
    const QImage image =
        drawn(TemplateID::volleyArena, matchWith({.name = {}, .order = BoardOrder::pointsFirst}));
    const QImage usual = drawn(TemplateID::volleyArena, shortMatch());
    EXPECT_EQ(image.size(), usual.size());
    EXPECT_EQ(at(image, 120 + 2, 10), at(usual, gameEdge, 10));
    EXPECT_EQ(at(image, 120 + 46 + 2, 10), at(usual, firstSetEdge, 10));
}

TEST(Board, RoundCornersCutTheCells) {
    MatchConfig match = matchWith({.name = {}, .corner = 19});
    EXPECT_EQ(at(drawn(TemplateID::classic, shortMatch()), 1, 1).alpha(), 255);
    const MatchConfig green = matchWith(withColors({.main = clubGreen}));
    EXPECT_EQ(at(drawn(TemplateID::classic, green), 1, 1).alpha(), 255) << "as in the template";
    const QImage round = drawn(TemplateID::classic, match);
    for (const double x : {1.0, 250.0 - 1.5}) {
        for (const double y : {1.0, 77 - 1.5})
            EXPECT_LT(at(round, x, y).alpha(), 200) << x << ", " << y << ": shadow alone";
    }
    match.board->corner = 1e300;
    EXPECT_EQ(drawn(TemplateID::classic, match), round);
}

TEST(Board, LogoStandsWhereItIsChosen) {
    QImage logo(30, 30, QImage::Format_ARGB32_Premultiplied);
    logo.fill(QColor(255, 0, 255));
    const auto place = [&](TemplateID id, std::optional<BoardLogo> chosen) {
        return pixelsWhere(drawn(id, matchWith({.name = {}, .logo = chosen}), logo),
                           [](const QColor& color) { return isNear(color, QColor(255, 0, 255), 40); });
    };
    for (const TemplateID id : {TemplateID::classic, TemplateID::volleyArena}) {
        SCOPED_TRACE(rawValue(id));
        EXPECT_EQ(place(id, BoardLogo::left).left(), (10 + 7) * scale);
        EXPECT_EQ(place(id, BoardLogo::right).right(), (10 + 120 - 4) * scale - 1);
        EXPECT_TRUE(place(id, BoardLogo::none).isEmpty());
    }
    EXPECT_FALSE(place(TemplateID::classic, {}).isEmpty());
    EXPECT_TRUE(place(TemplateID::volleyArena, {}).isEmpty());
}

TEST(Board, NarrowFontIsAsNarrowAsItsDesign) {
    const QString name = QStringLiteral("Dravnik 0123456789");
    const double usual = ctTextWidth(name, {FontFace::regular, 20});
    EXPECT_NEAR(ctTextWidth(name, {FontFace::regular, 20, BoardFont::narrow}) / usual, 0.82, 0.01);
    for (const BoardFont font : {BoardFont::geometric, BoardFont::serif})
        EXPECT_NE(ctTextWidth(name, {FontFace::regular, 20, font}), usual);
}
