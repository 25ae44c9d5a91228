// Which score holds at a time of the source video, and which one a match starts from.
// Pure functions: preview and export ask the same question and get the same answer.
#pragma once

#include "model/Marker.h"
#include "model/MatchConfig.h"

#include <optional>
#include <span>

namespace pointloom::ScoringEngine {

/// The marker whose score holds at `time` (seconds): the latest at or before it and, of several at that
/// same time, the first in the list. Null when every marker is later. The list may be in any order.
const Marker* markerAtTime(std::span<const Marker> markers, double time);

/// The score of `markerAtTime`; empty when every marker is later.
std::optional<SportScoreState> resolveScoreAtTime(std::span<const Marker> markers, double time);

/// The score before the first point: all sets 0 to 0, team 1 serving.
SportScoreState getInitialScore(const MatchConfig& config);

}
