#include "ui/timeline/Snapping.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace pointloom {

namespace {

// None when all are further than `reach` seconds.
std::optional<double> nearestTarget(double time, std::span<const double> targets, double reach) {
    std::optional<double> nearest;
    for (const double target : targets) {
        const double distance = std::abs(target - time);
        if (distance <= reach && (!nearest || distance < std::abs(*nearest - time)))
            nearest = target;
    }
    return nearest;
}

}

double frameStart(double time, double frameRate) {
    constexpr double hair = 1e-6; // frames: a frame's own time must not fall into the frame before
    return std::max(0.0, std::floor(time * frameRate + hair) / frameRate);
}

double nearestFrame(double time, double frameRate) {
    return std::max(0.0, std::round(time * frameRate) / frameRate);
}

Snapped snap(double time, double frameRate, std::span<const double> targets, double reach) {
    if (const auto target = nearestTarget(time, targets, reach))
        return {*target, true};
    return {nearestFrame(time, frameRate), false};
}

}
