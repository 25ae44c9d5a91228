// Markers, matches and a store for tests of the session.
#pragma once

#include "session/AppState.h"

#include <QString>
#include <vector>

namespace pointloom::test {

inline SportScoreState tennisScore(std::int64_t games) {
    return ScoreState{.sets = {{games, 0, std::nullopt}}, .currentGame = {}, .servingTeam = 1};
}

/// A marker at `time` seconds whose score has as many games for team 1.
inline Marker markerAt(double time) {
    return {.id = QUuid::createUuid(),
            .startTime = time,
            .score = tennisScore(static_cast<std::int64_t>(time)),
            .label = std::nullopt};
}

inline MatchConfig tennisMatch() {
    MatchConfig config;
    config.team1.player1 = QStringLiteral("Dravnik");
    config.team2.player1 = QStringLiteral("Solvane");
    config.numberOfSets = 3;
    return config;
}

inline std::vector<double> timesOf(const AppState& state) {
    std::vector<double> times;
    for (const Marker& marker : state.markers.value())
        times.push_back(marker.startTime);
    return times;
}

/// Remembers what the session asked for.
class RecordingStore final : public SessionStore {
public:
    void save(const AppState&) noexcept override { ++saves; }
    void clear() noexcept override { ++clears; }
    void retry() noexcept override {}

    int saves = 0;
    int clears = 0;
};

}
