// The spectators.
#pragma once

#include "sample/Camera.h"

#include <QColor>
#include <random>
#include <vector>

class QPainter;

namespace pointloom::sample {

class Crowd {
public:
    Crowd();

    /// `phase` in [0, 1) turns once through everybody's movements; `clapping` shows hands and wider moves.
    void paint(QPainter& painter, const Camera& camera, double phase, bool clapping) const;

private:
    struct Spectator {
        Point3 seat;
        double phase = 0; // of the movements, in turns
        double light = 1; // factor on the colours
        bool clapsHigh = false;
        QColor shirt;
        QColor skin;
        QColor hair;
    };

    void fillRow(Point3 from, Point3 to, double light);

    std::mt19937 m_dice{20240607};       // the same crowd in every clip
    std::vector<Spectator> m_spectators; // farthest first
};

/// The stands rise behind the walls: metres of height at `row`, and metres beyond the wall.
constexpr int standRows = 11;
constexpr double rowDepth = 0.85;
constexpr double rowRise = 0.5;
constexpr double firstRowHeight = 1.35;
constexpr double farWall = 18.4; // metres from the net
constexpr double sideWall = 9.6; // metres from the court's middle line
constexpr double wallHeight = 1.15;

}
