// The catalogue of scoreboard templates.
#pragma once

#include "model/MatchConfig.h"
#include "json/RawValues.h"

#include <QString>
#include <vector>

namespace pointloom {

// clang-format off
// A row a template: identifier, sport, name and description on the picker's card. The order is the catalogue's.
#define POINTLOOM_TEMPLATES(ROW) \
    ROW(classic, tennis, "Classic", "Dark navy, clay-orange — Roland Garros feel") \
    ROW(dark, tennis, "Dark Pro", "Pure black, gold game — ATP/WTA broadcast") \
    ROW(broadcast, tennis, "Broadcast", "Blue/red split band — Eurosport style") \
    ROW(minimal, tennis, "Minimal", "Semi-transparent black — streaming/social") \
    ROW(gradient, tennis, "Gradient", "Blue→purple frosted glass — modern/esports") \
    ROW(retro, tennis, "Retro", "Dark green, gold border — Wimbledon vintage") \
    ROW(stacked, tennis, "Stacked", "Vertical card layout — modern ESPN style") \
    ROW(rolandgarros, tennis, "Roland Garros", "Dark clay, terracotta — official Babolat style") \
    ROW(wimbledon, tennis, "Wimbledon", "Dark green, purple accent — Centre Court") \
    ROW(nightsession, tennis, "Night Session", "Blue glassmorphism — stadium night feel") \
    ROW(volleyArena, volleyball, "Arena", "Blue/yellow arena — FIVB broadcast style") \
    ROW(volleyCourt, volleyball, "Court Side", "Wood court — indoor gymnasium feel") \
    ROW(volleyNeon, volleyball, "Neon", "Dark bg, neon cyan — modern social") \
    ROW(volleyMinimal, volleyball, "Minimal", "Semi-transparent — streaming overlay") \
    ROW(badmintonSmash, badminton, "Smash", "Dark blue/red — BWF broadcast style") \
    ROW(badmintonGym, badminton, "Gymnasium", "Green/white — indoor gymnasium") \
    ROW(badmintonNeon, badminton, "Neon", "Dark purple, neon lime — modern") \
    ROW(badmintonMinimal, badminton, "Minimal", "Semi-transparent — streaming overlay") \
    ROW(ttClassic, tableTennis, "Classic", "ITTF blue/white — official style") \
    ROW(ttNeon, tableTennis, "Neon", "Dark, neon orange — ping-pong ball") \
    ROW(ttRetro, tableTennis, "Retro", "Red/black — retro arcade feel") \
    ROW(ttMinimal, tableTennis, "Minimal", "Semi-transparent — streaming overlay") \
    ROW(squashCourt, squash, "Court", "Black/yellow — PSA broadcast style") \
    ROW(squashDark, squash, "Dark Pro", "Charcoal/gold — dark pro") \
    ROW(squashNeon, squash, "Neon", "Dark, neon lime — modern") \
    ROW(squashMinimal, squash, "Minimal", "Semi-transparent — streaming overlay") \
    ROW(pickleballClassic, pickleball, "Classic", "USA blue/gold — official style") \
    ROW(pickleballNeon, pickleball, "Neon", "Dark, neon teal — modern social") \
    ROW(pickleballMinimal, pickleball, "Minimal", "Semi-transparent — streaming overlay") \
    ROW(pickleballRetro, pickleball, "Retro", "Dark, retro orange — vintage feel")

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

/// One line under the name.
QString description(TemplateID id);

/// The sport it is made for; padel has none of its own and uses those of tennis.
SportID sportOf(TemplateID id);

/// The templates that fit a sport, in catalogue order.
std::vector<TemplateID> filteredTemplates(SportID sport);

}
