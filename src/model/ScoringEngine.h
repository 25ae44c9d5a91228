// Resolves the score at a time of the source video and makes the empty score of a match. Pure functions,
// shared by preview and export.
#pragma once

#include "model/Marker.h"
#include "model/MatchConfig.h"

#include <optional>
#include <span>
#include <vector>

namespace pointloom::ScoringEngine {

/// Seconds by which a marker may be later than a frame and still count as at its time. A frame's time is
/// ticks times seconds a tick; a marker set on it was calculated in another way (frames divided by their
/// rate, or the player's own product) and differs by a few roundings of a double: 1.5e-11 s each after a day
/// of video. The finest clock in use counts 10^7 ticks a second; a marker one tick after the frame is later.
inline constexpr double frameTimeTolerance = 1e-8;

/// The marker whose score a frame shown at `time` (seconds) gets: the latest at or before it, within
/// `frameTimeTolerance`, and, of several at that same time, the first in the list. Null when every marker is
/// later. The list may be in any order.
const Marker* markerAtTime(std::span<const Marker> markers, double time);

/// The score of `markerAtTime`; empty when every marker is later.
std::optional<SportScoreState> resolveScoreAtTime(std::span<const Marker> markers, double time);

/// The markers in the order of their times, those of one time in the order they had: it decides which of them
/// counts. A time that is not a number, which a hand-written file may hold, goes to the end.
std::vector<Marker> sortedByTime(std::vector<Marker> markers);

/// The score before the first point: all sets 0 to 0, team 1 serving.
SportScoreState getInitialScore(const MatchConfig& config);

}
