#include "persistence/MarkerImport.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"
#include "persistence/DocumentError.h"
#include "session/AppState.h"

namespace pointloom {

std::optional<QString> importMarkers(const QString& path, AppState& state, UndoManager* undoManager,
                                     const CSVParser::ErrorReport& reportError) {
    std::vector<Marker> markers;
    try {
        markers = CSVParser::readMarkersFile(path, reportError);
    } catch (const DocumentError& error) {
        return format(state.t(L10nKey::couldNotReadFile), QString::fromUtf8(error.what()));
    }
    if (markers.empty())
        return state.t(L10nKey::noValidMarkersInCSV);
    const QUuid first = markers.front().id;
    state.replaceMarkers(std::move(markers), first, undoManager);
    return std::nullopt;
}

}
