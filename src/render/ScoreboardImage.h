// A scoreboard as an image of its own, for the editor's preview and the template picker.
#pragma once

#include "render/ScoreboardTemplate.h"

#include <QImage>

namespace pointloom {

/// The scoreboard on a transparent background, premultiplied, `scale` pixels per template unit (0..16; more
/// counts as 16). The image is the template's canvas, enlarged to the right and below when the scoreboard
/// itself is larger; the scoreboard's top left corner is always at (canvasMargin, canvasMargin) x scale. An
/// image beyond 16384 pixels a side or 64 million in all is drawn at a smaller scale. Null when the scale is
/// not above zero. Safe on any thread.
QImage renderScoreboardImage(TemplateID templateID, const SportScoreState& score, const MatchConfig& config,
                             const QImage& logo, double scale);

/// Size of that image in template units.
QSizeF scoreboardImageSize(const ScoreboardTemplate& scoreboard, std::int64_t numSets,
                           const MatchConfig& config);

}
