// The undoable edits of a session beside those of its markers: where the scoreboard stands, and the score
// before the first marker. Each saves the session; without an undo manager it cannot be taken back.
#pragma once

#include "session/AppState.h"

namespace pointloom {

struct ScoreboardPlace {
    QPointF position;     // centre, fractions of the picture
    double userScale = 1; // 0.3..5

    bool operator==(const ScoreboardPlace&) const = default;

    static ScoreboardPlace of(const AppState& state);
};

/// Moves and resizes the scoreboard. `name` is the edit's, as in "Move Scoreboard".
void placeScoreboard(AppState& state, const ScoreboardPlace& place, L10nKey name, UndoManager* undoManager);

/// The same for a scoreboard that has followed the pointer already, from `previous` to where it stands.
void concludePlacing(AppState& state, const ScoreboardPlace& previous, L10nKey name,
                     UndoManager* undoManager);

/// Absent: the empty score of the match holds before the first marker.
void setInitialScore(AppState& state, const std::optional<SportScoreState>& score, UndoManager* undoManager);

}
