// Walks a score's values one entry at a time, for quick entry by keyboard. No rule of any sport is applied:
// games and sets stay as they are, whatever the values say.
#pragma once

#include "model/ScoreState.h"

namespace pointloom {

enum class StepDirection { next, previous };

/// The score with the game value of `team` (1 or 2) moved along its list to the next that reads otherwise: 0,
/// 15, 30, 40 (deuce reads the same), advantage in the tennis family, whole numbers from 0 in the point
/// family. Stays at the ends of the list.
SportScoreState steppedScore(SportScoreState score, int team, StepDirection direction);

/// The score with the other team serving.
SportScoreState withServeSwapped(SportScoreState score);

}
