#include "session/PartChoice.h"

#include <algorithm>

namespace pointloom {

std::optional<RallyMargins> PartChoice::margins() const {
    return onlyRallies ? std::optional(rallies) : std::nullopt;
}

std::vector<TimeSpan> PartChoice::leftOut(std::span<const CutZone> cuts) const {
    std::vector<TimeSpan> spans;
    for (const CutZone& cut : withoutCuts ? cuts : std::span<const CutZone>()) {
        const auto [start, end] = std::minmax(cut.start, cut.end);
        spans.push_back({start, end});
    }
    return spans;
}

std::vector<TimeSpan> PartChoice::keptParts(const TimeSpan& range, std::span<const Marker> markers,
                                            std::span<const CutZone> cuts) const {
    return pointloom::keptParts(range, markers, margins(), leftOut(cuts));
}

const TimeSpan* partFrom(std::span<const TimeSpan> parts, double time) {
    const auto part = std::ranges::upper_bound(parts, time, {}, &TimeSpan::end);
    return part == parts.end() ? nullptr : &*part;
}

double nextKept(std::span<const TimeSpan> parts, double time) {
    constexpr double oneFrame = 0.04; // seconds; the frame that starts at the end is not exported
    const TimeSpan* next = partFrom(parts, time);
    const TimeSpan& part = next ? *next : parts.back();
    return std::clamp(time, part.start, std::max(part.start, part.end - oneFrame));
}

}
