#include "ui/timeline/TimelineScene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>

namespace pointloom {

namespace {

constexpr double reachOfPole = 5;   // points
constexpr double reachOfTick = 3;   // points
constexpr double reachOfEdge = 5;   // points
constexpr double reachOfHandle = 3; // points beyond its box
constexpr double rowGap = 2;        // points
constexpr double smallestThumbnails = 36;
constexpr double largestThumbnails = 112;
constexpr double smallestWaveform = 20;
constexpr double comfortableClip = 80; // points for each lane of flags that is added
constexpr double thumbnailShare = 0.6;
constexpr int mostLanes = 3;

double rulerHeight(double lineHeight) {
    return lineHeight + 8;
}

double laneHeight(double lineHeight) {
    return lineHeight + 8;
}

double trimHeight(double lineHeight) {
    return std::max(20.0, lineHeight + 4);
}

// Of ruler, one lane of flags and trims.
double unfoldedHeight(double lineHeight) {
    return rulerHeight(lineHeight) + laneHeight(lineHeight) + trimHeight(lineHeight) + rowGap;
}

}

double smallestTimelineHeight(double lineHeight) {
    return unfoldedHeight(lineHeight) + smallestThumbnails + rowGap;
}

RowLayout layOutRows(double width, double height, double lineHeight, bool hasSound) {
    double rest = std::max(0.0, height - unfoldedHeight(lineHeight));
    RowLayout rows;
    rows.laneHeight = laneHeight(lineHeight);
    while (rows.flagLanes < mostLanes && rest - rows.laneHeight >= comfortableClip * rows.flagLanes) {
        ++rows.flagLanes;
        rest -= rows.laneHeight;
    }

    const bool hasThumbnails = rest >= smallestThumbnails + rowGap;
    const bool hasWaveform = hasSound && rest >= smallestThumbnails + smallestWaveform + 2 * rowGap;
    double thumbnails = hasThumbnails ? rest - rowGap : 0;
    double waveform = 0;
    if (hasWaveform) {
        const double both = rest - 2 * rowGap;
        thumbnails = std::clamp(both * thumbnailShare, smallestThumbnails,
                                std::min(largestThumbnails, both - smallestWaveform));
        waveform = both - thumbnails;
    }

    double top = 0;
    const auto take = [&](double rowHeight, double below) {
        const QRectF row(0, top, width, rowHeight);
        top += rowHeight > 0 ? rowHeight + below : 0;
        return row;
    };
    rows.ruler = take(rulerHeight(lineHeight), 0);
    rows.flags = take(rows.laneHeight * rows.flagLanes, rowGap);
    rows.thumbnails = take(thumbnails, rowGap);
    rows.waveform = take(waveform, rowGap);
    rows.trim = take(trimHeight(lineHeight), 0);
    return rows;
}

QRectF TimelineScene::clipPartOf(const QRectF& row) const {
    const double left = std::max(row.left(), scale.x(0));
    const double right = std::min(row.right(), scale.x(scale.duration()));
    return {left, row.top(), std::max(0.0, right - left), row.height()};
}

double TimelineScene::trimEnd() const {
    return std::min(trim.end.value_or(scale.duration()), std::max(scale.duration(), 0.0));
}

QRectF TimelineScene::trimStartHandle() const {
    return {scale.x(trim.start) - handleWidth, rows.trim.top(), handleWidth, rows.trim.height()};
}

QRectF TimelineScene::trimEndHandle() const {
    return {scale.x(trimEnd()), rows.trim.top(), handleWidth, rows.trim.height()};
}

FlagDetail TimelineScene::detailOf(const Flag& flag) const {
    return flag.id == selectedMarker ? FlagDetail::full : flag.place.detail;
}

QRectF TimelineScene::boxOf(const Flag& flag) const {
    const double top = rows.flags.top() + rows.laneHeight * flag.place.lane + 2;
    const FlagDetail detail = detailOf(flag);
    double width = 0;
    if (detail == FlagDetail::full)
        width = flag.widths.full;
    else if (detail == FlagDetail::brief)
        width = flag.widths.brief;
    const double x = scale.x(flag.time);
    // The selected flag shows its full text and leans left instead of being cut at the edge.
    const bool isCut = flag.id == selectedMarker && x + width > scale.width();
    const bool leansLeft = flag.place.leansLeft || (isCut && x - width >= 0);
    const double left = leansLeft ? x - width : x;
    return {left, top, width, rows.laneHeight - 4};
}

QRectF TimelineScene::boxOf(const CutZone& cut) const {
    const auto [from, to] = std::minmax({scale.x(cut.start), scale.x(cut.end)});
    return {from, rows.trim.top(), to - from, rows.trim.height()};
}

TimelineHit TimelineScene::hitAt(QPointF point) const {
    if (scale.duration() <= 0)
        return {};
    if (rows.flags.contains(point)) {
        if (const TimelineHit flag = flagAt(point); flag.kind != TimelineHit::Kind::nothing)
            return flag;
    }
    if (rows.trim.contains(point))
        return trimLaneAt(point);
    return {TimelineHit::Kind::time, {}};
}

const Seam* TimelineScene::seamAt(QPointF point) const {
    const auto found = std::ranges::find_if(seams, [&](const Seam& seam) {
        return std::abs(scale.x(seam.time) - point.x()) <= reachOfPole && rows.clip().contains(point);
    });
    return found == seams.end() ? nullptr : &*found;
}

TimelineHit TimelineScene::selectedItem() const {
    if (selectedMarker)
        return {TimelineHit::Kind::marker, *selectedMarker};
    if (selectedCut)
        return {TimelineHit::Kind::cut, *selectedCut};
    return {scale.duration() > 0 ? TimelineHit::Kind::time : TimelineHit::Kind::nothing, {}};
}

QPointF TimelineScene::placeOf(const TimelineHit& hit) const {
    QPointF place(scale.x(playhead), rows.flags.bottom());
    if (const Flag* flag = flags.find(hit.id))
        place = boxOf(*flag).bottomLeft();
    else if (const auto cut = std::ranges::find(cuts, hit.id, &CutZone::id); cut != cuts.end())
        place = boxOf(*cut).bottomLeft();
    else if (hit.kind == TimelineHit::Kind::trimStart)
        place = trimStartHandle().bottomLeft();
    else if (hit.kind == TimelineHit::Kind::trimEnd)
        place = trimEndHandle().bottomLeft();
    place.setX(std::clamp(place.x(), 0.0, scale.width()));
    return place;
}

TimelineHit TimelineScene::flagAt(QPointF point) const {
    const auto hit = [](const Flag& flag) { return TimelineHit{TimelineHit::Kind::marker, flag.id}; };
    const auto isHit = [&](const Flag& flag) { return boxOf(flag).contains(point); };
    const auto near = flags.between(scale, point.x(), point.x() + reachOfPole);
    const auto isTickHit = [&](const Flag& flag) {
        return detailOf(flag) == FlagDetail::tick && std::abs(scale.x(flag.time) - point.x()) <= reachOfTick;
    };
    if (point.y() >= rows.flags.bottom() - tickHeight()) {
        if (const auto tick = std::ranges::find_if(near, isTickHit); tick != near.end())
            return hit(*tick);
    }
    if (const Flag* selected = selectedMarker ? flags.find(*selectedMarker) : nullptr;
        selected && isHit(*selected))
        return hit(*selected);
    if (const auto box = std::ranges::find_if(near, isHit); box != near.end())
        return hit(*box);
    const Flag* nearest = nullptr;
    double nearestDistance = reachOfPole;
    for (const Flag& flag : near) {
        const double distance = std::abs(scale.x(flag.time) - point.x());
        if (distance <= nearestDistance) {
            nearest = &flag;
            nearestDistance = distance;
        }
    }
    return nearest ? hit(*nearest) : TimelineHit{};
}

TimelineHit TimelineScene::trimLaneAt(QPointF point) const {
    using Kind = TimelineHit::Kind;
    const auto near = [&](QRectF handle) {
        return handle.adjusted(-reachOfHandle, 0, reachOfHandle, 0).contains(point);
    };
    if (near(trimStartHandle()))
        return {Kind::trimStart, {}};
    if (near(trimEndHandle()))
        return {Kind::trimEnd, {}};
    // The cut that is painted last is on top, the selected one above all.
    std::optional<TimelineHit> found;
    for (const CutZone& cut : cuts) {
        const QRectF box = boxOf(cut);
        if (point.x() < box.left() - reachOfEdge || point.x() > box.right() + reachOfEdge)
            continue;
        const bool startsFirst = cut.start <= cut.end;
        const double inside = std::min(reachOfEdge, box.width() / 4);
        Kind kind = Kind::cut;
        if (point.x() < box.left() + inside)
            kind = startsFirst ? Kind::cutStart : Kind::cutEnd;
        else if (point.x() > box.right() - inside)
            kind = startsFirst ? Kind::cutEnd : Kind::cutStart;
        found = TimelineHit{kind, cut.id};
        if (cut.id == selectedCut)
            break;
    }
    return found.value_or(TimelineHit{Kind::trimLane, {}});
}

}
