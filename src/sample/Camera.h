// The court's space and the camera that looks at it.
#pragma once

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <QPointF>
#include <QPolygonF>
#include <QSize>

namespace pointloom::sample {

/// Metres; x to the right, y away from the camera, z up; the origin is below the middle of the net.
struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

constexpr Point3 operator+(Point3 a, Point3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Point3 operator-(Point3 a, Point3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Point3 operator*(Point3 a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
constexpr double dot(Point3 a, Point3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Point3 cross(Point3 a, Point3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Point3 a) {
    return std::sqrt(dot(a, a));
}
inline Point3 normalized(Point3 a) {
    return a * (1 / std::max(length(a), 1e-9));
}
constexpr Point3 mix(Point3 a, Point3 b, double share) {
    return a + (b - a) * share;
}

/// Rises from 0 to 1 with level ends.
inline double smoothStep(double share) {
    const double t = std::clamp(share, 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// High behind the near baseline, as broadcasts show tennis.
class Camera {
public:
    explicit Camera(QSize picture)
        : m_centre(picture.width() / 2.0, picture.height() / 2.0)
        , m_focalLength(std::max(picture.width() / 1280.0, picture.height() / 720.0) * 1540) {}

    QPointF project(Point3 point) const {
        const Point3 seen = turned(point);
        return m_centre + QPointF(seen.x, -seen.z) * (m_focalLength / seen.y);
    }

    /// How many pixels a metre spans at that place.
    double pixelsPerMetre(Point3 point) const { return m_focalLength / turned(point).y; }

    double distance(Point3 point) const { return length(point - m_position); }

    QPolygonF project(std::initializer_list<Point3> points) const {
        QPolygonF polygon;
        for (const Point3& point : points)
            polygon << project(point);
        return polygon;
    }

private:
    /// Camera axes: x right, y along the view, z up.
    Point3 turned(Point3 point) const {
        const Point3 offset = point - m_position;
        const double forward = offset.y * std::cos(m_pitch) - offset.z * std::sin(m_pitch);
        const double up = offset.y * std::sin(m_pitch) + offset.z * std::cos(m_pitch);
        return {offset.x, std::max(forward, 0.1), up};
    }

    Point3 m_position{0, -30, 10.5};
    double m_pitch = 0.34; // radians, downward
    QPointF m_centre;
    double m_focalLength; // pixels
};

}
