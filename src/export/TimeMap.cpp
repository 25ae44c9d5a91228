#include "export/TimeMap.h"

#include <algorithm>

namespace pointloom {

namespace {

std::vector<TimeSpan> aroundMarkers(const TimeSpan& range, std::span<const Marker> markers,
                                    const RallyMargins& rallies) {
    std::vector<TimeSpan> parts;
    for (const Marker& marker : markers) {
        const TimeSpan part{std::max(range.start, marker.startTime - rallies.before),
                            std::min(range.end, marker.startTime + rallies.after)};
        if (part.start < part.end)
            parts.push_back(part);
    }
    std::ranges::sort(parts, {}, &TimeSpan::start);
    std::vector<TimeSpan> joined;
    for (const TimeSpan& part : parts) {
        if (!joined.empty() && part.start <= joined.back().end)
            joined.back().end = std::max(joined.back().end, part.end);
        else
            joined.push_back(part);
    }
    return joined;
}

std::vector<TimeSpan> without(const std::vector<TimeSpan>& parts, const TimeSpan& hole) {
    std::vector<TimeSpan> left;
    for (const TimeSpan& part : parts) {
        for (const TimeSpan& rest : {TimeSpan{part.start, std::min(part.end, hole.start)},
                                     TimeSpan{std::max(part.start, hole.end), part.end}}) {
            if (rest.start < rest.end)
                left.push_back(rest);
        }
    }
    return left;
}

}

std::vector<TimeSpan> keptParts(const TimeSpan& range, std::span<const Marker> markers,
                                const std::optional<RallyMargins>& rallies,
                                std::span<const TimeSpan> leftOut) {
    std::vector<TimeSpan> parts =
        rallies ? aroundMarkers(range, markers, *rallies) : std::vector<TimeSpan>{range};
    for (const TimeSpan& hole : leftOut) {
        if (hole.start < hole.end)
            parts = without(parts, hole);
    }
    return parts;
}

double TimeMap::length() const {
    double length = 0;
    for (const TimeSpan& part : m_parts)
        length += part.end - part.start;
    return length;
}

double TimeMap::newTime(double sourceTime) const {
    double before = 0;
    for (const TimeSpan& part : m_parts) {
        if (sourceTime < part.end)
            return before + std::max(0.0, sourceTime - part.start);
        before += part.end - part.start;
    }
    return before;
}

double TimeMap::sourceTime(double newTime) const {
    for (const TimeSpan& part : m_parts) {
        const double length = part.end - part.start;
        if (newTime < length)
            return part.start + newTime;
        newTime -= length;
    }
    return m_parts.back().end;
}

}
