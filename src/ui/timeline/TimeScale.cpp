#include "ui/timeline/TimeScale.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

constexpr double widestFrame = 64;      // points
constexpr double longestTimeline = 1e9; // points; scroll bars count in whole numbers

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

}
