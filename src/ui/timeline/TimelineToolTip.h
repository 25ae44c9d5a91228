// Tool tips of what is on the timeline.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/timeline/TimelineScene.h"

namespace pointloom {

/// Empty where there is nothing to say.
QString timelineToolTip(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit);

/// What an export makes of the cuts.
QString fateOfCuts(const UiContext& context);

/// "Cut 0:12.00 – 0:16.00".
QString cutRange(const UiContext& context, const CutZone& cut);

/// The range of a cut, and `note` below it.
QString cutToolTip(const UiContext& context, const CutZone& cut, const QString& note);

}
