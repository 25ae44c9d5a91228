// Drags on the timeline and what they snap to. The session is changed when a drag ends, by one edit.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/timeline/TimelineScene.h"

#include <memory>
#include <optional>
#include <span>

namespace pointloom {

/// The start of the frame that is on screen at `time`.
double frameStart(double time, double frameRate);

/// The start of the frame nearest to `time`; never negative.
double nearestFrame(double time, double frameRate);

struct Snapped {
    double time = 0;
    bool isOnTarget = false;
};

/// The nearest target within `reach` seconds, else the nearest frame.
Snapped snap(double time, double frameRate, std::span<const double> targets, double reach);

/// Shown during a drag in place of the session's values.
struct DragPreview {
    double moment = 0; // seconds, of what is dragged; the picture shows it
    std::optional<QUuid> marker;
    std::optional<TrimTimes> trim;
    std::optional<CutZone> cut; // a new one, or one with other times
    bool isOnTarget = false;

    bool isEdit() const { return marker || trim || cut; }
};

class Gesture {
public:
    virtual ~Gesture() = default;

    /// `time` is under the pointer and may be outside the clip.
    virtual DragPreview move(double time, bool snaps) = 0;

    /// Edits the session. False when the user decided against it.
    virtual bool commit() { return true; }
};

/// The drag that begins at `hit` with `grabbedAt` under the pointer; null when nothing there can be dragged.
std::unique_ptr<Gesture> makeGesture(const UiContext& context, const TimelineScene& scene,
                                     const TimelineHit& hit, double grabbedAt);

}
