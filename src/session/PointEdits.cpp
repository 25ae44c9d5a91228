#include "session/PointEdits.h"

#include "l10n/L10nKey.h"
#include "model/ScoringEngine.h"
#include "rules/CountLabel.h"
#include "session/UndoStack.h"

#include <algorithm>

namespace pointloom::PointEdits {

namespace {

std::size_t placeOf(const std::vector<Marker>& markers, const QUuid& id) {
    return static_cast<std::size_t>(std::ranges::find(markers, id, &Marker::id) - markers.begin());
}

/// Whether a point can be counted after the score before that marker.
Result pointAfter(const CountedMatch& match, std::size_t marker) {
    const CountedScore before = scoreBefore(match, marker);
    if (!isCountable(match.rules, before))
        return Result::notCounted;
    return isMatchOver(match.rules, before.score) ? Result::matchIsOver : Result::done;
}

void say(AppState& state, const Recount& recount) {
    state.typedScore = std::nullopt;
    state.recountStoppedAt =
        recount.untouchedFrom ? std::optional(recount.markers[*recount.untouchedFrom].id) : std::nullopt;
}

/// Recounts the edited markers of `match` from `from` on and stores them.
void store(AppState& state, const CountedMatch& match, std::vector<Marker> edited, std::size_t from,
           std::optional<Side> winner, const std::optional<QUuid>& selection, L10nKey name, UndoStack* undo) {
    Recount recount = recounted(match, {match.rules, match.start, std::move(edited)}, from, winner);
    say(state, recount);
    if (recount.markers != match.markers)
        state.replaceMarkers(std::move(recount.markers), selection, name, undo);
    else
        state.selectedMarkerID = selection;
}

}

std::optional<CountedMatch> countedMatch(const AppState& state) {
    const auto& config = state.matchConfig.value();
    if (!config)
        return std::nullopt;
    try {
        if (const auto rules = rulesOfMatch(*config, state.rules.value()))
            return pointloom::countedMatch(*rules, state.initialScore, state.markers);
    } catch (const FormatError&) {
        // Of a newer version, or of another sport.
    }
    return std::nullopt;
}

Result addPoint(AppState& state, double time, Side winner, UndoStack* undo) {
    const auto match = countedMatch(state);
    if (!match)
        return Result::notCounted;
    std::vector<Marker> markers = match->markers;
    const auto next = std::ranges::upper_bound(markers, time, {}, &Marker::startTime);
    const auto place = static_cast<std::size_t>(next - markers.begin());
    if (const Result result = pointAfter(*match, place); result != Result::done)
        return result;
    const CountedScore counted = countPoint(match->rules, scoreBefore(*match, place), winner).after;
    const Marker added{QUuid::createUuid(), time, counted.score, counted.label};
    if (place == markers.size()) {
        say(state, {});
        state.addMarker(added, undo);
        return Result::done;
    }
    markers.insert(next, added);
    store(state, *match, std::move(markers), place, winner, added.id, L10nKey::addMarker, undo);
    return Result::done;
}

Result changeWinner(AppState& state, const QUuid& id, Side winner, UndoStack* undo) {
    const auto match = countedMatch(state);
    const std::size_t place = match ? placeOf(match->markers, id) : 0;
    if (!match || place == match->markers.size())
        return Result::notCounted;
    const CountedScore score = scoreBefore(*match, place + 1);
    const bool isEntered =
        stepBetween(match->rules, scoreBefore(*match, place), score).kind == CountStep::Kind::entered;
    if (const Result result = pointAfter(*match, isEntered ? place + 1 : place); result != Result::done)
        return result;
    std::vector<Marker> markers = match->markers;
    if (isEntered) {
        const CountedScore counted = countPoint(match->rules, score, winner).after;
        markers[place].score = counted.score;
        markers[place].label = withPhrase(markers[place].label, counted.label);
        store(state, *match, std::move(markers), place + 1, std::nullopt, id, L10nKey::undoEditScore, undo);
    } else {
        store(state, *match, std::move(markers), place, winner, id, L10nKey::undoEditScore, undo);
    }
    return Result::done;
}

void removeMarker(AppState& state, const QUuid& id, UndoStack* undo) {
    const auto match = countedMatch(state);
    const std::size_t place = match ? placeOf(match->markers, id) : 0;
    if (!match || place + 1 >= match->markers.size()) {
        say(state, {});
        return state.removeMarker(id, undo);
    }
    std::vector<Marker> markers = match->markers;
    markers.erase(markers.begin() + static_cast<std::ptrdiff_t>(place));
    const auto selected = state.selectedMarkerID.value();
    store(state, *match, std::move(markers), place, std::nullopt,
          selected == match->markers[place].id ? std::nullopt : selected, L10nKey::undoDeleteMarker, undo);
}

void moveMarker(AppState& state, const QUuid& id, double time, UndoStack* undo) {
    const auto match = countedMatch(state);
    const std::size_t place = match ? placeOf(match->markers, id) : 0;
    if (match && place < match->markers.size()) {
        std::vector<Marker> markers = match->markers;
        markers[place].startTime = time;
        markers = ScoringEngine::sortedByTime(std::move(markers));
        const std::size_t newPlace = placeOf(markers, match->markers[place].id);
        if (newPlace != place)
            return store(state, *match, std::move(markers), std::min(place, newPlace), std::nullopt,
                         state.selectedMarkerID.value(), L10nKey::undoMoveMarker, undo);
    }
    state.updateMarkerTime(id, time, undo);
}

void typeScore(AppState& state, const std::optional<QUuid>& marker,
               const std::optional<SportScoreState>& score, UndoStack* undo) {
    const auto& pending = state.typedScore.value();
    if (!pending || pending->marker != marker) {
        auto before = countedMatch(state);
        const auto& config = state.matchConfig.value();
        if (!before && !marker && config) // by hand it is only carried on when the user says so
            before = pointloom::countedMatch(*rulesOfMatch(*config, {}), state.initialScore, state.markers);
        state.typedScore = before ? std::optional(TypedScore{marker, *std::move(before)}) : std::nullopt;
    }
    if (marker && score)
        state.updateMarkerScore(*marker, *score, undo);
    else if (!marker)
        state.setInitialScore(score, undo);
}

std::optional<Recount> carriedOn(const AppState& state) {
    const auto& typed = state.typedScore.value();
    if (!typed)
        return std::nullopt;
    const auto& markers = state.markers.value();
    CountedMatch after{typed->before.rules, typed->before.start, markers};
    if (!typed->marker) {
        after.rules.firstServer = Side::first;
        const auto& initial = state.initialScore.value();
        after.start = initial ? startFrom(after.rules, *initial) : startOfMatch(after.rules);
    }
    const std::size_t place = typed->marker ? placeOf(markers, *typed->marker) + 1 : 0;
    Recount recount = recounted(typed->before, std::move(after), place);
    return recount.markers == markers ? std::nullopt : std::optional(std::move(recount));
}

void carryOn(AppState& state, UndoStack* undo) {
    auto recount = carriedOn(state);
    if (!recount)
        return;
    const bool isInitial = !state.typedScore.value()->marker;
    say(state, *recount);
    state.replaceMarkers(std::move(recount->markers), state.selectedMarkerID.value(),
                         isInitial ? L10nKey::undoEditInitialScore : L10nKey::undoEditScore, undo);
}

}
