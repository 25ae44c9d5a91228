// What the keys and buttons of the editor do to the markers.
#pragma once

#include "model/ScoreStepping.h"
#include "ui/common/UiContext.h"

namespace pointloom::EditorCommands {

/// Two times nearer than this, in seconds, are the same moment.
constexpr double sameMoment = 0.0005;

/// The marker that stands exactly at `time`; of several, the one whose score holds. Null when there is none.
const Marker* markerExactlyAt(const AppState& state, double time);

/// A marker at the playhead with the score that holds there; selected. A marker that stands there already is
/// selected instead.
void addMarkerAtPlayhead(const UiContext& context);

/// Steps the score at the playhead for `team` along its list of values: into a new marker there, or into the
/// one that stands there already, so that a key pressed twice makes no second marker on the same spot.
void stepPointAtPlayhead(const UiContext& context, int team, StepDirection direction);

void swapServeOfSelectedMarker(const UiContext& context);

/// The selected marker or, with none selected, the selected cut.
void deleteSelection(const UiContext& context);

enum class Neighbour { previous, next };

/// The nearest marker before or after the playhead; null when there is none.
const Marker* neighbour(const AppState& state, Neighbour which);

}
