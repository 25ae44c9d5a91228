// The timeline's row of thumbnails: which times of the clip it shows, and its painting.
#pragma once

#include "ui/timeline/TimelineScene.h"

#include <cstdint>
#include <vector>

class QPainter;

namespace pointloom {

class ThumbnailStore;

/// Times of thumbnails are counted in these parts of a second, so that zoom levels share their images.
constexpr double thumbnailSlotsPerSecond = 16;

struct ThumbnailTile {
    std::int64_t slot = 0;
    double left = 0; // points, on the scale
    double width = 0;
};

/// Slots from one tile to the next: a power of two, for tiles of half `imageWidth` (points) up to all of it.
std::int64_t thumbnailStep(const TimeScale& scale, double imageWidth);

/// The tiles that overlap the positions `from` to `to`.
std::vector<ThumbnailTile> thumbnailTiles(const TimeScale& scale, double imageWidth, double from, double to);

/// The slots of all tiles that are visible, then of those that scrolling shows next.
std::vector<std::int64_t> wantedThumbnails(const TimelineScene& scene);

/// The slots of a whole clip of `duration` seconds, coarse ones first, so that every part of it has some
/// early: one every eight seconds in the end, of a day at most.
std::vector<std::int64_t> thumbnailsOfClip(double duration);

/// Leaves the painter as it was.
void paintThumbnails(QPainter& painter, const TimelineScene& scene, ThumbnailStore& store);

}
