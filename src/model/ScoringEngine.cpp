#include "model/ScoringEngine.h"

#include <algorithm>

namespace pointloom::ScoringEngine {

const Marker* markerAtTime(std::span<const Marker> markers, double time) {
    const Marker* latest = nullptr;
    for (const Marker& marker : markers) {
        if (marker.startTime <= time && (!latest || marker.startTime > latest->startTime))
            latest = &marker;
    }
    return latest;
}

std::optional<SportScoreState> resolveScoreAtTime(std::span<const Marker> markers, double time) {
    const Marker* marker = markerAtTime(markers, time);
    return marker ? std::optional(marker->score) : std::nullopt;
}

SportScoreState getInitialScore(const MatchConfig& config) {
    const auto count = std::clamp<std::int64_t>(config.numberOfSets, 0, largestNumberOfSets);
    const std::vector<SetScore> sets(static_cast<std::size_t>(count));
    if (usesTennisScoring(config.sport))
        return ScoreState{.sets = sets, .currentGame = {}, .servingTeam = 1};
    return PointScoreState{.sets = sets, .currentGame = {}, .servingTeam = 1};
}

}
