// What times hold on to while something is dragged.
#pragma once

#include <span>

namespace pointloom {

/// The start of the frame that is on screen at `time`.
double frameStart(double time, double frameRate);

/// The start of the frame nearest to `time`; never negative.
double nearestFrame(double time, double frameRate);

struct Snapped {
    double time = 0;
    bool isOnTarget = false;
};

/// The nearest target within `reach` seconds, else the nearest frame.
Snapped snap(double time, double frameRate, std::span<const double> targets, double reach);

}
