#include "ui/timeline/TimelineScene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>

namespace pointloom {

namespace {

constexpr double reachOfPole = 5;   // points
constexpr double reachOfEdge = 5;   // points
constexpr double reachOfHandle = 3; // points beyond its box

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
    // The selected flag says all that it can and turns around rather than being cut at the edge.
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

TimelineHit TimelineScene::flagAt(QPointF point) const {
    const auto hit = [](const Flag& flag) { return TimelineHit{TimelineHit::Kind::marker, flag.id}; };
    const auto isHit = [&](const Flag& flag) { return boxOf(flag).contains(point); };
    if (const Flag* selected = selectedMarker ? flags.find(*selectedMarker) : nullptr;
        selected && isHit(*selected))
        return hit(*selected);
    const auto near = flags.between(scale, point.x(), point.x() + reachOfPole);
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
    // The one painted last lies on top; the selected one above all.
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
