// Draws pictures much smaller than they are without losing their sharpness.
#pragma once

#include <QImage>
#include <QRectF>

class QPainter;

namespace pointloom {

/// Draws the whole image into the rectangle, stretched to it, and upright whichever way the painter's y axis
/// runs. It is resampled to exactly the device pixels that it covers, its edges on whole pixels.
/// Safe on any thread.
void drawPicture(QPainter& painter, const QImage& image, const QRectF& rect);

}
