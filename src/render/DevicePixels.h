// Drawing straight onto a painter's device pixels, where sharpness is decided.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QTransform>

class QPainter;

namespace pointloom {

/// While it lives, one unit of the painter is one device pixel; the clip stays as it was.
class DevicePixels {
public:
    explicit DevicePixels(QPainter& painter);
    ~DevicePixels();
    DevicePixels(const DevicePixels&) = delete;
    DevicePixels& operator=(const DevicePixels&) = delete;

    /// From the painter's units, as they were before, to device pixels.
    const QTransform& fromPainter() const { return fromPainter_; }

private:
    QPainter& painter_;
    QTransform fromPainter_;
};

/// Neither turned nor sheared: rectangles stay rectangles. Flipped axes are fine.
bool isUpright(const QTransform& transform);

/// How many device pixels one unit measures.
double deviceScale(const QTransform& transform);

/// The point nearest to `point` that falls on a corner of device pixels; at most half a pixel away.
QPointF alignedToPixels(const QPainter& painter, QPointF point);

/// The rectangle with its edges on device pixels; neighbours that share an edge still share it.
QRectF alignedToPixels(const QPainter& painter, const QRectF& rect);

}
