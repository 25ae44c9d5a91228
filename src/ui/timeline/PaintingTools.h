// Small helpers of the timeline's painting.
#pragma once

#include <cmath>
#include <QColor>
#include <QPainter>

namespace pointloom {

/// `color` with a share of `other`, 0 to 1, mixed in.
inline QColor mixed(const QColor& color, const QColor& other, float share) {
    const auto mix = [&](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

inline QColor faded(QColor color, float alpha) {
    color.setAlphaF(alpha);
    return color;
}

/// A position on the edge of a device pixel.
inline double onPixel(double position, double devicePixelRatio) {
    return std::round(position * devicePixelRatio) / devicePixelRatio;
}

/// A line one point thick, or as many whole pixels as fit into a point, centred on `x`.
inline void paintVerticalLine(QPainter& painter, double x, double top, double bottom, const QColor& color,
                              double devicePixelRatio) {
    const double thickness = std::max(1.0, std::floor(devicePixelRatio)) / devicePixelRatio;
    painter.fillRect(QRectF(onPixel(x - thickness / 2, devicePixelRatio), top, thickness, bottom - top),
                     color);
}

}
