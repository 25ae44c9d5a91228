#include "render/ScoreboardTemplate.h"

#include "render/ScoreboardLayout.h"

namespace pointloom {

QSizeF ScoreboardTemplate::canvasSize(std::int64_t numSets, const MatchConfig& config) const {
    const ScoreboardLayout layout(38, 28, 46, config);
    return {layout.totalW(numSets) + 2 * canvasMargin, layout.totalH() + 2 * canvasMargin};
}

}
