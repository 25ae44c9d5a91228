#include "render/StackedTemplate.h"

#include "render/DevicePixels.h"
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

/// One line per player, the second of a pair below the first.
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

/// One drawing of the card.
class Card {
public:
    Card(QPainter& painter, const TemplatePayload& payload, const ScoreState& score, QPointF topLeft)
        : m_painter(painter)
        , m_payload(payload)
        , m_score(score)
        , m_layout(static_cast<std::int64_t>(score.sets.size()), payload.config)
        , m_board(topLeft, QSizeF(m_layout.totalW(), m_layout.totalH())) {}

    void draw() const {
        drawGround();
        const auto [game1, game2] = gameTexts(m_payload.score);
        drawNames(Side::first);
        drawNames(Side::second);
        drawGame(Side::first, game1);
        drawGame(Side::second, game2);
        drawMiddle();
        for (std::size_t i = 0; i < m_score.sets.size(); ++i)
            drawSet(i);
    }

private:
    void drawGround() const {
        const QPainterPath card = cgRoundRect(m_board, cornerRadius);
        drawShadow(m_painter, card, {{0, 0, 0, 0.55}, 10, {}}, 1);
        QLinearGradient ground(m_board.topLeft(), m_board.bottomLeft());
        ground.setColorAt(0, cardTop.color());
        ground.setColorAt(1, cardBottom.color());
        fillShape(m_painter, card, ground);
        QPainterPath topEdge;
        topEdge.addRect(m_board.left(), m_board.top(), m_board.width(), accentHeight);
        fillShape(m_painter, card.intersected(topEdge), red.color());
    }

    void drawNames(Side side) const {
        const std::vector<QString>& lines = m_layout.names[static_cast<std::size_t>(side)];
        const QRectF place = column(side);
        const auto missingLines = static_cast<double>(m_layout.lineCount() - lines.size());
        double y = namesTop() + namesPadding + missingLines * nameLineH / 2;
        for (const QString& line : lines) {
            drawName(line, {place.left() + sidePadding / 2, y, place.width() - sidePadding, nameLineH});
            y += nameLineH;
        }
    }

    /// Draws a name centred; a long one is drawn smaller, and one that is still too long is cut at its end.
    void drawName(const QString& name, const QRectF& place) const {
        constexpr double size = 15;
        constexpr double smallest = 11.5;
        const double widthAtSize = ctTextWidth(name, {FontFace::bold, size});
        const double fitting = widthAtSize > place.width() ? size * place.width() / widthAtSize : size;
        const TextFont font{FontFace::bold, std::max(fitting, smallest)};
        const double width = ctTextWidth(name, font);
        const double left = std::max(place.left(), place.center().x() - width / 2);
        drawClippedText(m_painter, name, font, white, place, left);
    }

    void drawGame(Side side, const QString& points) const {
        constexpr QSizeF tileSize(62, 44);
        constexpr double dotRadius = 4.5;
        const bool serving = m_score.servingTeam == teamNumber(side);
        const QRectF place = column(side);
        const QRectF tile(place.center().x() - tileSize.width() / 2,
                          gameTop() + (gameH - tileSize.height()) / 2, tileSize.width(), tileSize.height());
        const QRectF snapped = alignedToPixels(m_painter, tile);
        fillShape(m_painter, cgRoundRect(snapped, 7), (serving ? red : quietTile).color());
        drawCenteredText(m_painter, points, {FontFace::bold, 30}, white, tile.center());
        if (!serving)
            return;
        const double outside =
            side == Side::first ? (place.left() + tile.left()) / 2 : (place.right() + tile.right()) / 2;
        QPainterPath dot;
        dot.addEllipse(QPointF(outside, tile.center().y()), dotRadius, dotRadius);
        fillShape(m_painter, dot, serveDotColor.color());
    }

    /// Draws the logo between the games, else a short bar.
    void drawMiddle() const {
        constexpr double logoSide = 36;
        const QPointF center(m_board.center().x(), gameTop() + gameH / 2);
        if (!m_payload.logo.isNull()) {
            drawImage(m_painter, m_payload.logo,
                      {center.x() - logoSide / 2, center.y() - logoSide / 2, logoSide, logoSide});
            return;
        }
        constexpr QSizeF barSize(14, 3);
        const QRectF bar(center.x() - barSize.width() / 2, center.y() - barSize.height() / 2, barSize.width(),
                         barSize.height());
        fillShape(m_painter, cgRoundRect(bar, barSize.height() / 2), labelText.color());
    }

    void drawSet(std::size_t index) const {
        const SetScore& set = m_score.sets[index];
        const double y = setsTop() + static_cast<double>(index) * setH;
        const double middle = y + setH / 2;
        if (index == 0)
            drawRule(y);
        if (index % 2 == 0)
            fillCell(m_painter, {m_board.left(), y, m_board.width(), setH}, stripe);
        drawCenteredText(m_painter, QString::number(index + 1), {FontFace::bold, 10.5}, labelText,
                         {m_board.center().x(), middle});
        drawGames(set, Side::first, {column(Side::first).center().x(), middle});
        drawGames(set, Side::second, {column(Side::second).center().x(), middle});
    }

    void drawGames(const SetScore& set, Side side, QPointF center) const {
        constexpr TextFont font{FontFace::bold, 17};
        constexpr TextFont tiebreakFont{FontFace::bold, 9};
        const std::int64_t own = ofSide(set, side);
        const std::int64_t other = ofSide(set, otherSide(side));
        const bool isQuiet = own < other || (own == 0 && other == 0);
        const Rgba& color = isQuiet ? quietText : white;
        const QString games = QString::number(own);
        drawCenteredText(m_painter, games, font, color, center);
        if (showsTiebreakMark(set, side))
            drawLeftText(m_painter, QStringLiteral("(%1)").arg(*set.tiebreak), tiebreakFont, color,
                         {center.x() + ctTextWidth(games, font) / 2 + 1.5, center.y() - 4});
    }

    void drawRule(double y) const {
        QPainterPath rule;
        rule.addRect(m_board.left(), y, m_board.width(), 1);
        fillShape(m_painter, rule, hairline.color());
    }

    QRectF column(Side side) const {
        const double left = side == Side::first ? m_board.left() : m_board.right() - m_layout.columnW;
        return {left, m_board.top(), m_layout.columnW, m_board.height()};
    }

    double namesTop() const { return m_board.top() + accentHeight; }
    double gameTop() const { return namesTop() + m_layout.namesH; }
    double setsTop() const { return gameTop() + gameH; }

    QPainter& m_painter;
    const TemplatePayload& m_payload;
    const ScoreState& m_score;
    CardLayout m_layout;
    QRectF m_board;
};

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
