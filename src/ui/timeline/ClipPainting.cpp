#include "ui/style/Theme.h"
#include "ui/timeline/PaintingTools.h"
#include "ui/timeline/ThumbnailGrid.h"
#include "ui/timeline/ThumbnailStore.h"
#include "ui/timeline/TimelinePainting.h"
#include "ui/timeline/WaveformStore.h"

#include <algorithm>
#include <cmath>

namespace pointloom::TimelinePainting {

namespace {

/// The part of the row that the clip takes.
QRectF clipOf(const TimelineScene& scene, const QRectF& row) {
    const double left = std::max(row.left(), scene.scale.x(0));
    const double right = std::min(row.right(), scene.scale.x(scene.scale.duration()));
    return {left, row.top(), std::max(0.0, right - left), row.height()};
}

/// The picture of a slot or, while it is being made, one that a wider zoom has left behind.
QImage pictureNear(ThumbnailStore& store, std::int64_t slot) {
    constexpr std::int64_t coarsest = std::int64_t{1} << 24; // slots
    for (std::int64_t step = 1; step <= coarsest; step *= 2) {
        const std::int64_t earlier = slot / step * step;
        if (step > 1 && earlier == (slot / (step / 2)) * (step / 2))
            continue;
        if (const QImage picture = store.picture(earlier); !picture.isNull())
            return picture;
    }
    return {};
}

/// The middle of `picture` that fills `tile`.
QRectF middleThatFills(const QImage& picture, const QSizeF& tile) {
    const QSizeF part = tile.scaled(picture.size(), Qt::KeepAspectRatio);
    return {(picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2, part.width(),
            part.height()};
}

}

double thumbnailWidth(const TimelineScene& scene, double aspectRatio) {
    constexpr double narrowest = 40; // points; upright pictures are cut at top and bottom instead
    return std::max(scene.rows.thumbnails.height() * aspectRatio, narrowest);
}

void paintThumbnails(QPainter& painter, const TimelineScene& scene, ThumbnailStore& store,
                     double aspectRatio) {
    const QRectF row = clipOf(scene, scene.rows.thumbnails);
    if (row.isEmpty())
        return;
    const ColorTokens& colors = tokens();
    painter.save();
    painter.setClipRect(row);
    painter.fillRect(row, colors.raised);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double pictureWidth = thumbnailWidth(scene, aspectRatio);
    for (const ThumbnailTile& tile : thumbnailTiles(scene.scale, pictureWidth, row.left(), row.right())) {
        const QRectF place(tile.left, row.top(), tile.width, row.height());
        if (const QImage picture = pictureNear(store, tile.slot); !picture.isNull())
            painter.drawImage(place, picture, middleThatFills(picture, place.size()));
        painter.fillRect(QRectF(place.right() - 1, place.top(), 1, place.height()),
                         faded(colors.window, 0.5F));
    }
    painter.restore();
}

void paintWaveform(QPainter& painter, const TimelineScene& scene, const WaveformStore& store,
                   const Look& look) {
    const QRectF row = clipOf(scene, scene.rows.waveform);
    if (row.isEmpty())
        return;
    const ColorTokens& colors = tokens();
    painter.fillRect(row, mixed(colors.surface, colors.raised, 0.5F));
    // One bar a device pixel would take four times as long at twice the size and look the same.
    const double bar = std::max(1.0, 1.0 / look.devicePixelRatio);
    const double middle = row.center().y();
    const double half = row.height() / 2 - 2;
    std::vector<QRectF> bars;
    bars.reserve(static_cast<std::size_t>(row.width() / bar) + 1);
    const double known = static_cast<double>(store.peaks().size()) / WaveformPyramid::peaksPerSecond;
    // Relative to the loudest moment, and lifted a little: a camera far from the court records quietly.
    constexpr double quietestFull = 20; // of 255: below that a clip is taken to be silent
    constexpr double lift = 0.7;
    const double full = std::max<double>(store.peaks().loudest(), quietestFull);
    for (double x = std::floor(row.left()); x < row.right(); x += bar) {
        const double time = std::max(0.0, scene.scale.time(x));
        if (time >= known)
            break;
        const double level = std::pow(store.peaks().loudest(time, scene.scale.time(x + bar)) / full, lift);
        const double height = std::max(0.5, level * half);
        bars.emplace_back(x, middle - height, bar, 2 * height);
    }
    painter.save();
    painter.setClipRect(row);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(colors.quietText, colors.surface, 0.35F));
    painter.drawRects(bars.data(), static_cast<int>(bars.size()));
    painter.restore();
}

}
