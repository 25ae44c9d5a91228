#include "ui/timeline/ThumbnailStrip.h"

#include "ui/style/Theme.h"
#include "ui/timeline/ThumbnailStore.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <QPainter>
#include <utility>

namespace pointloom {

namespace {

/// Points that an image takes in the row. Upright images are cut at top and bottom instead of getting
/// narrower.
double imageWidthOf(const TimelineScene& scene) {
    constexpr double narrowest = 40;
    return std::max(scene.rows.thumbnails.height() * scene.aspectRatio, narrowest);
}

/// The image of a slot or, while it is being made, one that is left from another zoom.
QImage imageNear(ThumbnailStore& store, std::int64_t slot) {
    constexpr std::int64_t coarsest = std::int64_t{1} << 24; // slots
    for (std::int64_t step = 1; step <= coarsest; step *= 2) {
        const std::int64_t earlier = slot / step * step;
        if (step > 1 && earlier == (slot / (step / 2)) * (step / 2))
            continue;
        if (const QImage image = store.image(earlier); !image.isNull())
            return image;
    }
    return {};
}

/// The middle of `image` that fills `tile`.
QRectF middleThatFills(const QImage& image, const QSizeF& tile) {
    const QSizeF part = tile.scaled(image.size(), Qt::KeepAspectRatio);
    return {(image.width() - part.width()) / 2, (image.height() - part.height()) / 2, part.width(),
            part.height()};
}

}

std::int64_t thumbnailStep(const TimeScale& scale, double imageWidth) {
    constexpr double longest = 1e9; // slots
    const double slots = imageWidth / scale.pointsPerSecond() * thumbnailSlotsPerSecond;
    return static_cast<std::int64_t>(
        std::bit_floor(static_cast<std::uint64_t>(std::clamp(slots, 1.0, longest))));
}

std::vector<ThumbnailTile> thumbnailTiles(const TimeScale& scale, double imageWidth, double from, double to) {
    const std::int64_t step = thumbnailStep(scale, imageWidth);
    const double seconds = static_cast<double>(step) / thumbnailSlotsPerSecond;
    const double end = std::min(scale.duration(), scale.time(to));
    std::vector<ThumbnailTile> tiles;
    for (auto index = static_cast<std::int64_t>(std::max(0.0, std::floor(scale.time(from) / seconds)));;
         ++index) {
        const double time = static_cast<double>(index) * seconds;
        if (time >= end)
            return tiles;
        tiles.push_back({index * step, scale.x(time), seconds * scale.pointsPerSecond()});
    }
}

std::vector<std::int64_t> wantedThumbnails(const TimelineScene& scene) {
    std::vector<std::int64_t> wanted;
    if (scene.rows.thumbnails.isEmpty() || scene.scale.duration() <= 0)
        return wanted;
    const double view = scene.scale.width();
    for (const auto& [from, to] :
         {std::pair(0.0, view), std::pair(view, view * 1.5), std::pair(-view / 2, 0.0)}) {
        for (const ThumbnailTile& tile : thumbnailTiles(scene.scale, imageWidthOf(scene), from, to))
            wanted.push_back(tile.slot);
    }
    return wanted;
}

std::vector<std::int64_t> thumbnailsOfClip(double duration) {
    constexpr double finest = 8;       // seconds
    constexpr double longest = 86'400; // seconds
    constexpr auto finestStep = static_cast<std::uint64_t>(finest * thumbnailSlotsPerSecond);
    std::vector<std::int64_t> slots;
    if (!(duration > 0)) // NaN too
        return slots;
    const auto end =
        static_cast<std::uint64_t>(std::ceil(std::min(duration, longest) * thumbnailSlotsPerSecond));
    slots.push_back(0);
    for (std::uint64_t step = std::bit_ceil(end) / 2; step >= finestStep; step /= 2) {
        for (std::uint64_t slot = step; slot < end; slot += 2 * step)
            slots.push_back(static_cast<std::int64_t>(slot));
    }
    return slots;
}

void paintThumbnails(QPainter& painter, const TimelineScene& scene, ThumbnailStore& store) {
    const QRectF row = scene.clipPartOf(scene.rows.thumbnails);
    if (row.isEmpty())
        return;
    QColor gap = tokens().window;
    gap.setAlphaF(0.5F);
    painter.save();
    painter.setClipRect(row);
    painter.fillRect(row, tokens().raised);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const ThumbnailTile& tile :
         thumbnailTiles(scene.scale, imageWidthOf(scene), row.left(), row.right())) {
        const QRectF place(tile.left, row.top(), tile.width, row.height());
        if (const QImage image = imageNear(store, tile.slot); !image.isNull())
            painter.drawImage(place, image, middleThatFills(image, place.size()));
        painter.fillRect(QRectF(place.right() - 1, place.top(), 1, place.height()), gap);
    }
    painter.restore();
}

}
