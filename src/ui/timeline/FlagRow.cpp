#include "ui/timeline/FlagRow.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <QFontMetricsF>
#include <utility>

namespace pointloom {

namespace {

constexpr qsizetype mostKnownWidths = 20'000;
constexpr double gap = 3;            // points between two flags of a lane
constexpr double closestLabels = 12; // points; flags that are closer to each other are ticks
constexpr double infinity = std::numeric_limits<double>::infinity();

auto isFreeAt(double position) {
    return [position](double end) { return end + gap <= position; };
}

/// The first flag after flag `index` that finds no other lane when each flag between has taken one.
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
        const double space = std::min(rivalBegin - gap - position, beforeEnd);
        if (width.full <= space)
            return take(*lane, position, FlagDetail::full, width.full);
        const bool mayLean = !rival || positions[*rival] - position >= closestLabels;
        if (mayLean && width.full > beforeEnd && laneFreeAt(position - width.full))
            return leanLeft(position, FlagDetail::full, width.full);
        const double next = index + 1 < positions.size() ? positions[index + 1] : infinity;
        const bool isCrowded = next - position < closestLabels;
        if (width.brief <= (isCrowded ? space : beforeEnd))
            return take(*lane, position, FlagDetail::brief, width.brief); // flags in its way become ticks
        if (mayLean && width.brief > beforeEnd && laneFreeAt(position - width.brief))
            return leanLeft(position, FlagDetail::brief, width.brief);
        return {};
    }

private:
    using Lane = std::vector<double>::iterator;

    /// The left edge of a flag, which leans left where it would go beyond the end.
    double beginOf(double position, double width) const {
        return position + width > m_end ? position - width : position;
    }

    std::optional<Lane> laneFreeAt(double position) {
        const auto lane = std::ranges::find_if(m_ends, isFreeAt(position));
        return lane == m_ends.end() ? std::nullopt : std::optional(lane);
    }

    FlagPlace take(Lane lane, double begin, FlagDetail detail, double width) {
        *lane = begin + width;
        return {static_cast<int>(lane - m_ends.begin()), detail};
    }

    FlagPlace leanLeft(double position, FlagDetail detail, double width) {
        FlagPlace place = take(*laneFreeAt(position - width), position - width, detail, width);
        place.leansLeft = true;
        return place;
    }

    std::vector<double> m_ends; // right edge of the last flag of each lane, points
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

void FlagRow::setMarkers(std::span<const Marker> markers) {
    // Most lists differ from the one before by one marker: the others keep their flags.
    std::vector<Flag> before = std::exchange(m_flags, {});
    std::size_t next = 0; // in `before`
    const auto isAt = [&](std::size_t index, const Marker& marker) {
        return index < before.size() && before[index].id == marker.id;
    };
    m_flags.reserve(markers.size());
    for (const Marker& marker : markers) {
        if (!isAt(next, marker) && isAt(next + 1, marker))
            ++next;
        const bool wasThere = isAt(next, marker);
        if (wasThere && before[next].score == marker.score)
            m_flags.push_back(std::move(before[next]));
        else
            m_flags.push_back(makeFlag(marker));
        m_flags.back().time = marker.startTime;
        next += wasThere ? 1 : 0;
    }
}

Flag FlagRow::makeFlag(const Marker& marker) {
    Flag flag{.id = marker.id,
              .time = marker.startTime,
              .score = marker.score,
              .words = shortScore(marker.score),
              .servingSide = servingSide(marker.score)};
    measure(flag);
    return flag;
}

void FlagRow::setFont(const QFont& font) {
    m_font = font;
    m_textWidths.clear();
    for (Flag& flag : m_flags)
        measure(flag);
}

void FlagRow::measure(Flag& flag) {
    flag.widths = {textWidth(flag.words.brief), textWidth(flag.words.full)};
}

double FlagRow::textWidth(const QString& text) {
    if (const auto known = m_textWidths.constFind(text); known != m_textWidths.constEnd())
        return *known;
    if (m_textWidths.size() >= mostKnownWidths)
        m_textWidths.clear();
    const double width = std::ceil(QFontMetricsF(m_font).horizontalAdvance(text)) + 2 * padding + ballWidth;
    m_textWidths.insert(text, width);
    return width;
}

void FlagRow::arrange(const TimeScale& scale, int lanes) {
    std::vector<double> positions;
    std::vector<FlagWidths> widths;
    positions.reserve(m_flags.size());
    widths.reserve(m_flags.size());
    for (const Flag& flag : m_flags) {
        positions.push_back(flag.time * scale.pointsPerSecond());
        widths.push_back(flag.widths);
    }
    const auto places =
        layOutFlags(positions, widths, lanes, scale.duration() * scale.pointsPerSecond() + TimeScale::margin);
    for (std::size_t i = 0; i < places.size(); ++i)
        m_flags[i].place = places[i];
}

const Flag* FlagRow::find(const QUuid& id) const {
    const auto found = std::ranges::find(m_flags, id, &Flag::id);
    return found == m_flags.end() ? nullptr : &*found;
}

std::span<const Flag> FlagRow::between(const TimeScale& scale, double from, double to) const {
    constexpr double widestFlag = 400; // points
    // A time that is not a number is at the end of the list and compares as beyond.
    const auto isBefore = [](double limit) {
        return [limit](const Flag& flag) { return flag.time < limit; };
    };
    const auto first = std::ranges::partition_point(m_flags, isBefore(scale.time(from - widestFlag)));
    const auto last = std::ranges::partition_point(m_flags, isBefore(scale.time(to + widestFlag)));
    return {first, std::max(first, last)};
}

}
