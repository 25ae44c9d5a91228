#include "model/ScoreStepping.h"

#include <limits>

namespace pointloom {

namespace {

// Deuce reads as 40: a key that changes nothing one can see would be pressed twice.
GamePoint stepped(GamePoint point, StepDirection direction) {
    constexpr int last = static_cast<int>(GamePoint::advantage);
    const int step = direction == StepDirection::next ? 1 : -1;
    int next = static_cast<int>(point) + step;
    while (next >= 0 && next <= last && displayString(static_cast<GamePoint>(next)) == displayString(point))
        next += step;
    return next < 0 || next > last ? point : static_cast<GamePoint>(next);
}

std::int64_t stepped(std::int64_t points, StepDirection direction) {
    if (direction == StepDirection::next)
        return points < std::numeric_limits<std::int64_t>::max() ? points + 1 : points;
    return points > 0 ? points - 1 : points;
}

}

SportScoreState steppedScore(SportScoreState score, int team, StepDirection direction) {
    std::visit(
        [&](auto& state) {
            auto& value = team == 1 ? state.currentGame.team1 : state.currentGame.team2;
            value = stepped(value, direction);
        },
        score);
    return score;
}

SportScoreState withServeSwapped(SportScoreState score) {
    std::visit([](auto& state) { state.servingTeam = state.servingTeam == 1 ? 2 : 1; }, score);
    return score;
}

}
