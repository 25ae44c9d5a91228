// The exported part of the source's timeline.
#pragma once

#include "media/FrameFormat.h"

#include <cstdint>
#include <optional>

namespace pointloom {

/// From `start` up to, not including, `end`; both in seconds, held in units of 1/600 s.
class TrimRange {
public:
    TrimRange(double start, std::optional<double> end);

    double start() const;
    std::optional<double> end() const;

    /// A frame's stay on the new file's timeline, in ticks of `timeBase`, the start of the range at 0.
    struct Stay {
        std::int64_t timestamp = 0;
        std::int64_t duration = 0; // 0 when unknown
    };

    /// Where a frame shown from `timestamp` until `next` (none: for `duration` ticks, 0 unknown) stands.
    /// A frame on screen when the range starts is shown from its first moment. Empty when it is over before
    /// the range starts, or starts at or after its end.
    std::optional<Stay> place(std::int64_t timestamp, std::int64_t duration, std::optional<std::int64_t> next,
                              media::Rational timeBase) const;

private:
    std::int64_t m_start; // 1/600 s
    std::optional<std::int64_t> m_end;
};

}
