// A score in as few characters as people read it in.
#pragma once

#include "model/ScoreState.h"

namespace pointloom {

struct ScoreWords {
    QString full;  // "6-4 2-1 30-15": the sets that have begun, then the game
    QString brief; // the game alone, or the last set when no point has been played in it
};

ScoreWords scoreInWords(const SportScoreState& score);

}
