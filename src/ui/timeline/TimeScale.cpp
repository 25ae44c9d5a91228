#include "ui/timeline/TimeScale.h"

#include "ui/common/TimeCode.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pointloom {

namespace {

constexpr double widestFrame = 64;      // points
constexpr double longestTimeline = 1e9; // points; scroll bars count in whole numbers
constexpr double closestTicks = 5;      // points
constexpr std::size_t mostTicks = 10'000;

struct Step {
    qint64 seconds;
    int parts; // that small ticks divide it into
};

constexpr std::array steps = {
    Step{1, 5},     Step{2, 4},     Step{5, 5},     Step{10, 5},     Step{15, 3},
    Step{30, 6},    Step{60, 6},    Step{120, 4},   Step{300, 5},    Step{600, 5},
    Step{900, 3},   Step{1800, 6},  Step{3600, 6},  Step{7200, 4},   Step{14400, 4},
    Step{21600, 6}, Step{43200, 6}, Step{86400, 4}, Step{604800, 7},
};

std::vector<RulerTick> secondTicks(const RulerRange& range) {
    const auto* step = std::ranges::find_if(steps, [&](const Step& each) {
        return static_cast<double>(each.seconds) * range.pointsPerSecond >= range.labelDistance;
    });
    if (step == steps.end())
        step = std::prev(steps.end());
    const double length = static_cast<double>(step->seconds);
    const int parts = length / step->parts * range.pointsPerSecond >= closestTicks ? step->parts : 1;
    std::vector<RulerTick> ticks;
    for (auto index = static_cast<qint64>(std::floor(range.from / length)); ticks.size() < mostTicks;
         ++index) {
        const double start = static_cast<double>(index) * length;
        if (start > range.to)
            break;
        ticks.push_back({start, shortTime(start), true});
        for (int part = 1; part < parts; ++part)
            ticks.push_back({start + length * part / parts, {}, true});
    }
    return ticks;
}

std::vector<RulerTick> frameTicks(const RulerRange& range, qint64 framesPerLabel) {
    const bool marksFrames = range.pointsPerSecond / range.frameRate >= closestTicks;
    std::vector<RulerTick> ticks;
    for (auto second = static_cast<qint64>(std::floor(range.from)); ticks.size() < mostTicks; ++second) {
        if (static_cast<double>(second) > range.to)
            break;
        const auto firstFrameOf = [&](qint64 start) {
            return static_cast<qint64>(std::ceil(static_cast<double>(start) * range.frameRate - 1e-6));
        };
        const qint64 first = firstFrameOf(second);
        const qint64 count = firstFrameOf(second + 1) - first;
        for (qint64 frame = 0; frame < count; ++frame) {
            const double time = static_cast<double>(first + frame) / range.frameRate;
            // The last label of a second leaves space for that of the next second.
            const bool hasLabel = frame % framesPerLabel == 0 && count - frame >= framesPerLabel;
            if (frame == 0)
                ticks.push_back({time, shortTime(static_cast<double>(second)), true});
            else if (hasLabel)
                ticks.push_back({time, QStringLiteral("%1f").arg(frame), false});
            else if (marksFrames)
                ticks.push_back({time, {}, false});
        }
    }
    return ticks;
}

}

void TimeScale::setClip(double duration, double frameRate) {
    m_duration = std::isfinite(duration) ? std::max(duration, 0.0) : 0;
    m_frameRate = frameRate > 0 ? frameRate : 30;
    limit();
}

void TimeScale::setWidth(double points) {
    m_width = std::max(points, 0.0);
    limit();
}

double TimeScale::time(double x) const {
    return (x + m_offset - margin) / m_pointsPerSecond;
}

double TimeScale::largestOffset() const {
    return std::max(0.0, std::ceil(m_duration * m_pointsPerSecond + 2 * margin - m_width - 1e-6));
}

void TimeScale::scrollTo(double offset) {
    m_exactOffset = std::clamp(offset, 0.0, largestOffset());
    m_offset = std::round(m_exactOffset);
}

void TimeScale::reveal(double time, double distance) {
    const double position = x(time);
    const double inside = std::min(distance, m_width / 2);
    if (position < inside)
        scrollTo(m_offset + position - inside);
    else if (position > m_width - inside)
        scrollTo(m_offset + position - m_width + inside);
}

bool TimeScale::shows(double time) const {
    const double position = x(time);
    return position >= 0 && position <= m_width;
}

void TimeScale::zoomBy(double factor, double x) {
    const double kept = (x + m_exactOffset - margin) / m_pointsPerSecond;
    const double wanted = m_pointsPerSecond * factor;
    m_pointsPerSecond = std::clamp(wanted, fittedScale(), largestScale());
    m_isFitted = wanted <= fittedScale();
    scrollTo(margin + kept * m_pointsPerSecond - x);
}

void TimeScale::fit() {
    m_isFitted = true;
    limit();
}

double TimeScale::fittedScale() const {
    if (m_duration <= 0)
        return 1;
    return std::max(m_width - 2 * margin, 1.0) / m_duration;
}

double TimeScale::largestScale() const {
    const double deepest =
        m_duration > 0 ? std::min(widestFrame * m_frameRate, longestTimeline / m_duration) : 1;
    return std::max(deepest, fittedScale());
}

void TimeScale::limit() {
    m_isFitted = m_isFitted || m_pointsPerSecond <= fittedScale();
    m_pointsPerSecond = m_isFitted ? fittedScale() : std::min(m_pointsPerSecond, largestScale());
    scrollTo(m_exactOffset);
}

std::vector<RulerTick> rulerTicks(const RulerRange& range) {
    constexpr std::array<qint64, 5> frameSteps = {1, 2, 5, 10, 15};
    for (const qint64 frames : frameSteps) {
        if (static_cast<double>(frames) * 1.5 > range.frameRate)
            break;
        if (static_cast<double>(frames) / range.frameRate * range.pointsPerSecond >= range.labelDistance)
            return frameTicks(range, frames);
    }
    return secondTicks(range);
}

}
