// Places the scoreboard on the picture, in the preview and in the exported video. A position is the centre of
// the template's canvas as fractions 0..1 of the picture, from its top left corner.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace pointloom::OverlayPlacement {

constexpr double smallestScale = 0.3; // of the user's scale, by the resize handle
constexpr double largestScale = 5;

/// Preview points per pixel of the video, whose picture fills `videoRect`. While the video's width (pixels)
/// is unknown, that is, below 1, a height of 1080 pixels is assumed.
double previewScale(const QRectF& videoRect, double videoWidth);

/// The centre of the scoreboard in preview points, moved by a drag in progress but never out of the picture.
QPointF displayPosition(const QRectF& videoRect, QPointF position, QSizeF dragOffset);

/// The scoreboard's top left corner, which is inside of its canvas's margin. `canvas` is in template units,
/// `scale` is preview scale times user's scale.
QPointF drawOrigin(const QRectF& videoRect, QPointF position, QSizeF canvas, double scale);

/// The position after a drag by `translation` (preview points), within 0.02..0.98 on each axis.
QPointF movedPosition(QPointF position, QSizeF translation, const QRectF& videoRect);

/// Keeps a fraction within 0.02..0.98.
double clampNorm(double fraction);

/// The user's scale while the resize handle is dragged by `translation` (preview points); `baseWidth` is
/// the canvas's displayed width at scale 1. Within 0.3..5.
double resizedScale(double startScale, QSizeF translation, double baseWidth);

/// Frame pixels per template unit: templates are measured in pixels of the source's upright picture.
/// A user's scale below 0.1 counts as 0.1.
double exportScale(double frameWidth, double nativeVideoWidth, double userScale);

/// The origin to draw a template at in a frame (pixels), in template units of `scale` pixels each.
QPointF exportOrigin(QSizeF frame, QPointF position, QSizeF canvas, double scale);

/// `scale`, or the largest one below it at which a scoreboard of `board` size (template units) is whole
/// inside the frame (pixels), with a margin of 0.02 of the frame's shorter side.
double fittingScale(QSizeF frame, QSizeF board, double scale);

/// The origin nearest to `origin` at which the scoreboard is whole inside the frame, with the same margin;
/// `scale` is at most the fitting one.
QPointF originInside(QSizeF frame, QPointF origin, QSizeF board, double scale);

}
