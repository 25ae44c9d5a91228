// The catalogue of scoreboard templates.
#pragma once

#include "l10n/Language.h"
#include "model/MatchConfig.h"
#include "json/RawValues.h"

#include <QString>
#include <vector>

namespace pointloom {

POINTLOOM_NAMED_ENUM(TemplateID, classic, dark, broadcast, minimal, gradient, retro, stacked, rolandgarros,
                     wimbledon, nightsession, volleyArena, volleyCourt, volleyNeon, volleyMinimal,
                     badmintonSmash, badmintonGym, badmintonNeon, badmintonMinimal, ttClassic, ttNeon,
                     ttRetro, ttMinimal, squashCourt, squashDark, squashNeon, squashMinimal,
                     pickleballClassic, pickleballNeon, pickleballMinimal, pickleballRetro);

/// The name on the picker's card.
QString displayName(TemplateID id);

/// One line under the name, in the session's language.
L10nKey description(TemplateID id);

/// The sport it is made for; padel has none of its own and uses those of tennis.
SportID sportOf(TemplateID id);

/// The templates that fit a sport, in catalogue order.
std::vector<TemplateID> filteredTemplates(SportID sport);

}
