#include "ui/timeline/FlagLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace pointloom {

namespace {

constexpr double gap = 3;            // points between two flags of a lane
constexpr double closestLabels = 12; // points; flags closer to each other than this make one group of ticks
constexpr double infinity = std::numeric_limits<double>::infinity();

auto isFreeAt(double position) {
    return [position](double end) { return end + gap <= position; };
}

/// The first flag after flag `index` that finds no other lane, when the flags between have taken one each.
std::optional<std::size_t> rivalOf(std::span<const double> positions, std::size_t index,
                                   std::span<const double> laneEnds) {
    for (std::size_t i = index + 1; i < positions.size() && std::isfinite(positions[i]); ++i) {
        const auto others = std::ranges::count_if(laneEnds, isFreeAt(positions[i])) - 1; // without its own
        if (std::cmp_less(others, i - index))
            return i;
    }
    return std::nullopt;
}

class Lanes {
public:
    Lanes(int count, double end)
        : m_ends(static_cast<std::size_t>(std::max(count, 1)), -infinity)
        , m_end(end) {}

    /// The place of flag `index`, whose lane is taken from there on.
    FlagPlace place(std::span<const double> positions, std::span<const FlagWidths> widths,
                    std::size_t index) {
        const double position = positions[index];
        const FlagWidths& width = widths[index];
        const auto lane = laneFreeAt(position);
        if (!lane)
            return {};
        const auto rival = rivalOf(positions, index, m_ends);
        const double beforeEnd = m_end - position;
        const double rivalBegin = rival ? beginOf(positions[*rival], widths[*rival].brief) : infinity;
        const double room = std::min(rivalBegin - gap - position, beforeEnd);
        if (width.full <= room)
            return take(*lane, position, FlagDetail::full, width.full);
        const bool mayLean = !rival || positions[*rival] - position >= closestLabels;
        if (mayLean && width.full > beforeEnd && laneFreeAt(position - width.full))
            return leanLeft(position, FlagDetail::full, width.full);
        const double next = index + 1 < positions.size() ? positions[index + 1] : infinity;
        const bool isCrowded = next - position < closestLabels;
        if (width.brief <= (isCrowded ? room : beforeEnd))
            return take(*lane, position, FlagDetail::brief, width.brief); // what is in its way: a tick
        if (mayLean && width.brief > beforeEnd && laneFreeAt(position - width.brief))
            return leanLeft(position, FlagDetail::brief, width.brief);
        return {};
    }

private:
    using Lane = std::vector<double>::iterator;

    /// Of a text that leans left where it would go beyond the end.
    double beginOf(double position, double width) const {
        return position + width > m_end ? position - width : position;
    }

    std::optional<Lane> laneFreeAt(double position) {
        const auto lane = std::ranges::find_if(m_ends, isFreeAt(position));
        return lane == m_ends.end() ? std::nullopt : std::optional(lane);
    }

    FlagPlace take(Lane lane, double begin, FlagDetail detail, double width) {
        *lane = begin + width;
        return {static_cast<int>(lane - m_ends.begin()), detail, width};
    }

    FlagPlace leanLeft(double position, FlagDetail detail, double width) {
        FlagPlace place = take(*laneFreeAt(position - width), position - width, detail, width);
        place.leansLeft = true;
        return place;
    }

    std::vector<double> m_ends; // of what was placed last, points
    double m_end;
};

}

std::vector<FlagPlace> layOutFlags(std::span<const double> positions, std::span<const FlagWidths> widths,
                                   int lanes, double end) {
    std::vector<FlagPlace> places(positions.size());
    Lanes row(lanes, end);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (std::isfinite(positions[i]))
            places[i] = row.place(positions, widths, i);
    }
    return places;
}

}
