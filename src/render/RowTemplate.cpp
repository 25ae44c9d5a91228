#include "render/RowTemplate.h"

#include "render/DevicePixels.h"
#include "render/TemplateRenderer.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPen>

namespace pointloom {

namespace {

void strokeShape(QPainter& painter, const QPainterPath& path, const Rgba& color, double width) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(path, QPen(color.color(), width));
    painter.restore();
}

}

RowTemplate::RowTemplate(const RowTemplateStyle& style)
    : style_(style)
    // The one template whose own name differs from the catalogue's.
    , displayName_(style.id == TemplateID::squashDark ? QStringLiteral("Dark")
                                                      : pointloom::displayName(style.id)) {}

void RowTemplate::draw(QPainter& painter, const TemplatePayload& payload, QPointF origin) const {
    if (std::holds_alternative<ScoreState>(payload.score) != servesTennis())
        return;
    const QPointF topLeft = alignedToPixels(painter, origin);
    const ScoreboardLayout measures = layout(payload.config);
    const auto numSets = static_cast<std::int64_t>(setsOf(payload.score).size());
    const QRectF board(topLeft, QSizeF(measures.totalW(numSets), measures.totalH()));

    drawPanel(painter, board);
    drawRows(painter, payload, measures, topLeft);
    if (style_.divider) {
        QPainterPath gap;
        gap.addRect(board.left(), board.top() + measures.rowH, board.width(), 1);
        fillShape(painter, gap, style_.divider->color());
    }
    drawFinish(painter, board);
    if (servesTennis())
        drawLogoInScoreboard(painter, payload.logo, topLeft, board.height());
}

QSizeF RowTemplate::boardSize(std::int64_t numSets, const MatchConfig& config) const {
    const ScoreboardLayout measures = layout(config);
    return {measures.totalW(numSets), measures.totalH()};
}

ScoreboardLayout RowTemplate::layout(const MatchConfig& config) const {
    return {style_.rowH, style_.setW, style_.gameW, config};
}

void RowTemplate::drawPanel(QPainter& painter, const QRectF& board) const {
    const QPainterPath panel = cgRoundRect(board, style_.radius);
    drawShadow(painter, panel, style_.shadow, style_.panel.alpha);
    switch (style_.decoration) {
    case Decoration::splitBand: {
        // They meet in the gap between the rows, which would otherwise show what is behind the board.
        const double seam = board.top() + style_.rowH;
        fillCell(painter, {board.topLeft(), QPointF(board.right(), seam)}, style_.team1.bg);
        fillCell(painter, {QPointF(board.left(), seam), board.bottomRight()}, style_.team2.bg);
        return;
    }
    case Decoration::gradientPanel: {
        QLinearGradient gradient(board.topLeft(), board.bottomRight());
        gradient.setColorAt(0, style_.panel.color());
        gradient.setColorAt(1, style_.decorationColor.color());
        fillShape(painter, panel, gradient);
        return;
    }
    case Decoration::glass: {
        constexpr Rgba veil{1, 1, 1, 0.08};
        fillShape(painter, panel, style_.panel.color());
        fillShape(painter, panel, veil.color());
        strokeShape(painter, panel, style_.decorationColor, 1);
        return;
    }
    case Decoration::none:
    case Decoration::border:
    case Decoration::edgeBand:
        fillShape(painter, panel, style_.panel.color());
        return;
    }
    Q_UNREACHABLE();
}

void RowTemplate::drawRows(QPainter& painter, const TemplatePayload& payload,
                           const ScoreboardLayout& measures, QPointF origin) const {
    const MatchConfig& config = payload.config;
    const MatchFormat format = drawnFormat(config);
    const std::vector<SetScore>& sets = setsOf(payload.score);
    const auto [game1, game2] = gameTexts(payload.score);
    drawScoreboardRow(painter, measures, origin, config.team1.flagDisplayName(format), sets, Side::first,
                      game1, isServing(payload.score, Side::first), style_.team1);
    drawScoreboardRow(painter, measures, origin + QPointF(0, measures.rowH + 1),
                      config.team2.flagDisplayName(format), sets, Side::second, game2,
                      isServing(payload.score, Side::second), style_.team2);
}

/// What lies on top of the rows, which cover the whole panel.
void RowTemplate::drawFinish(QPainter& painter, const QRectF& board) const {
    if (style_.decoration == Decoration::border) {
        QPainterPath rule;
        rule.addRect(board.left(), board.top() + style_.rowH, board.width(), 1);
        fillShape(painter, rule, style_.decorationColor.color());
        strokeShape(painter, cgRoundRect(board, style_.radius), style_.decorationColor, 2);
    }
    if (style_.decoration == Decoration::edgeBand) {
        constexpr double width = 3; // leaves the serve dot free
        fillCell(painter, {board.left(), board.top(), width, board.height()}, style_.decorationColor);
    }
}

}
