#include "session/ScoreboardEdits.h"

namespace pointloom {

ScoreboardPlace ScoreboardPlace::of(const AppState& state) {
    return {state.scoreboardPosition, state.scoreboardUserScale};
}

void placeScoreboard(AppState& state, const ScoreboardPlace& place, const QString& name,
                     UndoManager* undoManager) {
    const ScoreboardPlace previous = ScoreboardPlace::of(state);
    state.scoreboardPosition = place.position;
    state.scoreboardUserScale = place.userScale;
    concludePlacing(state, previous, name, undoManager);
}

void concludePlacing(AppState& state, const ScoreboardPlace& previous, const QString& name,
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
    registerEdit(undoManager, QStringLiteral("Edit Initial Score"),
                 [&state, previous, undoManager] { setInitialScore(state, previous, undoManager); });
    state.save();
}

}
