// A marker as it was stored while tennis was the only sport, in sessions and documents alike. Only read.
#pragma once

#include "model/Marker.h"

namespace pointloom {

struct LegacyMarker {
    QUuid id;
    double startTime = 0; // seconds
    ScoreState score;
    std::optional<QString> label;

    Marker migrated() const { return {id, startTime, score, label}; }

    static constexpr auto jsonFields() {
        using Self = LegacyMarker;
        return std::tuple{json::field("id", &Self::id), json::field("startTime", &Self::startTime),
                          json::field("score", &Self::score), json::field("label", &Self::label)};
    }
};

}
