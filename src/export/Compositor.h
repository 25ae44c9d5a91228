// Draws the overlay: the watermark in its corner, the licence mark, the scoreboard. Every function draws
// with a painter whose units are the pixels of the frame as it is shown, upright, y growing downward.
#pragma once

#include "export/ExportManager.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>

class QPainter;

namespace pointloom::Compositor {

/// What is drawn on, and in which unit templates are sized.
struct Canvas {
    QSizeF size;            // the frame as it is shown, pixels
    QSizeF nativeVideoSize; // the source as it is shown, pixels
};

/// The overlay's pictures, decoded once. A file that cannot be read leaves its picture null.
struct Pictures {
    QImage logo;
    QImage watermark;

    static Pictures load(const OverlayDescription& overlay);
};

/// The whole overlay of a frame with that score. The reference for every faster way of drawing it.
void drawOverlay(QPainter& painter, const Canvas& canvas, const OverlayDescription& overlay,
                 const Pictures& pictures, const SportScoreState& score);

/// Draws nothing when the picture is null.
void drawWatermark(QPainter& painter, const QImage& watermark, WatermarkCorner corner, QSizeF canvas);

/// The mark of a copy without a licence.
void drawLicenceMark(QPainter& painter, QSizeF canvas);

void drawScoreboard(QPainter& painter, const Canvas& canvas, const OverlayDescription& overlay,
                    const QImage& logo, const SportScoreState& score);

/// What each of the three can touch, in canvas pixels; may reach beyond the canvas.
QRectF watermarkRectangle(QSize watermark, WatermarkCorner corner, QSizeF canvas);
QRectF licenceMarkRectangle(QSizeF canvas);
QRectF scoreboardRectangle(const Canvas& canvas, const OverlayDescription& overlay,
                           const SportScoreState& score);

}
