#include "ui/timeline/FlagLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pointloom {

namespace {

constexpr double gap = 3;            // points between two flags of a lane
constexpr double closestLabels = 12; // points; flags closer to each other than this make one group of ticks
constexpr double infinity = std::numeric_limits<double>::infinity();

auto isFreeAt(double position) {
    return [position](double end) { return end + gap <= position; };
}

/// Where the first flag after flag `index` stands that finds no other lane, when the flags between have taken
/// one each.
double rivalOf(std::span<const double> positions, std::size_t index, std::span<const double> laneEnds) {
    for (std::size_t i = index + 1; i < positions.size() && std::isfinite(positions[i]); ++i) {
        const auto others = std::ranges::count_if(laneEnds, isFreeAt(positions[i])) - 1; // without its own
        if (std::cmp_less(others, i - index))
            return positions[i];
    }
    return infinity;
}

}

std::vector<FlagPlace> layOutFlags(std::span<const double> positions, std::span<const FlagWidths> widths,
                                   int lanes, double end) {
    std::vector<FlagPlace> places(positions.size());
    std::vector<double> laneEnds(static_cast<std::size_t>(std::max(lanes, 1)), -infinity);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (!std::isfinite(positions[i]))
            continue;
        const auto freeLane = std::ranges::find_if(laneEnds, isFreeAt(positions[i]));
        if (freeLane == laneEnds.end())
            continue;
        const double room = std::min(rivalOf(positions, i, laneEnds) - gap, end) - positions[i];
        const double next = i + 1 < positions.size() ? positions[i + 1] : infinity;
        const bool isCrowded = next - positions[i] < closestLabels;
        FlagPlace& place = places[i];
        if (widths[i].full <= room)
            place = {0, FlagDetail::full, widths[i].full};
        else if (widths[i].brief <= (isCrowded ? room : end - positions[i]))
            place = {0, FlagDetail::brief, widths[i].brief}; // the one in its way becomes a tick
        else
            continue;
        place.lane = static_cast<int>(freeLane - laneEnds.begin());
        *freeLane = positions[i] + place.width;
    }
    return places;
}

}
