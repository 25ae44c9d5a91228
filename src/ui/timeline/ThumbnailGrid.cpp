#include "ui/timeline/ThumbnailGrid.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace pointloom {

std::int64_t thumbnailStep(const TimeScale& scale, double pictureWidth) {
    constexpr double longest = 1e9; // slots
    const double slots = pictureWidth / scale.pointsPerSecond() * thumbnailSlotsPerSecond;
    return static_cast<std::int64_t>(
        std::bit_floor(static_cast<std::uint64_t>(std::clamp(slots, 1.0, longest))));
}

std::vector<ThumbnailTile> thumbnailTiles(const TimeScale& scale, double pictureWidth, double from,
                                          double to) {
    const std::int64_t step = thumbnailStep(scale, pictureWidth);
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

}
