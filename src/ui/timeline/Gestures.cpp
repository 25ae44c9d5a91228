#include "ui/timeline/Gestures.h"

#include "ui/timeline/Snapping.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

Snapped held(double time, const SnapRules& rules, bool snaps) {
    Snapped result = snaps ? snap(time, rules.frameRate, rules.targets, rules.reach) : Snapped{time, false};
    const double kept = std::clamp(result.time, 0.0, rules.duration);
    result.isOnTarget = result.isOnTarget && kept == result.time;
    result.time = kept;
    return result;
}

double frameOf(const SnapRules& rules) {
    return std::min(1 / rules.frameRate, rules.duration);
}

class Scrub final : public Gesture {
public:
    Scrub(std::function<void(double, bool)> seek, double playhead, SnapRules rules)
        : m_seek(std::move(seek))
        , m_origin(playhead)
        , m_time(playhead)
        , m_rules(std::move(rules)) {}

    DragPreview move(double time, bool) override {
        const double last = std::max(0.0, m_rules.duration - frameOf(m_rules) / 2);
        m_time = frameStart(std::clamp(time, 0.0, last), m_rules.frameRate);
        m_seek(m_time, false);
        return {};
    }

    void commit() override { m_seek(m_time, true); }
    void cancel() override { m_seek(m_origin, true); }

private:
    std::function<void(double, bool)> m_seek;
    double m_origin;
    double m_time;
    SnapRules m_rules;
};

class MarkerDrag final : public Gesture {
public:
    MarkerDrag(const UiContext& context, const Marker& marker, double grabbedAt, SnapRules rules)
        : m_context(context)
        , m_id(marker.id)
        , m_origin(marker.startTime)
        , m_time(marker.startTime)
        , m_grip(grabbedAt - marker.startTime)
        , m_rules(std::move(rules)) {}

    DragPreview move(double time, bool snaps) override {
        const Snapped place = held(time - m_grip, m_rules, snaps);
        m_time = place.time;
        DragPreview preview;
        preview.marker = std::pair(m_id, m_time);
        preview.bubble = m_time;
        preview.isOnTarget = place.isOnTarget;
        return preview;
    }

    void commit() override {
        if (m_time != m_origin)
            m_context.state.updateMarkerTime(m_id, m_time, &m_context.undo);
    }

private:
    UiContext m_context;
    QUuid m_id;
    double m_origin;
    double m_time;
    double m_grip;
    SnapRules m_rules;
};

class TrimDrag final : public Gesture {
public:
    TrimDrag(const UiContext& context, TrimEdge edge, SnapRules rules)
        : m_context(context)
        , m_edge(edge)
        , m_trim(trimOf(context.state))
        , m_rules(std::move(rules)) {}

    DragPreview move(double time, bool snaps) override {
        const Snapped place = held(time, m_rules, snaps);
        const double frame = frameOf(m_rules);
        DragPreview preview;
        if (m_edge == TrimEdge::start) {
            const double latest = std::min(m_trim.end.value_or(m_rules.duration), m_rules.duration) - frame;
            m_trim.start = std::clamp(place.time, 0.0, std::max(latest, 0.0));
            preview.bubble = m_trim.start;
        } else {
            const double end = std::max(place.time, std::min(m_trim.start + frame, m_rules.duration));
            const bool isWhole = end > m_rules.duration - frame / 2;
            m_trim.end = isWhole ? std::nullopt : std::optional(end);
            preview.bubble = m_trim.end.value_or(m_rules.duration);
        }
        preview.trim = m_trim;
        preview.isOnTarget = place.isOnTarget && *preview.bubble == place.time;
        return preview;
    }

    void commit() override { setTrim(m_context.state, m_trim, &m_context.undo); }

private:
    UiContext m_context;
    TrimEdge m_edge;
    TrimTimes m_trim;
    SnapRules m_rules;
};

class CutDrag final : public Gesture {
public:
    CutDrag(const UiContext& context, const CutZone& cut, CutPart part, double grabbedAt, SnapRules rules)
        : m_context(context)
        , m_origin(cut)
        , m_cut(cut)
        , m_part(part)
        , m_grip(grabbedAt - cut.start)
        , m_rules(std::move(rules)) {}

    DragPreview move(double time, bool snaps) override {
        const double frame = frameOf(m_rules);
        DragPreview preview;
        if (m_part == CutPart::whole) {
            const double length = m_origin.end - m_origin.start;
            const Snapped place = held(time - m_grip, m_rules, snaps);
            m_cut.start = std::clamp(place.time, 0.0, std::max(0.0, m_rules.duration - length));
            m_cut.end = m_cut.start + length;
            preview.bubble = m_cut.start;
            preview.isOnTarget = place.isOnTarget && m_cut.start == place.time;
        } else {
            const Snapped place = held(time, m_rules, snaps);
            double& edge = m_part == CutPart::start ? m_cut.start : m_cut.end;
            edge = m_part == CutPart::start ? std::max(0.0, std::min(place.time, m_cut.end - frame))
                                            : std::max(place.time, m_cut.start + frame);
            preview.bubble = edge;
            preview.isOnTarget = place.isOnTarget && edge == place.time;
        }
        preview.cut = m_cut;
        return preview;
    }

    void commit() override { updateCut(m_context.state, m_cut, &m_context.undo); }

private:
    UiContext m_context;
    CutZone m_origin;
    CutZone m_cut;
    CutPart m_part;
    double m_grip;
    SnapRules m_rules;
};

class NewCut final : public Gesture {
public:
    NewCut(const UiContext& context, double grabbedAt, SnapRules rules)
        : m_context(context)
        , m_rules(std::move(rules))
        , m_anchor(held(grabbedAt, m_rules, true).time)
        , m_cut{QUuid::createUuid(), m_anchor, m_anchor} {}

    DragPreview move(double time, bool snaps) override {
        const Snapped place = held(time, m_rules, snaps);
        m_cut.start = std::min(m_anchor, place.time);
        m_cut.end = std::max(m_anchor, place.time);
        DragPreview preview;
        preview.cut = m_cut;
        preview.bubble = place.time;
        preview.isOnTarget = place.isOnTarget;
        return preview;
    }

    void commit() override {
        if (m_cut.end - m_cut.start >= frameOf(m_rules) / 2)
            addCut(m_context.state, m_cut, &m_context.undo);
    }

private:
    UiContext m_context;
    SnapRules m_rules;
    double m_anchor;
    CutZone m_cut;
};

}

std::unique_ptr<Gesture> makeScrub(std::function<void(double, bool)> seek, double playhead, SnapRules rules) {
    return std::make_unique<Scrub>(std::move(seek), playhead, std::move(rules));
}

std::unique_ptr<Gesture> makeMarkerDrag(const UiContext& context, const Marker& marker, double grabbedAt,
                                        SnapRules rules) {
    return std::make_unique<MarkerDrag>(context, marker, grabbedAt, std::move(rules));
}

std::unique_ptr<Gesture> makeTrimDrag(const UiContext& context, TrimEdge edge, SnapRules rules) {
    return std::make_unique<TrimDrag>(context, edge, std::move(rules));
}

std::unique_ptr<Gesture> makeCutDrag(const UiContext& context, const CutZone& cut, CutPart part,
                                     double grabbedAt, SnapRules rules) {
    return std::make_unique<CutDrag>(context, cut, part, grabbedAt, std::move(rules));
}

std::unique_ptr<Gesture> makeNewCut(const UiContext& context, double grabbedAt, SnapRules rules) {
    return std::make_unique<NewCut>(context, grabbedAt, std::move(rules));
}

}
