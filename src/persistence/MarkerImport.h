// Replaces the session's markers by those of a CSV file.
#pragma once

#include "persistence/CSVParser.h"
#include "session/UndoManager.h"

#include <optional>
#include <QString>

namespace pointloom {

class AppState;

/// The first imported marker is selected and the session saved. On failure nothing changes, and the
/// message to show is returned in the session's language. `reportError` is called when the file has lines
/// but no marker.
[[nodiscard]] std::optional<QString> importMarkers(const QString& path, AppState& state,
                                                   UndoManager* undoManager,
                                                   const CSVParser::ErrorReport& reportError = {});

}
