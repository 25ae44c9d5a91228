// What a side is called.
#pragma once

#include "ui/common/UiContext.h"

namespace pointloom {

/// The name of side 1 or 2 as people call it, "Team 1" or "Team 2" while it has none.
QString teamName(const UiContext& context, std::int64_t team);

}
