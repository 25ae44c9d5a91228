#include "session/AppState.h"

#include "l10n/L10nKey.h"
#include "model/ScoringEngine.h"
#include "session/UndoStack.h"

#include <algorithm>
#include <utility>

namespace pointloom {

AppState::AppState(SessionStore* store)
    : m_store(store) {
    m_liveScore.setBinding([this] { return resolveLiveScore(); });
    m_keptParts.setBinding([this] { return resolveKeptParts(); });
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

std::optional<media::Recording> AppState::recording() const {
    const auto& url = videoURL.value();
    return url ? std::optional(media::Recording(url->toLocalFile(), videoFiles.value())) : std::nullopt;
}

void AppState::setVideo(const media::Recording& video) {
    if (videoURL.value() == QUrl::fromLocalFile(video.first()) && recording() != video)
        videoURL = std::nullopt; // so that its readers are told
    videoFiles = video.files();
    videoURL = QUrl::fromLocalFile(video.first());
}

TimeSpan AppState::exportedRange() const {
    const double start = trimStart;
    const double duration = videoDuration;
    const double end = trimEnd.value().value_or(duration);
    return {start, std::max(start, duration > 0 ? std::min(end, duration) : end)};
}

std::vector<TimeSpan> AppState::resolveKeptParts() const {
    const TimeSpan range = exportedRange();
    if (range.start == range.end)
        return {range};
    return parts.value().keptParts(range, markers.value(), cuts.value());
}

QString AppState::t(L10nKey key) const {
    return pointloom::t(language, key);
}

// Makes an edit an undoable step, whose `inverse` is an edit as well, and saves the session.
void AppState::concludeEdit(L10nKey name, UndoStack* undoManager, std::function<void()> inverse) const {
    if (undoManager) {
        undoManager->registerUndo(std::move(inverse));
        undoManager->setActionName(name);
    }
    save();
}

void AppState::addMarker(Marker marker, UndoStack* undoManager) {
    const QUuid id = marker.id;
    auto edited = markers.value();
    edited.push_back(std::move(marker));
    markers = ScoringEngine::sortedByTime(std::move(edited));
    selectedMarkerID = id;
    concludeEdit(L10nKey::addMarker, undoManager, [this, id, undoManager] { removeMarker(id, undoManager); });
}

void AppState::removeMarker(const QUuid& id, UndoStack* undoManager) {
    auto edited = markers.value();
    const auto found = std::ranges::find(edited, id, &Marker::id);
    if (found == edited.end())
        return;
    const Marker removed = std::move(*found);
    edited.erase(found);
    markers = std::move(edited);
    if (selectedMarkerID.value() == removed.id)
        selectedMarkerID = std::nullopt;
    concludeEdit(L10nKey::undoDeleteMarker, undoManager,
                 [this, removed, undoManager] { addMarker(removed, undoManager); });
}

template <class Value>
void AppState::updateMarker(const QUuid& id, Value Marker::*field, const Value& value, L10nKey name,
                            UndoStack* undoManager) {
    auto edited = markers.value();
    const auto found = std::ranges::find(edited, id, &Marker::id);
    if (found == edited.end())
        return;
    const QUuid marker = found->id; // `id` may refer into the list that is replaced
    const Value previous = std::exchange((*found).*field, value);
    markers = ScoringEngine::sortedByTime(std::move(edited));
    concludeEdit(name, undoManager, [this, marker, field, previous, name, undoManager] {
        updateMarker(marker, field, previous, name, undoManager);
    });
}

void AppState::updateMarkerScore(const QUuid& id, const SportScoreState& score, UndoStack* undoManager) {
    updateMarker(id, &Marker::score, score, L10nKey::undoEditScore, undoManager);
}

void AppState::updateMarkerTime(const QUuid& id, double time, UndoStack* undoManager) {
    updateMarker(id, &Marker::startTime, time, L10nKey::undoMoveMarker, undoManager);
}

void AppState::updateMarkerLabel(const QUuid& id, const std::optional<QString>& label,
                                 UndoStack* undoManager) {
    updateMarker(id, &Marker::label, label, L10nKey::undoRenameMarker, undoManager);
}

void AppState::replaceMarkers(std::vector<Marker> replacement, std::optional<QUuid> selection,
                              UndoStack* undoManager) {
    replaceMarkers(std::move(replacement), selection, L10nKey::undoImportMarkers, undoManager);
}

void AppState::replaceMarkers(std::vector<Marker> replacement, std::optional<QUuid> selection, L10nKey name,
                              UndoStack* undoManager) {
    const std::vector<Marker> previous = markers;
    const std::optional<QUuid> previousSelection = selectedMarkerID;
    // Before its marker is there: the timeline scrolls to one that is chosen, not to this.
    selectedMarkerID = selection;
    markers = std::move(replacement);
    concludeEdit(name, undoManager, [this, previous, previousSelection, name, undoManager] {
        replaceMarkers(previous, previousSelection, name, undoManager);
    });
}

void AppState::setInitialScore(const std::optional<SportScoreState>& score, UndoStack* undoManager) {
    const std::optional<SportScoreState> previous = initialScore;
    if (previous == score)
        return;
    initialScore = score;
    concludeEdit(L10nKey::undoEditInitialScore, undoManager,
                 [this, previous, undoManager] { setInitialScore(previous, undoManager); });
}

void AppState::setTrim(const TrimTimes& trim, UndoStack* undoManager) {
    const TrimTimes previous = this->trim();
    if (trim == previous)
        return;
    trimStart = trim.start;
    trimEnd = trim.end;
    concludeEdit(L10nKey::undoSetTrim, undoManager,
                 [this, previous, undoManager] { setTrim(previous, undoManager); });
}

void AppState::setNumberOfSets(std::int64_t count, UndoStack* undoManager) {
    const auto& match = matchConfig.value();
    if (!match || match->numberOfSets == count)
        return;
    const bool canScoresComeBack =
        undoManager && (undoManager->canUndo().value() || undoManager->canRedo().value());
    if (markers.value().empty() && !initialScore.value() && !canScoresComeBack)
        undoManager = nullptr; // no score is touched
    Sets resized{count, markers, initialScore};
    for (Marker& marker : resized.markers)
        marker.score = withNumberOfSets(std::move(marker.score), count);
    if (resized.initialScore)
        resized.initialScore = withNumberOfSets(*std::move(resized.initialScore), count);
    replaceSets(std::move(resized), undoManager);
}

void AppState::replaceSets(Sets replacement, UndoStack* undoManager) {
    MatchConfig match = *matchConfig.value();
    const Sets previous{match.numberOfSets, markers, initialScore};
    match.numberOfSets = replacement.number;
    matchConfig = std::move(match);
    markers = std::move(replacement.markers);
    initialScore = std::move(replacement.initialScore);
    concludeEdit(L10nKey::undoChangeSets, undoManager,
                 [this, previous, undoManager] { replaceSets(previous, undoManager); });
}

void AppState::addCut(const CutZone& cut, UndoStack* undoManager) {
    auto edited = cuts.value();
    edited.insert(std::ranges::upper_bound(edited, cut.start, {}, &CutZone::start), cut);
    cuts = std::move(edited);
    selectedCutID = cut.id;
    concludeEdit(L10nKey::undoAddCut, undoManager,
                 [this, id = cut.id, undoManager] { removeCut(id, undoManager); });
}

void AppState::updateCut(const CutZone& cut, UndoStack* undoManager) {
    auto edited = cuts.value();
    const auto found = std::ranges::find(edited, cut.id, &CutZone::id);
    if (found == edited.end() || *found == cut)
        return;
    const CutZone previous = std::exchange(*found, cut);
    std::ranges::stable_sort(edited, {}, &CutZone::start);
    cuts = std::move(edited);
    concludeEdit(L10nKey::undoMoveCut, undoManager,
                 [this, previous, undoManager] { updateCut(previous, undoManager); });
}

void AppState::removeCut(const QUuid& id, UndoStack* undoManager) {
    auto edited = cuts.value();
    const auto found = std::ranges::find(edited, id, &CutZone::id);
    if (found == edited.end())
        return;
    const CutZone removed = *found;
    edited.erase(found);
    cuts = std::move(edited);
    if (selectedCutID.value() == removed.id)
        selectedCutID = std::nullopt;
    concludeEdit(L10nKey::undoDeleteCut, undoManager,
                 [this, removed, undoManager] { addCut(removed, undoManager); });
}

void AppState::placeScoreboard(const ScoreboardPlace& place, L10nKey name, UndoStack* undoManager) {
    const ScoreboardPlace previous = scoreboardPlace();
    scoreboardPosition = place.position;
    scoreboardUserScale = place.userScale;
    concludePlacing(previous, name, undoManager);
}

void AppState::concludePlacing(const ScoreboardPlace& previous, L10nKey name, UndoStack* undoManager) {
    if (previous == scoreboardPlace())
        return;
    concludeEdit(name, undoManager,
                 [this, previous, name, undoManager] { placeScoreboard(previous, name, undoManager); });
}

void AppState::reset() {
    const AppState start;
    const auto resetAll = [&](const auto... fields) {
        ((this->*fields).setValue((start.*fields).value()), ...);
    };
    std::apply(resetAll, resetFields());
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
