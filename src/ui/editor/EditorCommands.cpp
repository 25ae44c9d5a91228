#include "ui/editor/EditorCommands.h"

#include <algorithm>
#include <cmath>

namespace pointloom::EditorCommands {

namespace {

const Marker* selectedMarker(const AppState& state) {
    const auto& id = state.selectedMarkerID.value();
    const auto& markers = state.markers.value();
    const auto found = std::ranges::find_if(markers, [&](const Marker& marker) { return marker.id == id; });
    return id && found != markers.end() ? &*found : nullptr;
}

void addMarker(const UiContext& context, const SportScoreState& score) {
    AppState& state = context.state;
    state.addMarker({QUuid::createUuid(), state.currentTime, score, std::nullopt}, &context.undo);
}

}

const Marker* markerExactlyAt(const AppState& state, double time) {
    for (const Marker& marker : state.markers.value()) {
        if (std::abs(marker.startTime - time) < sameMoment)
            return &marker;
    }
    return nullptr;
}

void addMarkerAtPlayhead(const UiContext& context) {
    AppState& state = context.state;
    if (const Marker* marker = markerExactlyAt(state, state.currentTime))
        state.selectedMarkerID = marker->id;
    else if (const auto& score = state.liveScore())
        addMarker(context, *score);
}

void stepPointAtPlayhead(const UiContext& context, int team, StepDirection direction) {
    AppState& state = context.state;
    if (const Marker* marker = markerExactlyAt(state, state.currentTime)) {
        const QUuid id = marker->id;
        state.updateMarkerScore(id, steppedScore(marker->score, team, direction), &context.undo);
        state.selectedMarkerID = id;
        return;
    }
    if (const auto& score = state.liveScore())
        addMarker(context, steppedScore(*score, team, direction));
}

void swapServeOfSelectedMarker(const UiContext& context) {
    AppState& state = context.state;
    if (const Marker* marker = selectedMarker(state))
        state.updateMarkerScore(QUuid(marker->id), withServeSwapped(marker->score), &context.undo);
}

void deleteSelection(const UiContext& context) {
    AppState& state = context.state;
    if (const Marker* marker = selectedMarker(state))
        state.removeMarker(QUuid(marker->id), &context.undo);
}

const Marker* neighbour(const AppState& state, Neighbour which) {
    const auto& markers = state.markers.value(); // sorted by time
    const double time = state.currentTime;
    if (which == Neighbour::next) {
        const auto next = std::ranges::find_if(
            markers, [&](const Marker& marker) { return marker.startTime > time + sameMoment; });
        return next == markers.end() ? nullptr : &*next;
    }
    const Marker* previous = nullptr;
    for (const Marker& marker : markers) {
        if (marker.startTime < time - sameMoment)
            previous = &marker;
    }
    return previous;
}

}
