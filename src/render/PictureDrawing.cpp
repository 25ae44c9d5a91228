#include "render/PictureDrawing.h"

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

/// Resampled pictures by image and size: a logo of a camera's resolution takes milliseconds to shrink.
QImage resampled(const QImage& image, QSize size) {
    using Key = std::pair<qint64, std::pair<int, int>>;
    constexpr int mostBytes = 16 << 20;
    static std::mutex mutex;
    static QCache<Key, QImage> pictures(mostBytes);

    const Key key{image.cacheKey(), {size.width(), size.height()}};
    {
        const std::scoped_lock lock(mutex);
        if (const QImage* found = pictures.object(key))
            return *found;
    }
    QImage picture = image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                         .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const auto cost = static_cast<int>(std::min<qsizetype>(picture.sizeInBytes(), mostBytes + 1));
    auto kept = std::make_unique<QImage>(picture);
    const std::scoped_lock lock(mutex);
    pictures.insert(key, kept.release(), cost); // the cache owns it
    return picture;
}

}

void drawPicture(QPainter& painter, const QImage& image, const QRectF& rect) {
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
