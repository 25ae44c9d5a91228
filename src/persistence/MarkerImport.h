// Imports markers from files into the session.
#pragma once

#include "persistence/MarkerFile.h"
#include "session/AppState.h"

namespace pointloom {

class UndoStack;

/// Texts are in the session's language.
struct ImportOutcome {
    QString message{};              // what became of the file; empty when there is nothing to say
    QStringList details{};          // lines that were left out
    QString afterEnd{};             // lines of markers after the end of the video
    QUuid firstPoint{};             // of points whose times may be those of another video; else null
    std::array<QString, 2> teams{}; // names in the file, when they are others than the match's; else empty
};

/// Replaces the markers and selects the first, in one undoable step, and saves the session. On failure
/// nothing changes. `reportError` is called when a table has lines but no marker.
[[nodiscard]] ImportOutcome importMarkers(const QString& path, AppState& state, UndoStack* undoManager,
                                          const CSVParser::ErrorReport& reportError = {});

/// Moves all markers alike, so that this one comes to `time` (seconds). One undoable step.
void shiftMarkers(const QUuid& first, double time, AppState& state, UndoStack* undoManager);

}
