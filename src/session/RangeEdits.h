// The undoable edits of the exported range and of the cut zones.
#pragma once

#include "session/AppState.h"

namespace pointloom {

/// The exported range, seconds from the start of the source.
struct TrimTimes {
    double start = 0;
    std::optional<double> end; // absent: the end of the video

    bool operator==(const TrimTimes&) const = default;
};

TrimTimes trimOf(const AppState& state);

// Each saves the session; without an undo manager it cannot be taken back. `state` outlives the undo manager.
// What changes nothing, as with an unknown identifier, is no edit.

void setTrim(AppState& state, const TrimTimes& trim, UndoManager* undoManager);

/// Selects the cut zone.
void addCut(AppState& state, const CutZone& cut, UndoManager* undoManager);

/// Gives the cut zone with the identifier of `cut` its times.
void updateCut(AppState& state, const CutZone& cut, UndoManager* undoManager);

/// Clears the selection when it was the selected one.
void removeCut(AppState& state, const QUuid& id, UndoManager* undoManager);

}
