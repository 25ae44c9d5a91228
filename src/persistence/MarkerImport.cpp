#include "persistence/MarkerImport.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"
#include "session/UndoStack.h"

#include <algorithm>

namespace pointloom {

namespace {

MatchStart startOf(const AppState& state) {
    MatchConfig match;
    match.sport = state.selectedSport;
    match.numberOfSets = defaultNumberOfSets(match.sport);
    match = state.matchConfig.value().value_or(match);
    try {
        return MatchStart::of(match, state.rules.value(), state.initialScore);
    } catch (const FormatError&) {
        return MatchStart::of(match, {}, state.initialScore); // words of a newer version, or of another sport
    }
}

std::vector<qint64> linesAfter(double end, const std::vector<MarkerOfLine>& markers) {
    std::vector<qint64> lines;
    for (const auto& [marker, line] : markers) {
        if (end > 0 && marker.startTime > end)
            lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

std::array<QString, 2> otherNames(const std::array<QString, 2>& teams, const AppState& state) {
    const auto& config = state.matchConfig.value();
    const bool areKnown = !teams[0].isEmpty() && !teams[1].isEmpty();
    if (!config || !areKnown || teams == std::array{config->team1.player1, config->team2.player1})
        return {};
    return teams;
}

}

ImportOutcome importMarkers(const QString& path, AppState& state, UndoStack* undoManager,
                            const CSVParser::ErrorReport& reportError) {
    MarkerFile file;
    try {
        file = MarkerFile::read(path, startOf(state));
    } catch (const MarkerFileError& error) {
        return {.message = format(state.t(L10nKey::couldNotReadFile), error.in(state.language))};
    } catch (const DocumentError& error) {
        return {.message = format(state.t(L10nKey::couldNotReadFile), QString::fromUtf8(error.what()))};
    }
    ImportOutcome outcome;
    for (const auto& [reason, lines] : byReason(file.leftOut))
        outcome.details += format(state.t(L10nKey::importLeftOut), lines, state.t(reason));
    if (file.markers.empty()) {
        if (file.lineCount > 0 && reportError)
            reportError({file.lineCount});
        outcome.message = state.t(L10nKey::noValidMarkersInCSV);
        return outcome;
    }
    if (const auto late = linesAfter(state.videoDuration, file.markers); !late.empty())
        outcome.afterEnd = format(state.t(L10nKey::importAfterEnd), joinLines(late));
    if (file.kind != MarkerFile::Kind::table) {
        outcome.firstPoint = file.firstPoint;
        outcome.teams = otherNames(file.teams, state);
    }
    if (!outcome.details.isEmpty() || !outcome.afterEnd.isEmpty() || !outcome.firstPoint.isNull())
        outcome.message = format(state.t(L10nKey::importDone), static_cast<qint64>(file.markers.size()));
    state.replaceMarkers(file.markersAlone(), file.markers.front().marker.id, undoManager);
    return outcome;
}

void shiftMarkers(const QUuid& first, double time, AppState& state, UndoStack* undoManager) {
    std::vector<Marker> markers = state.markers;
    const auto found = std::ranges::find(markers, first, &Marker::id);
    if (found == markers.end() || found->startTime == time)
        return;
    const double shift = time - found->startTime;
    for (Marker& marker : markers)
        marker.startTime += shift;
    state.replaceMarkers(std::move(markers), state.selectedMarkerID, L10nKey::undoMoveMarkers, undoManager);
}

}
