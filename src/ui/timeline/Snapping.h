// What times hold on to while something is dragged.
#pragma once

#include <optional>
#include <span>

namespace pointloom {

/// The start of the frame that is on screen at `time`.
double frameStart(double time, double frameRate);

/// The start of the frame nearest to `time`; never negative.
double nearestFrame(double time, double frameRate);

/// The target nearest to `time`, none when all are further than `reach` seconds.
std::optional<double> nearestTarget(double time, std::span<const double> targets, double reach);

struct Snapped {
    double time = 0;
    bool isOnTarget = false;
};

/// The nearest target within reach, else the nearest frame.
Snapped snap(double time, double frameRate, std::span<const double> targets, double reach);

}
