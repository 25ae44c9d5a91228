#include "model/ScoringEngine.h"

#include <algorithm>
#include <cmath>

namespace pointloom::ScoringEngine {

const Marker* markerAtTime(std::span<const Marker> markers, double time) {
    const Marker* latest = nullptr;
    for (const Marker& marker : markers) {
        if (marker.startTime <= time + frameTimeTolerance &&
            (!latest || marker.startTime > latest->startTime))
            latest = &marker;
    }
    return latest;
}

std::optional<SportScoreState> resolveScoreAtTime(std::span<const Marker> markers, double time) {
    const Marker* marker = markerAtTime(markers, time);
    return marker ? std::optional(marker->score) : std::nullopt;
}

std::vector<Marker> sortedByTime(std::vector<Marker> markers) {
    std::ranges::stable_sort(markers, [](const Marker& left, const Marker& right) {
        return left.startTime < right.startTime ||
               (std::isnan(right.startTime) && !std::isnan(left.startTime));
    });
    return markers;
}

SportScoreState getInitialScore(const MatchConfig& config) {
    const auto count = std::clamp<std::int64_t>(config.numberOfSets, 0, largestNumberOfSets);
    const std::vector<SetScore> sets(static_cast<std::size_t>(count));
    if (usesTennisScoring(config.sport))
        return ScoreState{.sets = sets, .currentGame = {}, .servingTeam = 1};
    return PointScoreState{.sets = sets, .currentGame = {}, .servingTeam = 1};
}

}
