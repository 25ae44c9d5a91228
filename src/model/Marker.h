// Score markers and cut zones of a timeline. All times are seconds from the start of the source video.
#pragma once

#include "model/ScoreState.h"

#include <optional>
#include <QString>
#include <QUuid>
#include <tuple>

namespace pointloom {

/// The whole score that holds from its time until the next marker.
template <class Score>
struct MarkerOf {
    QUuid id;
    double startTime = 0; // seconds
    Score score;
    std::optional<QString> label;

    bool operator==(const MarkerOf&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("id", &MarkerOf::id), json::field("startTime", &MarkerOf::startTime),
                          json::field("score", &MarkerOf::score), json::field("label", &MarkerOf::label)};
    }
};

using Marker = MarkerOf<SportScoreState>;

/// A range marked on the timeline as an editing aid; export does not apply it.
struct CutZone {
    QUuid id;
    double start = 0; // seconds
    double end = 0;   // seconds

    bool operator==(const CutZone&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("id", &CutZone::id), json::field("start", &CutZone::start),
                          json::field("end", &CutZone::end)};
    }
};

}
