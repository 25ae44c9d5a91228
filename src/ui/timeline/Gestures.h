// Drags on the timeline. Nothing reaches the session before they end.
#pragma once

#include "session/RangeEdits.h"
#include "ui/common/UiContext.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pointloom {

/// What a drag holds on to.
struct SnapRules {
    double frameRate = 30;
    double duration = 0;         // seconds
    std::vector<double> targets; // seconds
    double reach = 0;            // seconds
};

/// What the timeline shows while a drag goes on, in place of what the session holds.
struct DragPreview {
    std::optional<std::pair<QUuid, double>> marker; // at another time
    std::optional<TrimTimes> trim;
    std::optional<CutZone> cut;   // a new one, or one with other times
    std::optional<double> bubble; // the time to tell
    bool isOnTarget = false;
};

class Gesture {
public:
    virtual ~Gesture() = default;

    /// The pointer stands at `time`, which may lie outside of the clip.
    virtual DragPreview move(double time, bool snaps) = 0;
    virtual void commit() = 0;
    virtual void cancel() {}
};

/// Asks for the frame under the pointer: `seek(time, exact)`, exact at the end.
std::unique_ptr<Gesture> makeScrub(std::function<void(double, bool)> seek, double playhead, SnapRules rules);

/// `grabbedAt` is the time under the pointer where the drag began.
std::unique_ptr<Gesture> makeMarkerDrag(const UiContext& context, const Marker& marker, double grabbedAt,
                                        SnapRules rules);

enum class TrimEdge { start, end };
std::unique_ptr<Gesture> makeTrimDrag(const UiContext& context, TrimEdge edge, SnapRules rules);

enum class CutPart { start, end, whole };
std::unique_ptr<Gesture> makeCutDrag(const UiContext& context, const CutZone& cut, CutPart part,
                                     double grabbedAt, SnapRules rules);
std::unique_ptr<Gesture> makeNewCut(const UiContext& context, double grabbedAt, SnapRules rules);

}
