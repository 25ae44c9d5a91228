#include "render/TemplateID.h"

#include <algorithm>

namespace pointloom {

namespace {

using namespace Qt::StringLiterals;

struct CatalogueEntry {
    TemplateID id;
    QStringView displayName;
    QStringView description;
    SportID sport;
};

constexpr auto catalogue = std::to_array<CatalogueEntry>({
    // clang-format off
    {TemplateID::classic, u"Classic", u"Dark navy, clay-orange — Roland Garros feel", SportID::tennis},
    {TemplateID::dark, u"Dark Pro", u"Pure black, gold game — ATP/WTA broadcast", SportID::tennis},
    {TemplateID::broadcast, u"Broadcast", u"Blue/red split band — Eurosport style", SportID::tennis},
    {TemplateID::minimal, u"Minimal", u"Semi-transparent black — streaming/social", SportID::tennis},
    {TemplateID::gradient, u"Gradient", u"Blue→purple frosted glass — modern/esports", SportID::tennis},
    {TemplateID::retro, u"Retro", u"Dark green, gold border — Wimbledon vintage", SportID::tennis},
    {TemplateID::stacked, u"Stacked", u"Vertical card layout — modern ESPN style", SportID::tennis},
    {TemplateID::rolandgarros, u"Roland Garros", u"Dark clay, terracotta — official Babolat style", SportID::tennis},
    {TemplateID::wimbledon, u"Wimbledon", u"Dark green, purple accent — Centre Court", SportID::tennis},
    {TemplateID::nightsession, u"Night Session", u"Blue glassmorphism — stadium night feel", SportID::tennis},
    {TemplateID::volleyArena, u"Arena", u"Blue/yellow arena — FIVB broadcast style", SportID::volleyball},
    {TemplateID::volleyCourt, u"Court Side", u"Wood court — indoor gymnasium feel", SportID::volleyball},
    {TemplateID::volleyNeon, u"Neon", u"Dark bg, neon cyan — modern social", SportID::volleyball},
    {TemplateID::volleyMinimal, u"Minimal", u"Semi-transparent — streaming overlay", SportID::volleyball},
    {TemplateID::badmintonSmash, u"Smash", u"Dark blue/red — BWF broadcast style", SportID::badminton},
    {TemplateID::badmintonGym, u"Gymnasium", u"Green/white — indoor gymnasium", SportID::badminton},
    {TemplateID::badmintonNeon, u"Neon", u"Dark purple, neon lime — modern", SportID::badminton},
    {TemplateID::badmintonMinimal, u"Minimal", u"Semi-transparent — streaming overlay", SportID::badminton},
    {TemplateID::ttClassic, u"Classic", u"ITTF blue/white — official style", SportID::tableTennis},
    {TemplateID::ttNeon, u"Neon", u"Dark, neon orange — ping-pong ball", SportID::tableTennis},
    {TemplateID::ttRetro, u"Retro", u"Red/black — retro arcade feel", SportID::tableTennis},
    {TemplateID::ttMinimal, u"Minimal", u"Semi-transparent — streaming overlay", SportID::tableTennis},
    {TemplateID::squashCourt, u"Court", u"Black/yellow — PSA broadcast style", SportID::squash},
    {TemplateID::squashDark, u"Dark Pro", u"Charcoal/gold — dark pro", SportID::squash},
    {TemplateID::squashNeon, u"Neon", u"Dark, neon lime — modern", SportID::squash},
    {TemplateID::squashMinimal, u"Minimal", u"Semi-transparent — streaming overlay", SportID::squash},
    {TemplateID::pickleballClassic, u"Classic", u"USA blue/gold — official style", SportID::pickleball},
    {TemplateID::pickleballNeon, u"Neon", u"Dark, neon teal — modern social", SportID::pickleball},
    {TemplateID::pickleballMinimal, u"Minimal", u"Semi-transparent — streaming overlay", SportID::pickleball},
    {TemplateID::pickleballRetro, u"Retro", u"Dark, retro orange — vintage feel", SportID::pickleball},
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

QString description(TemplateID id) {
    return entryOf(id).description.toString();
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
