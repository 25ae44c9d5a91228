// A marker in words, for the list and its tool tips.
#pragma once

#include "model/Marker.h"
#include "ui/common/UiContext.h"

namespace pointloom::MarkerWords {

/// "40–15"
QString game(const SportScoreState& score);

/// "6–4  2–1", the sets up to the last one that has begun, the loser's tie-break in brackets; empty before
/// the first game.
QString sets(const SportScoreState& score);

/// Time and label, sets, game and serve, each on a line; plain text in markup that shows it as it is.
QString toolTip(const UiContext& context, const Marker& marker);

/// The same in one line, as a screen reader says it.
QString spoken(const UiContext& context, const Marker& marker);

}
