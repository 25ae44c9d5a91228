#include "ui/editor/EditorCommands.h"

#include "model/ScoringEngine.h"
#include "session/PointEdits.h"

#include <algorithm>

namespace pointloom::EditorCommands {

namespace {

void addNewMarker(const UiContext& context, const SportScoreState& score) {
    AppState& state = context.state;
    state.addMarker({QUuid::createUuid(), state.currentTime, score, std::nullopt}, &context.undo);
}

}

const Marker* selectedMarker(const AppState& state) {
    const auto& id = state.selectedMarkerID.value();
    const auto& markers = state.markers.value();
    const auto found = std::ranges::find_if(markers, [&](const Marker& marker) { return marker.id == id; });
    return found == markers.end() ? nullptr : &*found;
}

const Marker* markerAt(const AppState& state, const ShownFrame& frame) {
    const Marker* marker = ScoringEngine::markerAtTime(state.markers.value(), frame.time);
    if (marker && frame.isPlaceOf(marker->startTime))
        return marker;
    // A playhead that was rounded down is slightly before its marker.
    const auto& markers = state.markers.value();
    const auto found = std::ranges::find_if(
        markers, [&](const Marker& candidate) { return frame.isPlaceOf(candidate.startTime); });
    return found == markers.end() ? nullptr : &*found;
}

void addMarker(const UiContext& context, const ShownFrame& frame) {
    AppState& state = context.state;
    if (const Marker* marker = markerAt(state, frame))
        state.selectedMarkerID = marker->id;
    else if (const auto& score = state.liveScore())
        addNewMarker(context, *score);
}

bool countPoint(const UiContext& context, const ShownFrame& frame, Side side) {
    AppState& state = context.state;
    const Marker* marker = markerAt(state, frame);
    ShownFrame place = frame;
    while (state.isPlaying && place.duration > 0 && markerAt(state, place))
        place.time += place.duration;
    const auto result = marker && place.time == frame.time
                            ? PointEdits::changeWinner(state, QUuid(marker->id), side, &context.undo)
                            : PointEdits::addPoint(state, place.time, side, &context.undo);
    if (result == PointEdits::Result::notCounted)
        stepPoint(context, frame, side, StepDirection::next);
    return result != PointEdits::Result::matchIsOver;
}

void stepPoint(const UiContext& context, const ShownFrame& frame, Side side, StepDirection direction) {
    AppState& state = context.state;
    if (const Marker* marker = markerAt(state, frame)) {
        const QUuid id = marker->id;
        PointEdits::typeScore(state, id, steppedScore(marker->score, side, direction), &context.undo);
        state.selectedMarkerID = id;
        return;
    }
    if (const auto& score = state.liveScore())
        addNewMarker(context, steppedScore(*score, side, direction));
}

void swapServeOfSelectedMarker(const UiContext& context) {
    AppState& state = context.state;
    if (const Marker* marker = selectedMarker(state)) {
        PointEdits::typeScore(state, marker->id, withServeSwapped(marker->score), &context.undo);
    } else if (PointEdits::countedMatch(state) &&
               !ScoringEngine::markerAtTime(state.markers.value(), state.currentTime)) {
        PointEdits::typeScore(state, std::nullopt, withServeSwapped(*state.liveScore()), &context.undo);
    }
}

const Marker* neighbour(const AppState& state, const ShownFrame& frame, Neighbour which) {
    const auto& markers = state.markers.value(); // sorted by time
    if (which == Neighbour::next) {
        const auto next = std::ranges::find_if(
            markers, [&](const Marker& marker) { return frame.isBefore(marker.startTime); });
        return next == markers.end() ? nullptr : &*next;
    }
    const auto firstNotBefore =
        std::ranges::find_if(markers, [&](const Marker& marker) { return !frame.isAfter(marker.startTime); });
    return firstNotBefore == markers.begin() ? nullptr : &*std::prev(firstNotBefore);
}

}
