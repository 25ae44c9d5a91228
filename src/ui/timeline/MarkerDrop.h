// Markers that meet at one frame: only one of them would ever be shown.
#pragma once

#include "ui/common/UiContext.h"

#include <span>

namespace pointloom {

struct ClipFrames {
    double frame = 0;    // seconds that a frame lasts, nominal
    double duration = 0; // seconds
};

/// The marker less than half a frame from `time`, other than `moved`; null when there is none.
const Marker* markerAtFrame(std::span<const Marker> markers, const QUuid& moved, double time,
                            const ClipFrames& clip);

/// The time of the nearest free frame before or after `other`, on its other side where the clip ends first.
double frameBeside(std::span<const Marker> markers, const QUuid& moved, const Marker& other, bool isBefore,
                   const ClipFrames& clip);

/// Moves a marker, as one step to undo. Where another one is, a menu at the pointer asks which of them to
/// keep; false when the user closes it.
bool dropMarker(const UiContext& context, const QUuid& id, double time, const ClipFrames& clip);

}
