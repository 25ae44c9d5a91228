// Finds places for the flags of markers, so that no flag covers another.
#pragma once

#include <span>
#include <vector>

namespace pointloom {

enum class FlagDetail { tick, brief, full };

/// The widths of a flag's texts, points.
struct FlagWidths {
    double brief = 0;
    double full = 0;
};

struct FlagPlace {
    int lane = 0;
    FlagDetail detail = FlagDetail::tick;
    double width = 0;       // points; 0 for a tick
    bool leansLeft = false; // ends at its position instead of beginning there
};

/// A flag begins at its position (points, in rising order, on any origin: scrolling changes nothing) in the
/// first lane that is free there. It says as much as leaves room for the flags that follow. Where not all
/// have room some become ticks, and where they crowd all of them. No flag goes beyond `end`: one that would
/// leans to the left where that is free.
std::vector<FlagPlace> layOutFlags(std::span<const double> positions, std::span<const FlagWidths> widths,
                                   int lanes, double end);

}
