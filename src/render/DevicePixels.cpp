#include "render/DevicePixels.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <QCache>
#include <QPainter>
#include <utility>

namespace pointloom {

namespace {

QPointF rounded(QPointF point) {
    return {std::round(point.x()), std::round(point.y())};
}

/// Keeps resampled images by image and size: a logo of a camera's resolution takes milliseconds to shrink.
QImage resampled(const QImage& image, QSize size) {
    using Key = std::pair<qint64, std::pair<int, int>>;
    constexpr int mostBytes = 16 << 20;
    static std::mutex mutex;
    static QCache<Key, QImage> images(mostBytes);

    const Key key{image.cacheKey(), {size.width(), size.height()}};
    {
        const std::scoped_lock lock(mutex);
        if (const QImage* found = images.object(key))
            return *found;
    }
    QImage scaled = image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const auto cost = static_cast<int>(std::min<qsizetype>(scaled.sizeInBytes(), mostBytes + 1));
    auto kept = std::make_unique<QImage>(scaled);
    const std::scoped_lock lock(mutex);
    images.insert(key, kept.release(), cost); // the cache owns it
    return scaled;
}

}

DevicePixels::DevicePixels(QPainter& painter)
    : m_painter(painter)
    , m_fromPainter(painter.deviceTransform()) {
    m_painter.save();
    m_painter.resetTransform();
    // Undoes the device's own transform: its pixel ratio and, on a widget, the offset in its window.
    m_painter.setWorldTransform(m_painter.deviceTransform().inverted());
}

DevicePixels::~DevicePixels() {
    m_painter.restore();
}

bool isUpright(const QTransform& transform) {
    return transform.type() <= QTransform::TxScale;
}

double deviceScale(const QTransform& transform) {
    return std::sqrt(std::abs(transform.determinant()));
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

void drawImage(QPainter& painter, const QImage& image, const QRectF& rect) {
    if (image.isNull() || rect.isEmpty())
        return;
    const DevicePixels pixels(painter);
    const QTransform& toDevice = pixels.fromPainter();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    constexpr double mostPixels = 8192; // a side; beyond it the painter's own stretching must do
    const QRectF target = toDevice.mapRect(rect);
    if (!isUpright(toDevice) || toDevice.m11() < 0 || !(target.width() <= mostPixels) ||
        !(target.height() <= mostPixels)) {
        painter.setWorldTransform(toDevice * painter.worldTransform());
        painter.drawImage(rect, image);
        return;
    }
    const QSize size(std::max(1, static_cast<int>(std::lround(target.width()))),
                     std::max(1, static_cast<int>(std::lround(target.height()))));
    const QPointF topLeft(std::round(target.center().x() - size.width() / 2.0),
                          std::round(target.center().y() - size.height() / 2.0));
    painter.drawImage(topLeft, resampled(image, size));
}

}
