// A scoreboard as a picture of its own, for the editor's preview and the template picker.
#pragma once

#include "render/ScoreboardTemplate.h"

#include <QImage>

namespace pointloom {

/// The scoreboard on a transparent ground, premultiplied, `scale` pixels to a template unit (0..16; more
/// counts as 16). The image is the template's canvas, enlarged to the right and below when the board itself
/// is larger; the board's top left corner is always at (canvasMargin, canvasMargin) x scale. A picture beyond
/// what can be painted (16384 pixels a side, 64 million in all) comes out at a smaller scale. Null when the
/// scale is not above zero. Safe on any thread.
QImage renderScoreboardImage(TemplateID templateID, const SportScoreState& score, const MatchConfig& config,
                             const QImage& logo, double scale);

/// Size of that picture in template units.
QSizeF scoreboardImageSize(const ScoreboardTemplate& scoreboard, std::int64_t numSets,
                           const MatchConfig& config);

}
