#include "render/StackedTemplate.h"

#include "render/DevicePixels.h"
#include "render/PictureDrawing.h"
#include "render/Shadow.h"
#include "render/TemplateRenderer.h"

#include <algorithm>
#include <array>
#include <QLinearGradient>
#include <QPainter>

namespace pointloom {

namespace {

constexpr Rgba white{1, 1, 1, 1};
constexpr Rgba cardTop{0.125, 0.137, 0.165, 0.97};
constexpr Rgba cardBottom{0.06, 0.067, 0.086, 0.97};
constexpr Rgba red{0.835, 0.075, 0.137, 1};
constexpr Rgba quietTile{1, 1, 1, 0.1};
constexpr Rgba hairline{1, 1, 1, 0.14};
constexpr Rgba stripe{1, 1, 1, 0.05};
constexpr Rgba quietText{1, 1, 1, 0.55}; // a set lost, or not begun
constexpr Rgba labelText{1, 1, 1, 0.5};

constexpr double cornerRadius = 10;
constexpr double accentHeight = 4;
constexpr double middleW = 46;
constexpr double namesPadding = 9;
constexpr double nameLineH = 20;
constexpr double gameH = 54;
constexpr double setH = 25;
constexpr double bottomPadding = 7;
constexpr double sidePadding = 12;

/// A player a line: the second of a pair stands under the first.
std::vector<QString> nameLines(const TeamConfig& team, MatchFormat format) {
    std::vector<QString> lines{TeamConfig{team.player1, {}, team.flag1, {}}.flagDisplayName(format)};
    if (format == MatchFormat::doubles && team.player2 && !team.player2->isEmpty())
        lines.push_back(TeamConfig{*team.player2, {}, team.flag2, {}}.flagDisplayName(format));
    return lines;
}

struct CardLayout {
    std::array<std::vector<QString>, 2> names;
    double columnW;
    double namesH;
    double setsH;

    CardLayout(std::int64_t numSets, const MatchConfig& config)
        : names{nameLines(config.team1, drawnFormat(config)), nameLines(config.team2, drawnFormat(config))} {
        constexpr double narrowest = 106;
        constexpr double widest = 176; // longer names are drawn smaller, then cut
        constexpr double perCharacter = 7.8;
        qsizetype longest = 0;
        for (const auto& team : names) {
            for (const QString& line : team)
                longest = std::max(longest, characterCount(line));
        }
        columnW =
            std::clamp(static_cast<double>(longest) * perCharacter + 2 * sidePadding, narrowest, widest);
        namesH = 2 * namesPadding + nameLineH * static_cast<double>(lineCount());
        setsH = numSets > 0 ? static_cast<double>(numSets) * setH + bottomPadding : 0;
    }

    std::size_t lineCount() const { return std::max(names[0].size(), names[1].size()); }
    double totalW() const { return 2 * columnW + middleW; }
    double totalH() const { return accentHeight + namesH + gameH + setsH; }
};

/// The card while it is drawn: where things stand and what to draw them with.
class Card {
public:
    Card(QPainter& painter, const TemplatePayload& payload, const ScoreState& score, QPointF topLeft)
        : painter_(painter)
        , payload_(payload)
        , score_(score)
        , layout_(static_cast<std::int64_t>(score.sets.size()), payload.config)
        , board_(topLeft, QSizeF(layout_.totalW(), layout_.totalH())) {}

    void draw() const;

private:
    void drawGround() const;
    void drawNames(Side side) const;
    void drawName(const QString& name, const QRectF& place) const;
    void drawGame(Side side, const QString& points) const;
    void drawMiddle() const;
    void drawSet(std::size_t index) const;
    void drawGames(const SetScore& set, Side side, QPointF center) const;
    void drawRule(double y) const;

    QRectF column(Side side) const;
    double namesTop() const { return board_.top() + accentHeight; }
    double gameTop() const { return namesTop() + layout_.namesH; }
    double setsTop() const { return gameTop() + gameH; }

    QPainter& painter_;
    const TemplatePayload& payload_;
    const ScoreState& score_;
    CardLayout layout_;
    QRectF board_;
};

void Card::draw() const {
    drawGround();
    const auto [game1, game2] = gameTexts(payload_.score);
    drawNames(Side::first);
    drawNames(Side::second);
    drawGame(Side::first, game1);
    drawGame(Side::second, game2);
    drawMiddle();
    for (std::size_t i = 0; i < score_.sets.size(); ++i)
        drawSet(i);
}

void Card::drawGround() const {
    const QPainterPath card = cgRoundRect(board_, cornerRadius);
    drawShadow(painter_, card, {{0, 0, 0, 0.55}, 10, {}}, 1);
    QLinearGradient ground(board_.topLeft(), board_.bottomLeft());
    ground.setColorAt(0, cardTop.color());
    ground.setColorAt(1, cardBottom.color());
    fillShape(painter_, card, ground);
    QPainterPath topEdge;
    topEdge.addRect(board_.left(), board_.top(), board_.width(), accentHeight);
    fillShape(painter_, card.intersected(topEdge), red.color());
}

void Card::drawNames(Side side) const {
    const std::vector<QString>& lines = layout_.names[static_cast<std::size_t>(side)];
    const QRectF place = column(side);
    const auto missingLines = static_cast<double>(layout_.lineCount() - lines.size());
    double y = namesTop() + namesPadding + missingLines * nameLineH / 2;
    for (const QString& line : lines) {
        drawName(line, {place.left() + sidePadding / 2, y, place.width() - sidePadding, nameLineH});
        y += nameLineH;
    }
}

/// Centred; a long name is drawn smaller, and one that is still too long starts at the left and is cut.
void Card::drawName(const QString& name, const QRectF& place) const {
    constexpr double size = 15;
    constexpr double smallest = 11.5;
    const double widthAtSize = ctTextWidth(name, {FontFace::bold, size});
    const double fitting = widthAtSize > place.width() ? size * place.width() / widthAtSize : size;
    const TextFont font{FontFace::bold, std::max(fitting, smallest)};
    const double width = ctTextWidth(name, font);
    const double left = std::max(place.left(), place.center().x() - width / 2);
    drawClippedText(painter_, name, font, white, place, left);
}

void Card::drawGame(Side side, const QString& points) const {
    constexpr QSizeF tileSize(62, 44);
    constexpr double dotRadius = 4.5;
    const bool serving = score_.servingTeam == teamNumber(side);
    const QRectF place = column(side);
    const QRectF tile(place.center().x() - tileSize.width() / 2, gameTop() + (gameH - tileSize.height()) / 2,
                      tileSize.width(), tileSize.height());
    const QRectF snapped = alignedToPixels(painter_, tile);
    fillShape(painter_, cgRoundRect(snapped, 7), (serving ? red : quietTile).color());
    drawCenteredText(painter_, points, {FontFace::bold, 30}, white, tile.center());
    if (!serving)
        return;
    const double outside =
        side == Side::first ? (place.left() + tile.left()) / 2 : (place.right() + tile.right()) / 2;
    QPainterPath dot;
    dot.addEllipse(QPointF(outside, tile.center().y()), dotRadius, dotRadius);
    fillShape(painter_, dot, serveDotColor.color());
}

/// Between the games: the logo, else a short bar.
void Card::drawMiddle() const {
    constexpr double logoSide = 36;
    const QPointF center(board_.center().x(), gameTop() + gameH / 2);
    if (!payload_.logo.isNull()) {
        drawPicture(painter_, payload_.logo,
                    {center.x() - logoSide / 2, center.y() - logoSide / 2, logoSide, logoSide});
        return;
    }
    constexpr QSizeF barSize(14, 3);
    const QRectF bar(center.x() - barSize.width() / 2, center.y() - barSize.height() / 2, barSize.width(),
                     barSize.height());
    fillShape(painter_, cgRoundRect(bar, barSize.height() / 2), labelText.color());
}

void Card::drawSet(std::size_t index) const {
    const SetScore& set = score_.sets[index];
    const double y = setsTop() + static_cast<double>(index) * setH;
    const double middle = y + setH / 2;
    if (index == 0)
        drawRule(y);
    if (index % 2 == 0)
        fillCell(painter_, {board_.left(), y, board_.width(), setH}, stripe);
    drawCenteredText(painter_, QString::number(index + 1), {FontFace::bold, 10.5}, labelText,
                     {board_.center().x(), middle});
    drawGames(set, Side::first, {column(Side::first).center().x(), middle});
    drawGames(set, Side::second, {column(Side::second).center().x(), middle});
}

void Card::drawGames(const SetScore& set, Side side, QPointF center) const {
    constexpr TextFont font{FontFace::bold, 17};
    constexpr TextFont tiebreakFont{FontFace::bold, 9};
    const std::int64_t own = ofSide(set, side);
    const std::int64_t other = ofSide(set, otherSide(side));
    const bool isQuiet = own < other || (own == 0 && other == 0);
    const Rgba& color = isQuiet ? quietText : white;
    const QString games = QString::number(own);
    drawCenteredText(painter_, games, font, color, center);
    if (showsTiebreakMark(set, side))
        drawLeftText(painter_, QStringLiteral("(%1)").arg(*set.tiebreak), tiebreakFont, color,
                     {center.x() + ctTextWidth(games, font) / 2 + 1.5, center.y() - 4});
}

void Card::drawRule(double y) const {
    QPainterPath rule;
    rule.addRect(board_.left(), y, board_.width(), 1);
    fillShape(painter_, rule, hairline.color());
}

QRectF Card::column(Side side) const {
    const double left = side == Side::first ? board_.left() : board_.right() - layout_.columnW;
    return {left, board_.top(), layout_.columnW, board_.height()};
}

}

void StackedTemplate::draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const {
    if (const auto* score = std::get_if<ScoreState>(&payload.score))
        Card(painter, payload, *score, alignedToPixels(painter, origin)).draw();
}

QSizeF StackedTemplate::canvasSize(std::int64_t numSets, const MatchConfig& config) const {
    return boardSize(numSets, config) + QSizeF(2 * canvasMargin, 2 * canvasMargin);
}

QSizeF StackedTemplate::boardSize(std::int64_t numSets, const MatchConfig& config) const {
    const CardLayout layout(numSets, config);
    return {layout.totalW(), layout.totalH()};
}

}
