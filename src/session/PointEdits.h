// Edits of a match that is counted point by point. Each is one step to undo. Those of points recount the
// markers that follow, and set `AppState::recountStoppedAt` to the first one that kept its score because it
// was entered by hand.
#pragma once

#include "session/AppState.h"

namespace pointloom::PointEdits {

/// The session's match as it is counted. Empty when its scores are entered by hand, without a match
/// configuration, and when a word of its rules is unknown.
std::optional<CountedMatch> countedMatch(const AppState& state);

enum class Result {
    done,
    matchIsOver, // nothing was done
    notCounted,  // nothing was done: no counted match, or a score that cannot be counted on from
};

/// Adds a marker at `time` (seconds) with the score that the point leads to, and selects it.
[[nodiscard]] Result addPoint(AppState& state, double time, Side winner, UndoStack* undo);

/// Makes the marker a point of `winner` and selects it. A score that was entered by hand is no point: the
/// point is counted on top of it.
[[nodiscard]] Result changeWinner(AppState& state, const QUuid& id, Side winner, UndoStack* undo);

/// `AppState::removeMarker`; the markers after it are counted without it.
void removeMarker(AppState& state, const QUuid& id, UndoStack* undo);

/// `AppState::updateMarkerTime`; points between which the marker moves are counted in their new order.
void moveMarker(AppState& state, const QUuid& id, double time, UndoStack* undo);

/// Stores a score that was typed in, of a marker or, without one, the initial score. No other marker is
/// touched; `AppState::typedScore` is set, so that the user can be asked.
void typeScore(AppState& state, const std::optional<QUuid>& marker,
               const std::optional<SportScoreState>& score, UndoStack* undo);

/// The markers as they become when `AppState::typedScore` is carried on through those after it; empty when
/// none would change.
std::optional<Recount> carriedOn(const AppState& state);

/// Stores them.
void carryOn(AppState& state, UndoStack* undo);

}
