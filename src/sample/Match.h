// The rally of the sample: hits with their times and places, the flight of the ball, and the score.
#pragma once

#include "sample/Camera.h"

#include <optional>
#include <QByteArray>
#include <vector>

namespace pointloom::sample {

enum class Side { near, far }; // team 1 plays on the near side, team 2 on the far side

constexpr Side otherSide(Side side) {
    return side == Side::near ? Side::far : Side::near;
}

/// +1 where forward means away from the camera.
constexpr double facing(Side side) {
    return side == Side::near ? 1 : -1;
}

struct Stroke {
    enum class Kind { serve, forehand, backhand };

    Side side = Side::near;
    Kind kind = Kind::serve;
    double time = 0; // seconds
    Point3 contact;
    double bounceTime = 0;
    Point3 bounce;
};

struct Rally {
    std::vector<Stroke> strokes;
    double end = 0; // seconds; when the point is decided
    Side winner = Side::near;
};

/// A player's place and what the arms do.
struct PlayerState {
    Point3 position;                // on the ground
    Point3 velocity;                // metres a second
    const Stroke* stroke = nullptr; // the one nearest in time
    double strokeTime = 0;          // seconds since its contact; negative before
    double celebration = 0;         // 0..1
};

/// A script without chance: the same length gives the same match.
class Match {
public:
    /// Long enough for a clip of `seconds`.
    explicit Match(double seconds);

    const std::vector<Rally>& rallies() const { return m_rallies; }
    PlayerState player(Side side, double time) const;

    /// Empty while no ball is in play.
    std::optional<Point3> ball(double time) const;

    /// How much the crowd applauds, 0..1.
    double applause(double time) const;

    /// The score at the start and after every point that ends before `seconds`, in the columns that marker
    /// import reads.
    QByteArray markersCsv(double seconds) const;

private:
    struct Step {
        double time;
        Point3 position;
    };

    void addRally(std::size_t number, Side server, bool deuceCourt, double serveTime);
    void planSteps(const Rally& rally);
    std::vector<Step>& steps(Side side) { return side == Side::near ? m_nearSteps : m_farSteps; }
    const std::vector<Step>& steps(Side side) const { return side == Side::near ? m_nearSteps : m_farSteps; }
    Point3 position(Side side, double time) const;

    std::vector<Rally> m_rallies;
    std::vector<Step> m_nearSteps;
    std::vector<Step> m_farSteps;
};

}
