// Which moments of the clip a strip of thumbnails shows.
#pragma once

#include "ui/timeline/TimeScale.h"

#include <cstdint>
#include <vector>

namespace pointloom {

/// Moments are counted in these parts of a second, so that zoom levels share their pictures.
constexpr double thumbnailSlotsPerSecond = 16;

struct ThumbnailTile {
    std::int64_t slot = 0;
    double left = 0; // points, on the scale
    double width = 0;
};

/// Slots from one tile to the next: a power of two, for tiles between half as wide as `pictureWidth` (points)
/// and as wide.
std::int64_t thumbnailStep(const TimeScale& scale, double pictureWidth);

/// The tiles of which something lies between the positions `from` and `to`.
std::vector<ThumbnailTile> thumbnailTiles(const TimeScale& scale, double pictureWidth, double from,
                                          double to);

}
