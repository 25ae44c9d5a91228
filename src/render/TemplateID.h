// The catalogue of scoreboard templates.
#pragma once

#include "model/SportID.h"
#include "json/RawValues.h"

#include <QString>
#include <vector>

namespace pointloom {

enum class TemplateID {
    classic,
    dark,
    broadcast,
    minimal,
    gradient,
    retro,
    stacked,
    rolandgarros,
    wimbledon,
    nightsession,
    volleyArena,
    volleyCourt,
    volleyNeon,
    volleyMinimal,
    badmintonSmash,
    badmintonGym,
    badmintonNeon,
    badmintonMinimal,
    ttClassic,
    ttNeon,
    ttRetro,
    ttMinimal,
    squashCourt,
    squashDark,
    squashNeon,
    squashMinimal,
    pickleballClassic,
    pickleballNeon,
    pickleballMinimal,
    pickleballRetro,
};

template <>
struct RawValues<TemplateID> {
    static constexpr auto table = std::to_array<std::pair<TemplateID, std::string_view>>({
        {TemplateID::classic, "classic"},
        {TemplateID::dark, "dark"},
        {TemplateID::broadcast, "broadcast"},
        {TemplateID::minimal, "minimal"},
        {TemplateID::gradient, "gradient"},
        {TemplateID::retro, "retro"},
        {TemplateID::stacked, "stacked"},
        {TemplateID::rolandgarros, "rolandgarros"},
        {TemplateID::wimbledon, "wimbledon"},
        {TemplateID::nightsession, "nightsession"},
        {TemplateID::volleyArena, "volleyArena"},
        {TemplateID::volleyCourt, "volleyCourt"},
        {TemplateID::volleyNeon, "volleyNeon"},
        {TemplateID::volleyMinimal, "volleyMinimal"},
        {TemplateID::badmintonSmash, "badmintonSmash"},
        {TemplateID::badmintonGym, "badmintonGym"},
        {TemplateID::badmintonNeon, "badmintonNeon"},
        {TemplateID::badmintonMinimal, "badmintonMinimal"},
        {TemplateID::ttClassic, "ttClassic"},
        {TemplateID::ttNeon, "ttNeon"},
        {TemplateID::ttRetro, "ttRetro"},
        {TemplateID::ttMinimal, "ttMinimal"},
        {TemplateID::squashCourt, "squashCourt"},
        {TemplateID::squashDark, "squashDark"},
        {TemplateID::squashNeon, "squashNeon"},
        {TemplateID::squashMinimal, "squashMinimal"},
        {TemplateID::pickleballClassic, "pickleballClassic"},
        {TemplateID::pickleballNeon, "pickleballNeon"},
        {TemplateID::pickleballMinimal, "pickleballMinimal"},
        {TemplateID::pickleballRetro, "pickleballRetro"},
    });
};

/// The name on the picker's card.
QString displayName(TemplateID id);

/// One line under the name.
QString description(TemplateID id);

/// The sport it is made for; padel has none of its own and uses those of tennis.
SportID sportOf(TemplateID id);

/// The templates that fit a sport, in catalogue order.
std::vector<TemplateID> filteredTemplates(SportID sport);

}
