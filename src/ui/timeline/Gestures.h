// Drags on the timeline and what they snap to. The session is changed when a drag ends, by one edit.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/timeline/TimelineScene.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>

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
    std::optional<std::pair<QUuid, double>> marker; // at another time
    std::optional<TrimTimes> trim;
    std::optional<CutZone> cut;   // a new one, or one with other times
    std::optional<double> bubble; // the time shown in the bubble
    bool isOnTarget = false;
};

class Gesture {
public:
    virtual ~Gesture() = default;

    /// `time` is under the pointer and may be outside the clip.
    virtual DragPreview move(double time, bool snaps) = 0;
    virtual void commit() = 0;
    virtual void cancel() {}
};

/// The drag that begins at `hit` with `grabbedAt` under the pointer; null when nothing there can be dragged.
/// Scrubbing calls `seek(time, exact)`, exact at its end.
std::unique_ptr<Gesture> makeGesture(const UiContext& context, const TimelineScene& scene,
                                     const TimelineHit& hit, double grabbedAt,
                                     std::function<void(double, bool)> seek);

}
