#include "ui/timeline/MarkerDrop.h"

#include "session/PointEdits.h"
#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"

#include <algorithm>
#include <cmath>
#include <QCursor>
#include <QMenu>

namespace pointloom {

namespace {

enum class Kept { moved, other, both };

std::optional<double> freeFrame(std::span<const Marker> markers, const QUuid& moved, double from, double step,
                                const ClipFrames& clip) {
    constexpr double rounding = 1e-9; // seconds
    for (double time = from + step; time > -rounding && time < clip.duration; time += step) {
        if (!markerAtFrame(markers, moved, time, clip))
            return std::max(time, 0.0);
    }
    return std::nullopt;
}

std::optional<Kept> askWhichToKeep(const UiContext& context, const Marker& moved, const Marker& other) {
    QMenu menu;
    const QString time = shortTime(other.startTime, true);
    menu.addAction(format(context.text(L10nKey::timelineSamePlace), time))->setEnabled(false);
    menu.addSeparator();
    const auto offer = [&](Kept kept, const QString& text) {
        menu.addAction(QString(text).replace(u'&', QStringLiteral("&&")))->setData(static_cast<int>(kept));
    };
    offer(Kept::moved, format(context.text(L10nKey::timelineKeepMoved), shortScore(moved.score).full));
    offer(Kept::other, format(context.text(L10nKey::timelineKeepOther), shortScore(other.score).full));
    offer(Kept::both, context.text(L10nKey::timelineKeepBoth));
    const QAction* chosen = menu.exec(QCursor::pos());
    return chosen ? std::optional(static_cast<Kept>(chosen->data().toInt())) : std::nullopt;
}

// Two edits as one step to undo.
void moveInPlaceOf(const UiContext& context, const QUuid& id, const QUuid& other, double time) {
    AppState& state = context.state;
    const std::vector<Marker> before = state.markers;
    PointEdits::removeMarker(state, other, nullptr);
    PointEdits::moveMarker(state, id, time, nullptr);
    std::vector<Marker> after = state.markers;
    state.markers = before;
    state.replaceMarkers(std::move(after), id, L10nKey::undoMoveMarker, &context.undo);
}

}

const Marker* markerAtFrame(std::span<const Marker> markers, const QUuid& moved, double time,
                            const ClipFrames& clip) {
    constexpr double nearlyHalf = 0.499; // so that rounding makes no neighbours meet
    const auto found = std::ranges::find_if(markers, [&](const Marker& marker) {
        return marker.id != moved && std::abs(marker.startTime - time) < clip.frame * nearlyHalf;
    });
    return found == markers.end() ? nullptr : &*found;
}

double frameBeside(std::span<const Marker> markers, const QUuid& moved, const Marker& other, bool isBefore,
                   const ClipFrames& clip) {
    const double step = isBefore ? -clip.frame : clip.frame;
    if (const auto time = freeFrame(markers, moved, other.startTime, step, clip))
        return *time;
    return freeFrame(markers, moved, other.startTime, -step, clip).value_or(other.startTime);
}

bool dropMarker(const UiContext& context, const QUuid& id, double time, const ClipFrames& clip) {
    const auto& markers = context.state.markers.value();
    const auto found = std::ranges::find(markers, id, &Marker::id);
    const Marker* there = markerAtFrame(markers, id, time, clip);
    if (found == markers.end() || !there) {
        PointEdits::moveMarker(context.state, id, time, &context.undo);
        return true;
    }
    const Marker moved = *found;
    const Marker other = *there;
    const auto kept = askWhichToKeep(context, moved, other);
    if (kept == Kept::moved) {
        moveInPlaceOf(context, id, other.id, time);
    } else if (kept == Kept::other) {
        PointEdits::removeMarker(context.state, id, &context.undo);
        context.state.selectedMarkerID = other.id;
    } else if (kept == Kept::both) {
        const bool isBefore = moved.startTime < other.startTime;
        PointEdits::moveMarker(context.state, id,
                               frameBeside(context.state.markers.value(), id, other, isBefore, clip),
                               &context.undo);
    }
    return kept.has_value();
}

}
