#include "ui/timeline/Gestures.h"

#include "ui/timeline/MarkerDrop.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pointloom {

namespace {

constexpr double snapDistance = 7;    // points
constexpr double exactDistance = 1.5; // points; a marker that is closer is dropped on another

// None when all are further than `reach` seconds.
std::optional<double> nearestTarget(double time, std::span<const double> targets, double reach) {
    std::optional<double> nearest;
    for (const double target : targets) {
        const double distance = std::abs(target - time);
        if (distance <= reach && (!nearest || distance < std::abs(*nearest - time)))
            nearest = target;
    }
    return nearest;
}

// Seconds.
double frameOf(const TimelineScene& scene) {
    return std::min(1 / scene.frameRate, scene.scale.duration());
}

class SnappingGesture : public Gesture {
protected:
    SnappingGesture(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit)
        : m_context(context)
        , m_frameRate(scene.frameRate)
        , m_duration(scene.scale.duration())
        , m_frame(frameOf(scene))
        , m_reach(snapDistance / scene.scale.pointsPerSecond())
        , m_targets(targetsOf(scene, hit)) {}

    /// Within the clip.
    Snapped held(double time, bool snaps) const {
        Snapped result = snaps ? snap(time, m_frameRate, m_targets, m_reach) : Snapped{time, false};
        const double kept = std::clamp(result.time, 0.0, m_duration);
        result.isOnTarget = result.isOnTarget && kept == result.time;
        result.time = kept;
        return result;
    }

    UiContext m_context;
    double m_frameRate;
    double m_duration; // seconds
    double m_frame;    // seconds

private:
    static std::vector<double> targetsOf(const TimelineScene& scene, const TimelineHit& hit) {
        using Kind = TimelineHit::Kind;
        std::vector<double> targets{scene.playhead};
        for (const Flag& flag : scene.flags.flags()) {
            if (flag.id != hit.id && std::isfinite(flag.time))
                targets.push_back(flag.time);
        }
        if (hit.kind == Kind::marker)
            return targets;
        for (const CutZone& cut : scene.cuts) {
            if (cut.id != hit.id)
                targets.insert(targets.end(), {cut.start, cut.end});
        }
        if (hit.kind != Kind::trimStart)
            targets.push_back(scene.trim.start);
        if (hit.kind != Kind::trimEnd)
            targets.push_back(scene.trimEnd());
        return targets;
    }

    double m_reach; // seconds
    std::vector<double> m_targets;
};

class Scrub final : public Gesture {
public:
    explicit Scrub(const TimelineScene& scene)
        : m_frameRate(scene.frameRate)
        , m_last(std::max(0.0, scene.scale.duration() - frameOf(scene) / 2)) {}

    DragPreview move(double time, bool) override {
        DragPreview preview;
        preview.moment = frameStart(std::clamp(time, 0.0, m_last), m_frameRate);
        return preview;
    }

private:
    double m_frameRate;
    double m_last; // seconds
};

class MarkerDrag final : public SnappingGesture {
public:
    MarkerDrag(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit, double origin,
               double grabbedAt)
        : SnappingGesture(context, scene, hit)
        , m_frames{m_frame, m_duration}
        , m_id(hit.id)
        , m_origin(origin)
        , m_time(origin)
        , m_grip(grabbedAt - origin)
        , m_exactReach(std::max(exactDistance / scene.scale.pointsPerSecond(), m_frame / 2)) {}

    DragPreview move(double time, bool snaps) override {
        const double wanted = time - m_grip;
        const Snapped place = held(wanted, snaps);
        m_time = place.time;
        const auto& markers = m_context.state.markers.value();
        const Marker* other = markerAtFrame(markers, m_id, m_time, m_frames);
        if (other && snaps && std::abs(wanted - other->startTime) > m_exactReach)
            m_time = frameBeside(markers, m_id, *other, wanted < other->startTime, m_frames);
        DragPreview preview;
        preview.moment = m_time;
        preview.marker = m_id;
        preview.isOnTarget = place.isOnTarget;
        return preview;
    }

    bool commit() override { return m_time == m_origin || dropMarker(m_context, m_id, m_time, m_frames); }

private:
    ClipFrames m_frames;
    QUuid m_id;
    double m_origin;
    double m_time;
    double m_grip;       // seconds from the marker to the pointer
    double m_exactReach; // seconds
};

class TrimDrag final : public SnappingGesture {
public:
    TrimDrag(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit)
        : SnappingGesture(context, scene, hit)
        , m_isStart(hit.kind == TimelineHit::Kind::trimStart)
        , m_trim(context.state.trim()) {}

    DragPreview move(double time, bool snaps) override {
        const Snapped place = held(time, snaps);
        DragPreview preview;
        if (m_isStart) {
            const double latest = std::min(m_trim.end.value_or(m_duration), m_duration) - m_frame;
            m_trim.start = std::clamp(place.time, 0.0, std::max(latest, 0.0));
            preview.moment = m_trim.start;
        } else {
            const double end = std::max(place.time, std::min(m_trim.start + m_frame, m_duration));
            const bool isWhole = end > m_duration - m_frame / 2;
            m_trim.end = isWhole ? std::nullopt : std::optional(end);
            preview.moment = m_trim.end.value_or(m_duration);
        }
        preview.trim = m_trim;
        preview.isOnTarget = place.isOnTarget && preview.moment == place.time;
        return preview;
    }

    bool commit() override {
        m_context.state.setTrim(m_trim, &m_context.undo);
        return true;
    }

private:
    bool m_isStart;
    TrimTimes m_trim;
};

class CutDrag final : public SnappingGesture {
public:
    CutDrag(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit, const CutZone& cut,
            double grabbedAt)
        : SnappingGesture(context, scene, hit)
        , m_part(hit.kind)
        , m_cut(cut)
        , m_length(cut.end - cut.start)
        , m_grip(grabbedAt - cut.start) {}

    DragPreview move(double time, bool snaps) override {
        const bool isWhole = m_part == TimelineHit::Kind::cut;
        const Snapped place = held(isWhole ? time - m_grip : time, snaps);
        DragPreview preview;
        if (isWhole) {
            m_cut.start = std::clamp(place.time, 0.0, std::max(0.0, m_duration - m_length));
            m_cut.end = m_cut.start + m_length;
            preview.moment = m_cut.start;
        } else if (m_part == TimelineHit::Kind::cutStart) {
            m_cut.start = std::max(0.0, std::min(place.time, m_cut.end - m_frame));
            preview.moment = m_cut.start;
        } else {
            m_cut.end = std::max(place.time, m_cut.start + m_frame);
            preview.moment = m_cut.end;
        }
        preview.cut = m_cut;
        preview.isOnTarget = place.isOnTarget && preview.moment == place.time;
        return preview;
    }

    bool commit() override {
        m_context.state.updateCut(m_cut, &m_context.undo);
        return true;
    }

private:
    TimelineHit::Kind m_part;
    CutZone m_cut;
    double m_length; // seconds
    double m_grip;   // seconds from the start of the cut to the pointer
};

class NewCut final : public SnappingGesture {
public:
    NewCut(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit, double grabbedAt)
        : SnappingGesture(context, scene, hit)
        , m_anchor(held(grabbedAt, true).time)
        , m_cut{QUuid::createUuid(), m_anchor, m_anchor} {}

    DragPreview move(double time, bool snaps) override {
        const Snapped place = held(time, snaps);
        m_cut.start = std::min(m_anchor, place.time);
        m_cut.end = std::max(m_anchor, place.time);
        DragPreview preview;
        preview.moment = place.time;
        preview.cut = m_cut;
        preview.isOnTarget = place.isOnTarget;
        return preview;
    }

    bool commit() override {
        const bool isLongEnough = m_cut.end - m_cut.start >= m_frame / 2;
        if (isLongEnough)
            m_context.state.addCut(m_cut, &m_context.undo);
        return isLongEnough;
    }

private:
    double m_anchor; // seconds, where the drag began
    CutZone m_cut;
};

}

double frameStart(double time, double frameRate) {
    constexpr double tolerance = 1e-6; // frames, so that a frame's own time is not in the frame before
    return std::max(0.0, std::floor(time * frameRate + tolerance) / frameRate);
}

double nearestFrame(double time, double frameRate) {
    return std::max(0.0, std::round(time * frameRate) / frameRate);
}

Snapped snap(double time, double frameRate, std::span<const double> targets, double reach) {
    if (const auto target = nearestTarget(time, targets, reach))
        return {*target, true};
    return {nearestFrame(time, frameRate), false};
}

std::unique_ptr<Gesture> makeGesture(const UiContext& context, const TimelineScene& scene,
                                     const TimelineHit& hit, double grabbedAt) {
    using Kind = TimelineHit::Kind;
    switch (hit.kind) {
    case Kind::time:
        return std::make_unique<Scrub>(scene);
    case Kind::marker: {
        const Flag* flag = scene.flags.find(hit.id);
        return flag ? std::make_unique<MarkerDrag>(context, scene, hit, flag->time, grabbedAt) : nullptr;
    }
    case Kind::trimStart:
    case Kind::trimEnd:
        return std::make_unique<TrimDrag>(context, scene, hit);
    case Kind::cut:
    case Kind::cutStart:
    case Kind::cutEnd: {
        const auto cut = std::ranges::find(scene.cuts, hit.id, &CutZone::id);
        return cut == scene.cuts.end() ? nullptr
                                       : std::make_unique<CutDrag>(context, scene, hit, *cut, grabbedAt);
    }
    case Kind::trimLane:
        return std::make_unique<NewCut>(context, scene, hit, grabbedAt);
    case Kind::nothing:
        break;
    }
    return nullptr;
}

}
