#include "session/ScoreboardEdits.h"

#include "l10n/L10nKey.h"

namespace pointloom {

ScoreboardPlace ScoreboardPlace::of(const AppState& state) {
    return {state.scoreboardPosition, state.scoreboardUserScale};
}

void placeScoreboard(AppState& state, const ScoreboardPlace& place, L10nKey name, UndoManager* undoManager) {
    const ScoreboardPlace previous = ScoreboardPlace::of(state);
    state.scoreboardPosition = place.position;
    state.scoreboardUserScale = place.userScale;
    concludePlacing(state, previous, name, undoManager);
}

void concludePlacing(AppState& state, const ScoreboardPlace& previous, L10nKey name,
                     UndoManager* undoManager) {
    if (previous == ScoreboardPlace::of(state))
        return;
    registerEdit(undoManager, name, [&state, previous, name, undoManager] {
        placeScoreboard(state, previous, name, undoManager);
    });
    state.save();
}

void setInitialScore(AppState& state, const std::optional<SportScoreState>& score, UndoManager* undoManager) {
    const std::optional<SportScoreState> previous = state.initialScore;
    if (previous == score)
        return;
    state.initialScore = score;
    registerEdit(undoManager, L10nKey::undoEditInitialScore,
                 [&state, previous, undoManager] { setInitialScore(state, previous, undoManager); });
    state.save();
}

}
