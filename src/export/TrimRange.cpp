#include "export/TrimRange.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

constexpr double timescale = 600; // ticks a second: whole for 24, 25, 30, 50 and 60 frames a second

std::int64_t ticksOf(double seconds) {
    constexpr double farthest = 1e9; // seconds; all that is counted with them stays below 2^63
    return std::llround(std::clamp(seconds, -farthest, farthest) * timescale);
}

std::int64_t rescale(double ticks600, media::Rational timeBase) {
    return std::llround(ticks600 / timescale / timeBase.value());
}

}

TrimRange::TrimRange(double start, std::optional<double> end, const FrameWindow& window)
    : m_requestedStart(start)
    , m_start(ticksOf(start))
    , m_window(window) {
    if (end)
        m_end = ticksOf(*end);
}

double TrimRange::start() const {
    return static_cast<double>(m_start) / timescale;
}

std::optional<double> TrimRange::end() const {
    return m_end ? std::optional(static_cast<double>(*m_end) / timescale) : std::nullopt;
}

double TrimRange::decodingStart(media::Rational timeBase) const {
    return m_window.from ? static_cast<double>(*m_window.from) * timeBase.value() : start();
}

std::optional<double> TrimRange::decodingEnd(media::Rational timeBase) const {
    return m_window.until ? std::optional(static_cast<double>(*m_window.until) * timeBase.value()) : end();
}

bool TrimRange::isAfter(std::int64_t timestamp, media::Rational timeBase) const {
    if (m_window.until && timestamp >= *m_window.until)
        return true;
    return m_end && static_cast<double>(timestamp) * timeBase.value() >= *end();
}

std::int64_t TrimRange::windowStart(media::Rational timeBase) const {
    return m_window.from ? *m_window.from - rescale(static_cast<double>(m_start), timeBase) : 0;
}

std::optional<TrimRange::Stay> TrimRange::place(std::int64_t timestamp, std::int64_t duration,
                                                std::optional<std::int64_t> next,
                                                media::Rational timeBase) const {
    if ((m_window.from && timestamp < *m_window.from) || (m_window.until && timestamp >= *m_window.until))
        return std::nullopt;
    const std::int64_t start = rescale(static_cast<double>(m_start), timeBase);
    // The start may have been rounded to just before the frame at which it was set: that frame is the first.
    constexpr double hair = 1e-3;                                                // ticks
    const double roundedAway = (static_cast<double>(m_start) + 0.5) / timescale; // seconds
    const std::int64_t latestStart =
        m_start > 0 ? static_cast<std::int64_t>(std::floor(roundedAway / timeBase.value() + hair)) : 0;
    if (next && *next <= latestStart)
        return std::nullopt;
    const std::int64_t from = timestamp <= latestStart ? 0 : timestamp - start;
    std::int64_t until = next ? *next - start : timestamp + duration - start;
    if (m_end) {
        // A frame on the end is out although rounding to 1/600 s may have put the end just after it.
        const std::int64_t lastStart = rescale(static_cast<double>(*m_end) - 0.5, timeBase) - start;
        if (from >= lastStart)
            return std::nullopt;
        const std::int64_t end = rescale(static_cast<double>(*m_end), timeBase) - start;
        until = std::min(until, end);
    }
    return Stay{from - windowStart(timeBase), std::max<std::int64_t>(0, until - from)};
}

}
