// The catalogue of scoreboard templates.
#pragma once

#include "l10n/Language.h"
#include "model/MatchConfig.h"
#include "json/JsonFields.h"

#include <QString>
#include <vector>

namespace pointloom {

// clang-format off
// A row a template: identifier, sport, name on the picker's card and key of the description under it. The order is
// the catalogue's.
#define POINTLOOM_TEMPLATES(ROW) \
    ROW(classic, tennis, "Classic", L10nKey::templateClassic) \
    ROW(dark, tennis, "Dark Pro", L10nKey::templateDark) \
    ROW(broadcast, tennis, "Broadcast", L10nKey::templateBroadcast) \
    ROW(minimal, tennis, "Minimal", L10nKey::templateMinimal) \
    ROW(gradient, tennis, "Gradient", L10nKey::templateGradient) \
    ROW(retro, tennis, "Retro", L10nKey::templateRetro) \
    ROW(stacked, tennis, "Stacked", L10nKey::templateStacked) \
    ROW(rolandgarros, tennis, "Roland Garros", L10nKey::templateRolandgarros) \
    ROW(wimbledon, tennis, "Wimbledon", L10nKey::templateWimbledon) \
    ROW(nightsession, tennis, "Night Session", L10nKey::templateNightsession) \
    ROW(volleyArena, volleyball, "Arena", L10nKey::templateVolleyArena) \
    ROW(volleyCourt, volleyball, "Court Side", L10nKey::templateVolleyCourt) \
    ROW(volleyNeon, volleyball, "Neon", L10nKey::templateVolleyNeon) \
    ROW(volleyMinimal, volleyball, "Minimal", L10nKey::templateStreaming) \
    ROW(badmintonSmash, badminton, "Smash", L10nKey::templateBadmintonSmash) \
    ROW(badmintonGym, badminton, "Gymnasium", L10nKey::templateBadmintonGym) \
    ROW(badmintonNeon, badminton, "Neon", L10nKey::templateBadmintonNeon) \
    ROW(badmintonMinimal, badminton, "Minimal", L10nKey::templateStreaming) \
    ROW(ttClassic, tableTennis, "Classic", L10nKey::templateTtClassic) \
    ROW(ttNeon, tableTennis, "Neon", L10nKey::templateTtNeon) \
    ROW(ttRetro, tableTennis, "Retro", L10nKey::templateTtRetro) \
    ROW(ttMinimal, tableTennis, "Minimal", L10nKey::templateStreaming) \
    ROW(squashCourt, squash, "Court", L10nKey::templateSquashCourt) \
    ROW(squashDark, squash, "Dark Pro", L10nKey::templateSquashDark) \
    ROW(squashNeon, squash, "Neon", L10nKey::templateSquashNeon) \
    ROW(squashMinimal, squash, "Minimal", L10nKey::templateStreaming) \
    ROW(pickleballClassic, pickleball, "Classic", L10nKey::templatePickleballClassic) \
    ROW(pickleballNeon, pickleball, "Neon", L10nKey::templatePickleballNeon) \
    ROW(pickleballMinimal, pickleball, "Minimal", L10nKey::templateStreaming) \
    ROW(pickleballRetro, pickleball, "Retro", L10nKey::templatePickleballRetro)

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

/// True when boards can be made from it: not from `stacked`, which has a drawing of its own.
constexpr bool canBecomeBoard(TemplateID id) {
    return id != TemplateID::stacked;
}

/// The templates that fit a sport, in catalogue order.
std::vector<TemplateID> filteredTemplates(SportID sport);

}
