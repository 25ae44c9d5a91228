// The catalogue of scoreboard templates.
#pragma once

#include "l10n/Language.h"
#include "model/MatchConfig.h"
#include "json/RawValues.h"

#include <QString>
#include <vector>

namespace pointloom {

// clang-format off
// A row a template: identifier, sport, name on the picker's card, key of its description. The order is the catalogue's.
#define POINTLOOM_TEMPLATES(ROW) \
    ROW(classic, tennis, "Classic", templateClassic) \
    ROW(dark, tennis, "Dark Pro", templateDark) \
    ROW(broadcast, tennis, "Broadcast", templateBroadcast) \
    ROW(minimal, tennis, "Minimal", templateMinimal) \
    ROW(gradient, tennis, "Gradient", templateGradient) \
    ROW(retro, tennis, "Retro", templateRetro) \
    ROW(stacked, tennis, "Stacked", templateStacked) \
    ROW(rolandgarros, tennis, "Roland Garros", templateRolandgarros) \
    ROW(wimbledon, tennis, "Wimbledon", templateWimbledon) \
    ROW(nightsession, tennis, "Night Session", templateNightsession) \
    ROW(volleyArena, volleyball, "Arena", templateVolleyArena) \
    ROW(volleyCourt, volleyball, "Court Side", templateVolleyCourt) \
    ROW(volleyNeon, volleyball, "Neon", templateVolleyNeon) \
    ROW(volleyMinimal, volleyball, "Minimal", templateStreaming) \
    ROW(badmintonSmash, badminton, "Smash", templateBadmintonSmash) \
    ROW(badmintonGym, badminton, "Gymnasium", templateBadmintonGym) \
    ROW(badmintonNeon, badminton, "Neon", templateBadmintonNeon) \
    ROW(badmintonMinimal, badminton, "Minimal", templateStreaming) \
    ROW(ttClassic, tableTennis, "Classic", templateTtClassic) \
    ROW(ttNeon, tableTennis, "Neon", templateTtNeon) \
    ROW(ttRetro, tableTennis, "Retro", templateTtRetro) \
    ROW(ttMinimal, tableTennis, "Minimal", templateStreaming) \
    ROW(squashCourt, squash, "Court", templateSquashCourt) \
    ROW(squashDark, squash, "Dark Pro", templateSquashDark) \
    ROW(squashNeon, squash, "Neon", templateSquashNeon) \
    ROW(squashMinimal, squash, "Minimal", templateStreaming) \
    ROW(pickleballClassic, pickleball, "Classic", templatePickleballClassic) \
    ROW(pickleballNeon, pickleball, "Neon", templatePickleballNeon) \
    ROW(pickleballMinimal, pickleball, "Minimal", templateStreaming) \
    ROW(pickleballRetro, pickleball, "Retro", templatePickleballRetro)

enum class TemplateID {
#define POINTLOOM_ENUMERATOR(id, ...) id,
    POINTLOOM_TEMPLATES(POINTLOOM_ENUMERATOR)
#undef POINTLOOM_ENUMERATOR
};

template <>
struct RawValues<TemplateID> {
    static constexpr auto table = std::to_array<std::pair<TemplateID, std::string_view>>({
#define POINTLOOM_RAW_VALUE(id, ...) {TemplateID::id, #id},
        POINTLOOM_TEMPLATES(POINTLOOM_RAW_VALUE)
#undef POINTLOOM_RAW_VALUE
    });
};
// clang-format on

/// The name on the picker's card.
QString displayName(TemplateID id);

/// One line under the name, in the session's language.
L10nKey description(TemplateID id);

/// The sport it is made for; padel has none of its own and uses those of tennis.
SportID sportOf(TemplateID id);

/// The templates that fit a sport, in catalogue order.
std::vector<TemplateID> filteredTemplates(SportID sport);

}
