#include "render/TemplateRenderer.h"

#include "render/DevicePixels.h"
#include "render/PictureDrawing.h"
#include "render/TextLine.h"

#include <algorithm>
#include <cmath>
#include <QPainter>

namespace pointloom {

namespace {

constexpr double logoSlotWidth = 44; // the name starts where it ends

/// Draws a shaped line with its start at `x` and its middle at `centerY`.
void drawLine(QPainter& painter, const TextLine& line, double size, const Rgba& color, double x,
              double centerY) {
    if (!(size > 0) || !std::isfinite(size))
        return;
    const bool growsDownward = painter.combinedTransform().m22() >= 0;
    const double up = growsDownward ? -1 : 1;
    const double baseline = centerY - up * (line.ascent - line.descent) / 2 * size;
    painter.save();
    painter.translate(x, baseline);
    painter.scale(size, -up * size);
    const double opacity = painter.opacity();
    painter.setOpacity(opacity * color.alpha);
    for (const TextLine::Picture& picture : line.pictures)
        drawPicture(painter, picture.image, picture.rect);
    painter.setOpacity(opacity);
    constexpr double unit = 1.0 / TextLine::unitsPerEm;
    painter.scale(unit, unit);
    fillShape(painter, line.outlines, color.color());
    painter.restore();
}

void drawServeDot(QPainter& painter, QPointF rowOrigin, double rowHeight) {
    const double radius = 0.14 * rowHeight;
    QPainterPath dot;
    dot.addEllipse(rowOrigin + QPointF(10, rowHeight / 2), radius, radius);
    fillShape(painter, dot, serveDotColor.color());
}

void drawSet(QPainter& painter, const SetScore& set, Side side, QPointF center, double rowHeight,
             const Rgba& color) {
    const TextFont scoreFont{FontFace::bold, 0.46 * rowHeight};
    const QString games = QString::number(ofSide(set, side));
    drawCenteredText(painter, games, scoreFont, color, center);
    if (!showsTiebreakMark(set, side))
        return;
    const TextFont tiebreakFont{FontFace::bold, scoreFont.size * 0.48};
    const double raised = center.y() - rowHeight / 2 + 0.26 * rowHeight;
    drawLeftText(painter, QStringLiteral("(%1)").arg(*set.tiebreak), tiebreakFont, color,
                 {center.x() + ctTextWidth(games, scoreFont) / 2 + 1, raised});
}

}

QPainterPath cgRoundRect(const QRectF& rect, double radius) {
    const double r = std::max(0.0, std::min({radius, rect.width() / 2, rect.height() / 2}));
    const double side = 2 * r;
    QPainterPath path(QPointF(rect.left() + r, rect.top()));
    path.lineTo(rect.right() - r, rect.top());
    path.arcTo(rect.right() - side, rect.top(), side, side, 90, -90);
    path.lineTo(rect.right(), rect.bottom() - r);
    path.arcTo(rect.right() - side, rect.bottom() - side, side, side, 0, -90);
    path.lineTo(rect.left() + r, rect.bottom());
    path.arcTo(rect.left(), rect.bottom() - side, side, side, 270, -90);
    path.lineTo(rect.left(), rect.top() + r);
    path.arcTo(rect.left(), rect.top(), side, side, 180, -90);
    path.closeSubpath();
    return path;
}

void drawScoreboardRow(QPainter& painter, const ScoreboardLayout& layout, QPointF origin, const QString& name,
                       std::span<const SetScore> sets, Side side, const QString& game, bool serving,
                       const RowColors& colors) {
    const double x = origin.x();
    const double y = origin.y();
    const double firstSet = x + layout.nameW;
    const double gameColumn = firstSet + static_cast<double>(sets.size()) * layout.setW;
    const double middle = y + layout.rowH / 2;
    const QRectF nameColumn(x, y, layout.nameW, layout.rowH);

    fillCell(painter, nameColumn, colors.bg);
    for (std::size_t i = 0; i < sets.size(); ++i) {
        const QRectF cell(firstSet + static_cast<double>(i) * layout.setW, y, layout.setW, layout.rowH);
        fillCell(painter, cell, i % 2 == 0 ? colors.accent : colors.bg);
    }
    fillCell(painter, {gameColumn, y, layout.gameW, layout.rowH}, colors.gameCell);
    if (serving)
        drawServeDot(painter, origin, layout.rowH);

    for (std::size_t i = 0; i < sets.size(); ++i) {
        const QPointF center(firstSet + (static_cast<double>(i) + 0.5) * layout.setW, middle);
        drawSet(painter, sets[i], side, center, layout.rowH, colors.text);
    }
    drawCenteredText(painter, game, {FontFace::bold, 0.46 * layout.rowH}, colors.gameText,
                     {gameColumn + layout.gameW / 2, middle});
    drawClippedText(painter, name, {FontFace::regular, 0.38 * layout.rowH}, colors.text, nameColumn,
                    x + logoSlotWidth);
}

bool showsTiebreakMark(const SetScore& set, Side side) {
    const auto [smaller, larger] = std::minmax(set.team1, set.team2);
    if (!set.tiebreak || larger < 7 || larger - 1 != smaller)
        return false;
    const Side winner = set.team2 < set.team1 ? Side::first : Side::second;
    return side != winner;
}

void drawCenteredText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                      QPointF center) {
    const auto line = shapedLine(text, font.face);
    drawLine(painter, *line, font.size, color, center.x() - line->width * font.size / 2, center.y());
}

double ctTextWidth(const QString& text, const TextFont& font) {
    return shapedLine(text, font.face)->width * font.size;
}

void drawLeftText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                  QPointF origin) {
    drawLine(painter, *shapedLine(text, font.face), font.size, color, origin.x(), origin.y());
}

void drawClippedText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                     const QRectF& clipRect, double leftEdge) {
    painter.save();
    painter.setClipRect(alignedToPixels(painter, clipRect), Qt::IntersectClip);
    drawLeftText(painter, text, font, color, {leftEdge, clipRect.center().y()});
    painter.restore();
}

void drawLogoInScoreboard(QPainter& painter, const QImage& logo, QPointF origin, double scoreboardHeight) {
    const double side = std::min(scoreboardHeight - 8, 30.0);
    drawPicture(
        painter, logo,
        {origin.x() + (logoSlotWidth - side) / 2, origin.y() + (scoreboardHeight - side) / 2, side, side});
}

void fillCell(QPainter& painter, const QRectF& rect, const Rgba& color) {
    if (color.alpha <= 0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(alignedToPixels(painter, rect), color.color());
    painter.restore();
}

void fillShape(QPainter& painter, const QPainterPath& path, const QBrush& brush) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, brush);
    painter.restore();
}

}
