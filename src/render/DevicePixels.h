// Drawing on a painter's device pixels, so that edges and images stay sharp.
#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QTransform>

class QPainter;

namespace pointloom {

/// Sets one unit of the painter to one device pixel until it is destroyed; the clip stays as it was.
class DevicePixels {
public:
    explicit DevicePixels(QPainter& painter);
    ~DevicePixels();
    DevicePixels(const DevicePixels&) = delete;
    DevicePixels& operator=(const DevicePixels&) = delete;

    /// From the painter's units, as they were before, to device pixels.
    const QTransform& fromPainter() const { return m_fromPainter; }

private:
    QPainter& m_painter;
    QTransform m_fromPainter;
};

/// Neither turned nor sheared: rectangles stay rectangles. Flipped axes are fine.
bool isUpright(const QTransform& transform);

/// Device pixels in one unit.
double deviceScale(const QTransform& transform);

/// The point nearest to `point` that falls on a corner of device pixels; at most half a pixel away.
QPointF alignedToPixels(const QPainter& painter, QPointF point);

/// The rectangle with its edges on device pixels; neighbours that share an edge still share it.
QRectF alignedToPixels(const QPainter& painter, const QRectF& rect);

/// Draws the whole image into the rectangle, stretched to it, and upright whichever way the painter's y axis
/// runs. It is resampled to exactly the device pixels that it covers, its edges on whole pixels.
/// Safe on any thread.
void drawImage(QPainter& painter, const QImage& image, const QRectF& rect);

}
