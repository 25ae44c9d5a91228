// The exported part of the source's timeline.
#pragma once

#include "media/FrameFormat.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace pointloom {

/// The frames of the source from the one at `from` up to, not including, the one at `until`, ticks of the
/// source's time base; none: as far as the range goes.
struct FrameWindow {
    std::optional<std::int64_t> from;
    std::optional<std::int64_t> until;

    bool operator==(const FrameWindow&) const = default;
};

/// From `start` up to, not including, `end`; both in seconds, held in units of 1/600 s. A window leaves a
/// part of the range, whose first frame then stands at 0.
class TrimRange {
public:
    TrimRange(double start, std::optional<double> end, const FrameWindow& window = {});

    double start() const;
    std::optional<double> end() const;

    /// When a frame whose own time is `frameTime` comes on screen: no earlier than the start that was asked
    /// for. Seconds of the source; decides the frame's score.
    double shownFrom(double frameTime) const { return std::max(frameTime, m_requestedStart); }

    /// Where decoding has to begin, seconds of the source.
    double decodingStart(media::Rational timeBase) const;

    /// Where it may end, seconds of the source; none: with the source.
    std::optional<double> decodingEnd(media::Rational timeBase) const;

    /// True for a frame, at `timestamp`, that lies behind all that are wanted.
    bool isBehind(std::int64_t timestamp, media::Rational timeBase) const;

    /// How far the window's first frame stands behind the start of the whole range, ticks.
    std::int64_t windowStart(media::Rational timeBase) const;

    /// A frame's stay on the new file's timeline, in ticks of `timeBase`, the start of the range at 0.
    struct Stay {
        std::int64_t timestamp = 0;
        std::int64_t duration = 0; // 0 when unknown
    };

    /// Where a frame shown from `timestamp` until `next` (none: for `duration` ticks, 0 unknown) stands.
    /// A frame on screen when the range starts is shown from its first moment. Empty when it is over before
    /// the range starts, or starts at or after its end; both within half of 1/600 s.
    std::optional<Stay> place(std::int64_t timestamp, std::int64_t duration, std::optional<std::int64_t> next,
                              media::Rational timeBase) const;

private:
    double m_requestedStart; // seconds
    std::int64_t m_start;    // 1/600 s
    std::optional<std::int64_t> m_end;
    FrameWindow m_window;
};

}
