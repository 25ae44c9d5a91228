// Jointed figures: how a player stands, runs and swings, and how that is painted.
#pragma once

#include "sample/Camera.h"
#include "sample/Match.h"

#include <QColor>
#include <vector>

class QPainter;

namespace pointloom::sample {

/// A rounded, tapered piece between two places.
struct Limb {
    Point3 from;
    Point3 to;
    double fromRadius = 0; // metres
    double toRadius = 0;
    QColor color;
};

struct Racket {
    Point3 hand;
    Point3 direction; // from the hand to the head, unit length
    Point3 side;      // across the head, unit length
};

struct Figure {
    std::vector<Limb> limbs;
    std::vector<Racket> rackets;
};

struct Outfit {
    QColor shirt;
    QColor shorts;
    QColor skin;
    QColor hair;
};

/// `stridePhase` in radians: one turn is two steps.
Figure playerFigure(Side side, const PlayerState& state, const Outfit& outfit, double stridePhase,
                    double time);

/// Somebody who stands still, arms down.
Figure standingFigure(Point3 place, double height, const Outfit& outfit);

/// Somebody on a seat whose surface is at `seat`, looking along x by `direction` (+1 or -1).
Figure sittingFigure(Point3 seat, double direction, const Outfit& outfit);

void paintShadow(QPainter& painter, const Camera& camera, const Figure& figure);
void paintFigure(QPainter& painter, const Camera& camera, const Figure& figure);

/// Where something at that place throws its shadow on the ground.
Point3 shadowOf(Point3 place);

}
