#include "render/ScoreboardTemplate.h"

#include "render/RowTemplate.h"
#include "render/StackedTemplate.h"

namespace pointloom {

QSizeF ScoreboardTemplate::canvasSize(std::int64_t numSets, const MatchConfig& config) const {
    const ScoreboardLayout layout(usualRowH, usualSetW, usualGameW, config);
    return {layout.totalW(numSets) + 2 * canvasMargin, layout.totalH() + 2 * canvasMargin};
}

namespace TemplateRegistry {

namespace {

std::unique_ptr<const ScoreboardTemplate> makeTemplate(TemplateID id) {
    if (id == TemplateID::stacked)
        return std::make_unique<StackedTemplate>();
    return std::make_unique<RowTemplate>(rowTemplateStyle(id));
}

std::vector<std::unique_ptr<const ScoreboardTemplate>> makeAll() {
    std::vector<std::unique_ptr<const ScoreboardTemplate>> templates;
    for (const TemplateID id : allCases<TemplateID>())
        templates.push_back(makeTemplate(id));
    return templates;
}

}

const std::vector<std::unique_ptr<const ScoreboardTemplate>>& all() {
    static const auto templates = makeAll();
    return templates;
}

const ScoreboardTemplate& templateFor(TemplateID id) {
    return *all()[static_cast<std::size_t>(id)];
}

}

}
