// What the timeline says of a thing under the pointer, over several lines.
#pragma once

#include "ui/common/UiContext.h"

namespace pointloom {

QString markerToolTip(const UiContext& context, const Marker& marker);
QString cutToolTip(const UiContext& context, const CutZone& cut);
QString trimToolTip(const UiContext& context, L10nKey meaning, double time);

}
