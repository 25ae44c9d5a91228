// The markers of a match of two hours, for programs that measure the cost of many markers.
#pragma once

#include "model/Marker.h"

#include <vector>

namespace pointloom::LongMatch {

constexpr double duration = 7200; // seconds

/// Spread evenly, with scores of many widths.
inline std::vector<Marker> markers(std::int64_t count) {
    std::vector<Marker> result;
    for (std::int64_t number = 0; number < count; ++number) {
        ScoreState score{
            .sets = {{6, number % 5, std::nullopt}, {number % 7, 3, std::nullopt}, {0, 0, std::nullopt}},
            .currentGame = {static_cast<GamePoint>(number % 4), GamePoint::fifteen},
            .servingTeam = 1 + number % 2};
        result.push_back({QUuid::createUuid(),
                          duration * static_cast<double>(number) / static_cast<double>(count),
                          std::move(score), std::nullopt});
    }
    return result;
}

}
