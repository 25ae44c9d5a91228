// Chooses what a ruler of times shows at a zoom.
#pragma once

#include <QString>
#include <vector>

namespace pointloom {

struct RulerTick {
    double time = 0; // seconds
    QString label;   // empty for the small ticks between
    bool isWholeSecond = true;
};

struct RulerRange {
    double from = 0; // seconds
    double to = 0;   // seconds; not before `from`
    double pointsPerSecond = 1;
    double frameRate = 30;
    double labelDistance = 64; // points that one label needs
};

/// Labels stand on round times, from single frames ("12f", counted from the whole second before) to hours.
/// Ticks lie within the range and one label before it, in rising order.
std::vector<RulerTick> rulerTicks(const RulerRange& range);

}
