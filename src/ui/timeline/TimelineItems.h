// The timeline's items one after the other, for keys and screen readers.
#pragma once

#include "ui/timeline/TimelineScene.h"

#include <optional>
#include <vector>

namespace pointloom {

/// The playhead (`time`), then trims, markers, cuts and the ends of cuts in order of time.
std::vector<TimelineHit> itemsOf(const TimelineScene& scene);

/// Seconds; of a cut its start. Empty when the scene has no such item.
std::optional<double> timeOf(const TimelineScene& scene, const TimelineHit& item);

enum class ItemDirection { before, after };

/// The neighbour of an item in time. From the playhead, the first item at or after it, or the last one before
/// it. Empty at the ends.
std::optional<TimelineHit> itemBeside(const TimelineScene& scene, const TimelineHit& item,
                                      ItemDirection direction);

/// Points; also outside of the view.
QRectF areaOf(const TimelineScene& scene, const TimelineHit& item);

}
