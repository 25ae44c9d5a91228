// Edits of markers behind the editor's keys and buttons.
#pragma once

#include "model/ScoreState.h"
#include "ui/common/UiContext.h"

namespace pointloom::EditorCommands {

/// The frame that is shown. A marker takes effect with the first frame at or after its time, so this frame is
/// the place of every marker from just after the frame before it.
struct ShownFrame {
    double time = 0;     // seconds
    double duration = 0; // seconds, nominal

    bool isBefore(double markerTime) const { return markerTime > time + rounding; }
    bool isAfter(double markerTime) const { return markerTime <= time - duration + rounding; }
    bool isPlaceOf(double markerTime) const { return !isBefore(markerTime) && !isAfter(markerTime); }

private:
    static constexpr double rounding = 0.0005; // seconds
};

/// Null when there is none.
const Marker* selectedMarker(const AppState& state);

/// The marker whose score takes effect with the frame; null when there is none.
const Marker* markerAt(const AppState& state, const ShownFrame& frame);

/// Adds a marker at the playhead with the score that holds there, and selects it; a marker that is already
/// there is selected instead.
void addMarker(const UiContext& context, const ShownFrame& frame);

/// Counts a point by the rules of the match: into a new marker at the playhead, or the marker that is already
/// there becomes a point of `side`. During playback every point is a new one, where the picture stalls at the
/// next frame without a marker. The markers after it follow. By hand, and where the score cannot be counted
/// on from, steps it instead. False when the match is over.
[[nodiscard]] bool countPoint(const UiContext& context, const ShownFrame& frame, Side side);

/// Steps the score at the playhead for `side` along its list of values: into a new marker there, or into the
/// one that is already there, so that a key pressed twice makes no second marker at the same frame.
void stepPoint(const UiContext& context, const ShownFrame& frame, Side side, StepDirection direction);

/// In a match that is counted, before its first point, who serves first.
void swapServeOfSelectedMarker(const UiContext& context);

enum class Neighbour { previous, next };

/// The nearest marker before or after the frame; null when there is none.
const Marker* neighbour(const AppState& state, const ShownFrame& frame, Neighbour which);

}
