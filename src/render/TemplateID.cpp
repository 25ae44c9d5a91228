#include "render/TemplateID.h"

#include "l10n/L10nKey.h"

#include <algorithm>

namespace pointloom {

namespace {

struct CatalogueEntry {
    TemplateID id;
    QStringView displayName;
    L10nKey description;
    SportID sport;
};

constexpr auto catalogue = std::to_array<CatalogueEntry>({
    // clang-format off
    {TemplateID::classic, u"Classic", L10nKey::templateClassic, SportID::tennis},
    {TemplateID::dark, u"Dark Pro", L10nKey::templateDark, SportID::tennis},
    {TemplateID::broadcast, u"Broadcast", L10nKey::templateBroadcast, SportID::tennis},
    {TemplateID::minimal, u"Minimal", L10nKey::templateMinimal, SportID::tennis},
    {TemplateID::gradient, u"Gradient", L10nKey::templateGradient, SportID::tennis},
    {TemplateID::retro, u"Retro", L10nKey::templateRetro, SportID::tennis},
    {TemplateID::stacked, u"Stacked", L10nKey::templateStacked, SportID::tennis},
    {TemplateID::rolandgarros, u"Roland Garros", L10nKey::templateRolandgarros, SportID::tennis},
    {TemplateID::wimbledon, u"Wimbledon", L10nKey::templateWimbledon, SportID::tennis},
    {TemplateID::nightsession, u"Night Session", L10nKey::templateNightsession, SportID::tennis},
    {TemplateID::volleyArena, u"Arena", L10nKey::templateVolleyArena, SportID::volleyball},
    {TemplateID::volleyCourt, u"Court Side", L10nKey::templateVolleyCourt, SportID::volleyball},
    {TemplateID::volleyNeon, u"Neon", L10nKey::templateVolleyNeon, SportID::volleyball},
    {TemplateID::volleyMinimal, u"Minimal", L10nKey::templateStreaming, SportID::volleyball},
    {TemplateID::badmintonSmash, u"Smash", L10nKey::templateBadmintonSmash, SportID::badminton},
    {TemplateID::badmintonGym, u"Gymnasium", L10nKey::templateBadmintonGym, SportID::badminton},
    {TemplateID::badmintonNeon, u"Neon", L10nKey::templateBadmintonNeon, SportID::badminton},
    {TemplateID::badmintonMinimal, u"Minimal", L10nKey::templateStreaming, SportID::badminton},
    {TemplateID::ttClassic, u"Classic", L10nKey::templateTtClassic, SportID::tableTennis},
    {TemplateID::ttNeon, u"Neon", L10nKey::templateTtNeon, SportID::tableTennis},
    {TemplateID::ttRetro, u"Retro", L10nKey::templateTtRetro, SportID::tableTennis},
    {TemplateID::ttMinimal, u"Minimal", L10nKey::templateStreaming, SportID::tableTennis},
    {TemplateID::squashCourt, u"Court", L10nKey::templateSquashCourt, SportID::squash},
    {TemplateID::squashDark, u"Dark Pro", L10nKey::templateSquashDark, SportID::squash},
    {TemplateID::squashNeon, u"Neon", L10nKey::templateSquashNeon, SportID::squash},
    {TemplateID::squashMinimal, u"Minimal", L10nKey::templateStreaming, SportID::squash},
    {TemplateID::pickleballClassic, u"Classic", L10nKey::templatePickleballClassic, SportID::pickleball},
    {TemplateID::pickleballNeon, u"Neon", L10nKey::templatePickleballNeon, SportID::pickleball},
    {TemplateID::pickleballMinimal, u"Minimal", L10nKey::templateStreaming, SportID::pickleball},
    {TemplateID::pickleballRetro, u"Retro", L10nKey::templatePickleballRetro, SportID::pickleball},
    // clang-format on
});

static_assert(catalogue.size() == RawValues<TemplateID>::table.size());
static_assert(std::ranges::equal(catalogue, RawValues<TemplateID>::table, {}, &CatalogueEntry::id,
                                 [](const auto& row) { return row.first; }),
              "the catalogue keeps the order of the enumeration");

const CatalogueEntry& entryOf(TemplateID id) {
    return catalogue[static_cast<std::size_t>(id)];
}

}

QString displayName(TemplateID id) {
    return entryOf(id).displayName.toString();
}

L10nKey description(TemplateID id) {
    return entryOf(id).description;
}

SportID sportOf(TemplateID id) {
    return entryOf(id).sport;
}

std::vector<TemplateID> filteredTemplates(SportID sport) {
    std::vector<TemplateID> fitting;
    for (const CatalogueEntry& entry : catalogue) {
        const bool servesTennisFamily = entry.sport == SportID::tennis && usesTennisScoring(sport);
        if (servesTennisFamily || entry.sport == sport)
            fitting.push_back(entry.id);
    }
    return fitting;
}

}
