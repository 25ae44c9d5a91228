// The exported range of the source's timeline.
#pragma once

#include "media/FrameFormat.h"
#include "json/JsonFields.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <tuple>

namespace pointloom {

/// The frames of the source from the one at `from` up to, not including, the one at `until`, ticks of the
/// source's time base; none: from the start or to the end of the range.
struct FrameWindow {
    std::optional<std::int64_t> from;
    std::optional<std::int64_t> until;

    bool operator==(const FrameWindow&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("from", &FrameWindow::from), json::field("until", &FrameWindow::until)};
    }
};

/// From `start` up to, not including, `end`; both in seconds, held in units of 1/600 s. With a window, only
/// its frames are in the range; the first of them is then at 0.
class TrimRange {
public:
    TrimRange(double start, std::optional<double> end, const FrameWindow& window = {});

    double start() const;
    std::optional<double> end() const;

    /// The time at which a frame whose own time is `frameTime` comes on screen: not before the requested
    /// start. Seconds of the source; decides the frame's score.
    double shownFrom(double frameTime) const { return std::max(frameTime, m_requestedStart); }

    /// The time at which decoding begins, seconds of the source.
    double decodingStart(media::Rational timeBase) const;

    /// The time at which decoding may end, seconds of the source; none: with the source.
    std::optional<double> decodingEnd(media::Rational timeBase) const;

    /// True for a frame, at `timestamp`, that comes after the end.
    bool isAfter(std::int64_t timestamp, media::Rational timeBase) const;

    /// The distance of the window's first frame from the start of the whole range, ticks.
    std::int64_t windowStart(media::Rational timeBase) const;

    /// A frame's stay on the new file's timeline, in ticks of `timeBase`, the start of the range at 0.
    struct Stay {
        std::int64_t timestamp = 0;
        std::int64_t duration = 0; // 0 when unknown
    };

    /// The stay of a frame shown from `timestamp` until `next` (none: for `duration` ticks, 0 unknown).
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
