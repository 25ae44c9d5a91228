#include "render/DevicePixels.h"

#include <cmath>
#include <QPainter>

namespace pointloom {

DevicePixels::DevicePixels(QPainter& painter)
    : painter_(painter)
    , fromPainter_(painter.deviceTransform()) {
    painter_.save();
    painter_.resetTransform();
    // What is left is the device's own: its pixel ratio and, on a widget, the offset in its window.
    painter_.setWorldTransform(painter_.deviceTransform().inverted());
}

DevicePixels::~DevicePixels() {
    painter_.restore();
}

bool isUpright(const QTransform& transform) {
    return transform.type() <= QTransform::TxScale;
}

double deviceScale(const QTransform& transform) {
    return std::sqrt(std::abs(transform.determinant()));
}

namespace {

QPointF rounded(QPointF point) {
    return {std::round(point.x()), std::round(point.y())};
}

}

QPointF alignedToPixels(const QPainter& painter, QPointF point) {
    const QTransform transform = painter.deviceTransform();
    if (!isUpright(transform) || !transform.isInvertible())
        return point;
    return transform.inverted().map(rounded(transform.map(point)));
}

QRectF alignedToPixels(const QPainter& painter, const QRectF& rect) {
    return {alignedToPixels(painter, rect.topLeft()), alignedToPixels(painter, rect.bottomRight())};
}

}
