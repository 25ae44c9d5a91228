#include "session/AppState.h"

#include "l10n/L10nKey.h"
#include "model/ScoringEngine.h"

#include <algorithm>
#include <utility>

namespace pointloom {

namespace {

auto findMarker(std::vector<Marker>& markers, const QUuid& id) {
    return std::ranges::find(markers, id, &Marker::id);
}

}

AppState::AppState(SessionStore* store)
    : m_store(store) {
    m_liveScore.setBinding([this] { return resolveLiveScore(); });
}

std::optional<SportScoreState> AppState::resolveLiveScore() const {
    const auto& config = matchConfig.value();
    if (!config)
        return std::nullopt;
    if (const Marker* marker = ScoringEngine::markerAtTime(markers.value(), currentTime))
        return marker->score;
    if (const auto& initial = initialScore.value())
        return initial;
    return ScoringEngine::getInitialScore(*config);
}

QString AppState::t(L10nKey key) const {
    return pointloom::t(language, key);
}

void AppState::addMarker(Marker marker, UndoManager* undoManager) {
    const QUuid id = marker.id;
    auto edited = markers.value();
    edited.push_back(std::move(marker));
    markers = ScoringEngine::sortedByTime(std::move(edited));
    selectedMarkerID = id;
    registerEdit(undoManager, L10nKey::addMarker, [this, id, undoManager] { removeMarker(id, undoManager); });
    save();
}

void AppState::removeMarker(const QUuid& id, UndoManager* undoManager) {
    auto edited = markers.value();
    const auto found = findMarker(edited, id);
    if (found == edited.end())
        return;
    const Marker removed = std::move(*found);
    edited.erase(found);
    markers = std::move(edited);
    if (selectedMarkerID.value() == removed.id)
        selectedMarkerID = std::nullopt;
    registerEdit(undoManager, L10nKey::undoDeleteMarker,
                 [this, removed, undoManager] { addMarker(removed, undoManager); });
    save();
}

template <class Value>
void AppState::updateMarker(const QUuid& id, Value Marker::*field, const Value& value, L10nKey name,
                            UndoManager* undoManager) {
    auto edited = markers.value();
    const auto found = findMarker(edited, id);
    if (found == edited.end())
        return;
    const QUuid marker = found->id; // `id` may stand in the list that goes
    const Value previous = std::exchange((*found).*field, value);
    markers = ScoringEngine::sortedByTime(std::move(edited));
    registerEdit(undoManager, name, [this, marker, field, previous, name, undoManager] {
        updateMarker(marker, field, previous, name, undoManager);
    });
    save();
}

void AppState::updateMarkerScore(const QUuid& id, const SportScoreState& score, UndoManager* undoManager) {
    updateMarker(id, &Marker::score, score, L10nKey::undoEditScore, undoManager);
}

void AppState::updateMarkerTime(const QUuid& id, double time, UndoManager* undoManager) {
    updateMarker(id, &Marker::startTime, time, L10nKey::undoMoveMarker, undoManager);
}

void AppState::updateMarkerLabel(const QUuid& id, const std::optional<QString>& label,
                                 UndoManager* undoManager) {
    updateMarker(id, &Marker::label, label, L10nKey::undoRenameMarker, undoManager);
}

void AppState::replaceMarkers(std::vector<Marker> replacement, std::optional<QUuid> selection,
                              UndoManager* undoManager) {
    const std::vector<Marker> previous = markers;
    const std::optional<QUuid> previousSelection = selectedMarkerID;
    markers = std::move(replacement);
    selectedMarkerID = selection;
    registerEdit(undoManager, L10nKey::undoImportMarkers, [this, previous, previousSelection, undoManager] {
        replaceMarkers(previous, previousSelection, undoManager);
    });
    save();
}

void AppState::reset() {
    step = Screen::sport;
    selectedTemplate = std::nullopt;
    selectedSport = SportID::tennis;
    matchConfig = std::nullopt;
    videoURL = std::nullopt;
    videoDuration = 0;
    videoWidth = 0;
    videoHeight = 0;
    currentTime = 0;
    isPlaying = false;
    trimStart = 0;
    trimEnd = std::nullopt;
    scoreboardPosition = defaultScoreboardPosition;
    scoreboardUserScale = 1.0;
    scoreboardDrawOrigin = defaultScoreboardDrawOrigin;
    previewAreaSize = QSizeF(0, 0);
    selectedMarkerID = std::nullopt;
    markers = std::vector<Marker>{};
    initialScore = std::nullopt;
    exportProgress = 0;
    exportStatus = ExportStatus{};
    watermarkURL = std::nullopt;
    watermarkCorner = WatermarkCorner::bottomRight;
    currentProjectURL = std::nullopt;
    showLicenseSheet = false;
    if (m_store)
        m_store->clear();
}

void AppState::save() const {
    if (m_store)
        m_store->save(*this);
}

void AppState::retrySave() const {
    if (m_store)
        m_store->retry();
}

}
