#include "ui/timeline/FlagRow.h"

#include <algorithm>
#include <cmath>
#include <QFontMetricsF>
#include <utility>

namespace pointloom {

namespace {

constexpr qsizetype mostKnownWidths = 20'000;

}

void FlagRow::setMarkers(std::span<const Marker> markers) {
    // Most lists differ from the one before by one marker: its neighbours keep their words.
    std::vector<Flag> before = std::exchange(m_flags, {});
    std::size_t next = 0; // of those before
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
              .servingSide = servingSide(marker.score),
              .widths = {},
              .place = {}};
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
    // A time that is no number stands at the end of the list and compares as beyond.
    const auto isBefore = [](double limit) {
        return [limit](const Flag& flag) { return flag.time < limit; };
    };
    const auto first = std::ranges::partition_point(m_flags, isBefore(scale.time(from - widestFlag)));
    const auto last = std::ranges::partition_point(m_flags, isBefore(scale.time(to + widestFlag)));
    return {first, std::max(first, last)};
}

}
