// The timeline's axis: positions of times at a zoom and scroll position, and the ticks of its ruler.
#pragma once

#include <QString>
#include <vector>

namespace pointloom {

/// Positions are points from the left edge of the view. The clip has a margin at both ends, so that items on
/// its first or last frame can be seen and dragged. Nothing is visible of an empty clip.
class TimeScale {
public:
    static constexpr double margin = 14; // points

    /// `duration` in seconds; `frameRate` limits the zoom. A scale that shows the whole clip continues to.
    void setClip(double duration, double frameRate);
    void setWidth(double points);

    double x(double time) const { return margin + time * m_pointsPerSecond - m_offset; }
    double time(double x) const;

    double duration() const { return m_duration; }
    double width() const { return m_width; }
    double pointsPerSecond() const { return m_pointsPerSecond; }

    /// Points that are scrolled out at the left; whole, so that thin lines stay sharp while scrolling.
    double offset() const { return m_offset; }
    double largestOffset() const;
    void scrollTo(double offset);

    /// Scrolls as little as possible to have `time` at least `distance` points inside the edges.
    void reveal(double time, double distance);
    bool shows(double time) const;

    /// Keeps the time at `x` in its place, as far as the ends of the clip allow.
    void zoomBy(double factor, double x);
    void fit();
    bool isFitted() const { return m_isFitted; }

private:
    double fittedScale() const;
    double largestScale() const;
    void limit();

    double m_duration = 0; // seconds
    double m_frameRate = 30;
    double m_width = 0; // points
    double m_pointsPerSecond = 1;
    double m_offset = 0;      // points, whole
    double m_exactOffset = 0; // points, unrounded, so that many small zooms do not add up rounding errors
    bool m_isFitted = true;
};

struct RulerTick {
    double time = 0; // seconds
    QString label;   // empty for small ticks
    bool isWholeSecond = true;
};

struct RulerRange {
    double from = 0; // seconds
    double to = 0;   // seconds; not before `from`
    double pointsPerSecond = 1;
    double frameRate = 30;
    double labelDistance = 64; // points from one label to the next, at least
};

/// Labels are at round times, from single frames ("12f", counted from the whole second before) to hours.
/// Ticks are in rising order, within the range and up to one label before it.
std::vector<RulerTick> rulerTicks(const RulerRange& range);

}
