// The name of a side.
#pragma once

#include "ui/common/UiContext.h"

namespace pointloom {

/// The name that the user gave to the side, "Team 1" or "Team 2" while it has none.
QString teamName(const UiContext& context, Side side);

}
