#include "render/TemplateID.h"

#include "l10n/L10nKey.h"

#include <array>

namespace pointloom {

namespace {

struct CatalogueEntry {
    QStringView displayName;
    L10nKey description;
    SportID sport;
};

constexpr auto catalogue = std::to_array<CatalogueEntry>({
#define POINTLOOM_ENTRY(id, sport, name, text) {u##name, text, SportID::sport},
    POINTLOOM_TEMPLATES(POINTLOOM_ENTRY)
#undef POINTLOOM_ENTRY
});

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
    for (const TemplateID id : allCases<TemplateID>()) {
        const bool servesTennisFamily = sportOf(id) == SportID::tennis && usesTennisScoring(sport);
        if (servesTennisFamily || sportOf(id) == sport)
            fitting.push_back(id);
    }
    return fitting;
}

}
