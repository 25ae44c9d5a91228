#include "ui/timeline/TimelineItems.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

using Kind = TimelineHit::Kind;

const CutZone* cutOf(const TimelineScene& scene, const TimelineHit& item) {
    const auto cut = std::ranges::find(scene.cuts, item.id, &CutZone::id);
    return cut == scene.cuts.end() ? nullptr : &*cut;
}

struct TimedItem {
    double time;
    TimelineHit hit;
};

std::vector<TimedItem> timedItems(const TimelineScene& scene) {
    if (scene.scale.duration() <= 0)
        return {};
    std::vector<TimedItem> items{{scene.playhead, {Kind::time, {}}},
                                 {scene.trim.start, {Kind::trimStart, {}}}};
    for (const Flag& flag : scene.flags.flags())
        items.push_back(
            {std::isfinite(flag.time) ? flag.time : scene.scale.duration(), {Kind::marker, flag.id}});
    for (const CutZone& cut : scene.cuts) {
        items.push_back({std::min(cut.start, cut.end), {Kind::cut, cut.id}});
        items.push_back({cut.start, {Kind::cutStart, cut.id}});
        items.push_back({cut.end, {Kind::cutEnd, cut.id}});
    }
    items.push_back({scene.trimEnd(), {Kind::trimEnd, {}}});
    std::ranges::stable_sort(std::next(items.begin()), items.end(), {}, &TimedItem::time);
    return items;
}

}

std::vector<TimelineHit> itemsOf(const TimelineScene& scene) {
    std::vector<TimelineHit> hits;
    std::ranges::transform(timedItems(scene), std::back_inserter(hits), &TimedItem::hit);
    return hits;
}

std::optional<double> timeOf(const TimelineScene& scene, const TimelineHit& item) {
    switch (item.kind) {
    case Kind::time:
        return scene.playhead;
    case Kind::trimStart:
        return scene.trim.start;
    case Kind::trimEnd:
        return scene.trimEnd();
    case Kind::marker:
        if (const Flag* flag = scene.flags.find(item.id))
            return flag->time;
        break;
    case Kind::cut:
        if (const CutZone* cut = cutOf(scene, item))
            return std::min(cut->start, cut->end);
        break;
    case Kind::cutStart:
        if (const CutZone* cut = cutOf(scene, item))
            return cut->start;
        break;
    case Kind::cutEnd:
        if (const CutZone* cut = cutOf(scene, item))
            return cut->end;
        break;
    case Kind::trimLane:
    case Kind::nothing:
        break;
    }
    return std::nullopt;
}

std::optional<TimelineHit> itemBeside(const TimelineScene& scene, const TimelineHit& item,
                                      ItemDirection direction) {
    const std::vector<TimedItem> items = timedItems(scene);
    if (items.empty())
        return std::nullopt;
    const auto first = std::next(items.begin()); // after the playhead
    auto there = std::find_if(first, items.end(), [&](const TimedItem& other) { return other.hit == item; });
    if (there == items.end()) {
        const double playhead = scene.playhead - 0.5 / scene.frameRate;
        there =
            std::find_if(first, items.end(), [&](const TimedItem& other) { return other.time >= playhead; });
    } else if (direction == ItemDirection::after) {
        ++there;
    }
    if (direction == ItemDirection::before)
        return there == first ? std::nullopt : std::optional(std::prev(there)->hit);
    return there == items.end() ? std::nullopt : std::optional(there->hit);
}

QRectF areaOf(const TimelineScene& scene, const TimelineHit& item) {
    const double x = scene.scale.x(timeOf(scene, item).value_or(0));
    constexpr double reach = 5; // points at either side of what has no width
    switch (item.kind) {
    case Kind::trimStart:
        return scene.trimStartHandle();
    case Kind::trimEnd:
        return scene.trimEndHandle();
    case Kind::marker:
        if (const Flag* flag = scene.flags.find(item.id); flag && scene.detailOf(*flag) != FlagDetail::tick)
            return scene.boxOf(*flag);
        return {x - reach, scene.rows.flags.bottom() - scene.tickHeight(), 2 * reach, scene.tickHeight()};
    case Kind::cut:
        if (const CutZone* cut = cutOf(scene, item))
            return scene.boxOf(*cut);
        break;
    case Kind::cutStart:
    case Kind::cutEnd:
        return {x - reach, scene.rows.trim.top(), 2 * reach, scene.rows.trim.height()};
    case Kind::time:
        return {x - reach, scene.rows.ruler.top(), 2 * reach, scene.rows.ruler.height()};
    case Kind::trimLane:
    case Kind::nothing:
        break;
    }
    return {};
}

}
