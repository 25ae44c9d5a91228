// The choice of the parts of the range that are exported.
#pragma once

#include "export/TimeMap.h"

namespace pointloom {

struct PartChoice {
    bool onlyRallies = false;
    RallyMargins rallies;     // with `onlyRallies`
    bool withoutCuts = false; // the cut zones are left out

    bool operator==(const PartChoice&) const = default;

    static constexpr auto jsonFields() {
        using Self = PartChoice;
        return std::tuple{json::field("onlyRallies", &Self::onlyRallies),
                          json::field("rallies", &Self::rallies),
                          json::field("withoutCuts", &Self::withoutCuts)};
    }

    /// False: all of the range is exported.
    bool isMade() const { return onlyRallies || withoutCuts; }

    /// As ExportSettings::rallies.
    std::optional<RallyMargins> margins() const;

    /// Those of the cut zones that the export leaves out, all or none.
    std::vector<TimeSpan> leftOut(std::span<const CutZone> cuts) const;

    /// In order and apart from each other; empty when nothing is kept.
    std::vector<TimeSpan> keptParts(const TimeSpan& range, std::span<const Marker> markers,
                                    std::span<const CutZone> cuts) const;
};

/// The part at `time`, or the next one after it; null after the last one.
const TimeSpan* partFrom(std::span<const TimeSpan> parts, double time);

/// The moment of the exported video that stands for `time`: itself where it is kept, else the start of the
/// next part, after the last part the last frame. There is a part.
double nextKept(std::span<const TimeSpan> parts, double time);

}
