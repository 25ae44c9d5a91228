// What people call a sport in their language.
#pragma once

#include "l10n/Language.h"
#include "model/MatchConfig.h"

namespace pointloom {

QString sportName(SportID sport, Language language);

}
