// The parts of the source's timeline that an export keeps, and the times of the new file made of them.
#pragma once

#include "model/Marker.h"
#include "json/JsonFields.h"

#include <optional>
#include <span>
#include <tuple>
#include <vector>

namespace pointloom {

/// A stretch of the source's timeline, seconds.
struct TimeSpan {
    double start = 0;
    double end = 0;

    bool operator==(const TimeSpan&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("start", &TimeSpan::start), json::field("end", &TimeSpan::end)};
    }
};

/// Seconds that are kept before and after each marker, 0 or more.
struct RallyMargins {
    double before = 10;
    double after = 2;

    bool operator==(const RallyMargins&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("before", &RallyMargins::before),
                          json::field("after", &RallyMargins::after)};
    }
};

/// The parts of `range` that are kept, in order and apart from each other: what is within `rallies` of a
/// marker, or all of it, without the spans of `leftOut`.
std::vector<TimeSpan> keptParts(const TimeSpan& range, std::span<const Marker> markers,
                                const std::optional<RallyMargins>& rallies,
                                std::span<const TimeSpan> leftOut);

/// Kept parts, one after the other in the new file.
class TimeMap {
public:
    /// `parts` are in order and apart from each other.
    explicit TimeMap(std::vector<TimeSpan> parts)
        : m_parts(std::move(parts)) {}

    const std::vector<TimeSpan>& parts() const { return m_parts; }

    /// Seconds of the new file.
    double length() const;

    /// The time in the new file of a moment of the source; of one that is left out, the start of the next
    /// part; after the last part the length.
    double newTime(double sourceTime) const;

    /// The moment of the source that is shown at a time of the new file. There is a part.
    double sourceTime(double newTime) const;

private:
    std::vector<TimeSpan> m_parts;
};

}
