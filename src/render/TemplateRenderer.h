// The drawing primitives that the templates share. All coordinates are in the painter's units. Text is drawn
// upright whichever way the painter's y axis runs.
#pragma once

#include "model/ScoreState.h"
#include "render/Fonts.h"
#include "render/ScoreboardLayout.h"

#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <span>

class QPainter;

namespace pointloom {

/// A closed rounded rectangle; the radius is at most half of the shorter side.
QPainterPath cgRoundRect(const QRectF& rect, double radius);

/// Draws one side's row with its top left corner at `origin`: name column, set cells, game cell, serve dot
/// and texts. `side` selects the games of each set; `game` is drawn as given. Cells are cut off at `outline`,
/// unless that is empty.
void drawScoreboardRow(QPainter& painter, const ScoreboardLayout& layout, QPointF origin, const QString& name,
                       std::span<const SetScore> sets, Side side, const QString& game, bool serving,
                       const RowColors& colors, const QPainterPath& outline = {});

/// Whether a row shows the set's tie-break points: the row of the side that lost the set by one game, at 6-7
/// or more.
bool showsTiebreakMark(const SetScore& set, Side side);

/// Draws one line, centred on a point both ways. Lines are centred vertically by ascent and descent, not by
/// ink.
void drawCenteredText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                      QPointF center);

/// Typographic width of one line.
double ctTextWidth(const QString& text, const TextFont& font);

/// Draws one line that starts at `origin.x` and is vertically centred on `origin.y`.
void drawLeftText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                  QPointF origin);

/// Draws one line that starts at `leftEdge`, vertically centred in `clipRect` and cut off at its edges.
void drawClippedText(QPainter& painter, const QString& text, const TextFont& font, const Rgba& color,
                     const QRectF& clipRect, double leftEdge);

/// Draws the logo, stretched to a square in the left slot of a scoreboard; nothing for a null image.
void drawLogoInScoreboard(QPainter& painter, const QImage& logo, QPointF origin, double scoreboardHeight);

/// The same at the right end of the names.
void drawLogoAfterNames(QPainter& painter, const QImage& logo, QPointF origin,
                        const ScoreboardLayout& layout);

/// Fills a rectangle with its edges on whole device pixels, so that cells side by side show no seam; only
/// what is inside of `outline`, unless that is empty.
void fillCell(QPainter& painter, const QRectF& rect, const Rgba& color, const QPainterPath& outline = {});

/// Fills a shape with antialiased edges.
void fillShape(QPainter& painter, const QPainterPath& path, const QBrush& brush);

}
