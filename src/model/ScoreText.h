// Scores as text.
#pragma once

#include "model/ScoreState.h"

#include <QStringList>

namespace pointloom {

/// "40–15"
QString gameText(const SportScoreState& score);

/// "6–4", "2–1": the sets up to the last one that has begun, the loser's tie-break in brackets; empty before
/// the first game.
QStringList setTexts(const SportScoreState& score, QChar dash = u'–');

}
