// Context menus of the timeline.
#pragma once

#include "ui/common/CommandMenu.h"
#include "ui/timeline/TimelineScene.h"

#include <functional>

namespace pointloom {

/// What can be done with the item at `hit`, which is selected, or at the playhead where there is none. `run`
/// carries out the editor's commands.
void fillTimelineMenu(CommandMenu& menu, const UiContext& context, const TimelineScene& scene,
                      const TimelineHit& hit, const std::function<void(Command)>& run);

}
