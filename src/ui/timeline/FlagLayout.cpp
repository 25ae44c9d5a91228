#include "ui/timeline/FlagLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pointloom {

namespace {

constexpr double gap = 3; // points between two flags of a lane
constexpr double infinity = std::numeric_limits<double>::infinity();

}

std::vector<FlagPlace> layOutFlags(std::span<const double> positions, std::span<const FlagWidths> widths, int lanes) {
    std::vector<FlagPlace> places(positions.size());
    std::vector<double> laneEnds(static_cast<std::size_t>(std::max(lanes, 1)), -infinity);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (!std::isfinite(positions[i]))
            continue;
        const auto isFree = [&](double end) { return end + gap <= positions[i]; };
        const auto freeLane = std::ranges::find_if(laneEnds, isFree);
        if (freeLane == laneEnds.end())
            continue;
        // The flags that follow may go into the other free lanes; the one after those needs this one.
        const std::size_t rival = i + static_cast<std::size_t>(std::ranges::count_if(laneEnds, isFree));
        const bool hasRival = rival < positions.size() && std::isfinite(positions[rival]);
        const double room = hasRival ? positions[rival] - positions[i] - gap : infinity;
        FlagPlace& place = places[i];
        if (widths[i].full <= room)
            place = {0, FlagDetail::full, widths[i].full};
        else if (widths[i].brief <= room)
            place = {0, FlagDetail::brief, widths[i].brief};
        else
            continue;
        place.lane = static_cast<int>(freeLane - laneEnds.begin());
        *freeLane = positions[i] + place.width;
    }
    return places;
}

}
