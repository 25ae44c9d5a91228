// Pseudo-random edits, each determined by its number: the same numbers in the same order give the same
// session.
#pragma once

#include "session/AppState.h"
#include "session/UndoStack.h"
#include "support/Sessions.h"

#include <random>

namespace pointloom::test {

/// Makes edit `number`, after which the session has been saved once. `undo` is empty when a process starts.
inline void makeEdit(AppState& state, UndoStack& undo, std::uint64_t number) {
    std::mt19937_64 random(number);
    const auto below = [&](std::size_t bound) { return random() % bound; };
    // Tells each session from the one before, whatever the edit does.
    state.trimStart = static_cast<double>(number);

    const auto& markers = state.markers.value();
    constexpr std::size_t mostMarkers = 150;
    const std::size_t kind = markers.size() > mostMarkers ? 1 : below(8);
    const double time = static_cast<double>(below(100'000)) / 16;
    if (markers.empty() || kind == 0 || kind > 6) {
        Marker marker = markerAt(time);
        marker.id = QUuid(static_cast<uint>(random()), 0, 0, 0, 0, 0, 0, 0, 0, 0, 1);
        marker.label = QString(static_cast<qsizetype>(below(200)), QChar(u'é'));
        state.addMarker(marker, &undo);
        return;
    }
    const QUuid id = markers[below(markers.size())].id;
    switch (kind) {
    case 1:
        state.removeMarker(id, &undo);
        break;
    case 2:
        state.updateMarkerTime(id, time, &undo);
        break;
    case 3:
        state.updateMarkerScore(id, tennisScore(static_cast<std::int64_t>(below(8))), &undo);
        break;
    case 4:
        undo.canUndo().value() ? undo.undo() : state.save();
        break;
    case 5:
        undo.canRedo().value() ? undo.redo() : state.save();
        break;
    default:
        state.updateMarkerLabel(id, QStringLiteral("\"%1\"\n").arg(number), &undo);
    }
}

}
