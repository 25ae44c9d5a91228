// Where times of the clip stand on the timeline: its zoom and its scroll position.
#pragma once

namespace pointloom {

/// Positions are points from the left edge of what is visible. The clip has a margin at both ends, so that
/// what sits on its first or last moment can be seen and grasped. Nothing is visible of an empty clip.
class TimeScale {
public:
    static constexpr double margin = 14; // points

    /// `duration` in seconds; `frameRate` limits the zoom. A scale that showed the whole clip goes on doing
    /// so.
    void setClip(double duration, double frameRate);
    void setWidth(double points);

    double x(double time) const { return margin + time * m_pointsPerSecond - m_offset; }
    double time(double x) const;

    double duration() const { return m_duration; }
    double width() const { return m_width; }
    double pointsPerSecond() const { return m_pointsPerSecond; }

    /// Points scrolled away at the left; whole, so that hairlines do not tremble while scrolling.
    double offset() const { return m_offset; }
    double largestOffset() const;
    void scrollTo(double offset);

    /// Scrolls as little as needed to have `time` at least `distance` points inside of the edges.
    void reveal(double time, double distance);
    bool shows(double time) const;

    /// Keeps the time that stands at `x` where it is, as far as the ends of the clip allow.
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
    double m_exactOffset = 0; // points; many small zooms in a row must not add up their roundings
    bool m_isFitted = true;
};

}
