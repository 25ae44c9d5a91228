// The timeline as screen readers find it: a group of the playhead, trims, markers, cuts and their ends.
#pragma once

#include "ui/timeline/TimelineScene.h"

namespace pointloom {

class TimelineCanvas;

/// Before the first canvas is asked for; again does nothing.
void makeTimelineAccessible();

// Events for screen readers; while none listens, nothing happens.
void tellItemFocused(TimelineCanvas& canvas, const TimelineHit& item);
void tellItemMoved(TimelineCanvas& canvas, const TimelineHit& item);
void tellItemsChanged(TimelineCanvas& canvas);

}
