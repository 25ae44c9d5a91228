// Keys on the timeline: from item to item, and moving them.
#include "ui/timeline/MarkerDrop.h"
#include "ui/timeline/TimelineAccessible.h"
#include "ui/timeline/TimelineCanvas.h"

#include <algorithm>
#include <QFocusEvent>
#include <QKeyEvent>

namespace pointloom {

namespace {

constexpr TimelineHit itemOfPlayhead{TimelineHit::Kind::time, {}};

// The item stays the current one while a menu or another window is in front.
bool isForAWhile(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
}

}

void TimelineCanvas::focusInEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    if (!isForAWhile(reason)) {
        m_showsFocus = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                       reason == Qt::ShortcutFocusReason;
        m_current = itemOfPlayhead;
    }
    tellItemFocused(*this, m_current);
    update();
}

void TimelineCanvas::focusOutEvent(QFocusEvent* event) {
    endStepping();
    if (!isForAWhile(event->reason()))
        m_showsFocus = false;
    update();
}

// The playhead's arrows are the editor's.
bool TimelineCanvas::takesKey(const QKeyEvent& event) const {
    const bool isPlayhead = m_current.kind == TimelineHit::Kind::time;
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Escape:
        return m_drag.isPressed() || (m_showsFocus && !isPlayhead);
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_showsFocus && !modifiers;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return m_showsFocus && !isPlayhead && !(modifiers & ~Qt::ShiftModifier);
    default:
        return false;
    }
}

void TimelineCanvas::keyPressEvent(QKeyEvent* event) {
    if (!takesKey(*event))
        return QWidget::keyPressEvent(event);
    const double distance = event->modifiers().testFlag(Qt::ShiftModifier) ? 1 : 1 / m_scene.frameRate;
    switch (event->key()) {
    case Qt::Key_Escape:
        if (m_drag.isPressed())
            m_drag.end(false);
        else
            setCurrent(itemOfPlayhead);
        break;
    case Qt::Key_Up:
        goBeside(ItemDirection::before);
        break;
    case Qt::Key_Down:
        goBeside(ItemDirection::after);
        break;
    case Qt::Key_Left:
        stepCurrent(-distance);
        break;
    case Qt::Key_Right:
        stepCurrent(distance);
        break;
    default:
        openMenu(itemOfKeys());
    }
}

// All steps of a key that is held are one step to undo.
void TimelineCanvas::keyReleaseEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat())
        endStepping();
    QWidget::keyReleaseEvent(event);
}

void TimelineCanvas::endStepping() {
    if (m_drag.isByKey())
        m_drag.end(true);
}

void TimelineCanvas::goBeside(ItemDirection direction) {
    endStepping();
    if (m_drag.isPressed())
        return;
    if (const auto item = itemBeside(m_scene, m_current, direction))
        goTo(*item);
}

void TimelineCanvas::goTo(const TimelineHit& item) {
    const auto time = timeOf(m_scene, item);
    if (!time)
        return;
    const auto [kind, id] = item;
    if (kind == TimelineHit::Kind::trimStart || kind == TimelineHit::Kind::trimEnd) {
        m_context.state.selectedMarkerID = std::nullopt; // so that Delete removes nothing else
        m_context.state.selectedCutID = std::nullopt;
    }
    select(item);
    if (kind != TimelineHit::Kind::time) {
        m_scene.scale.reveal(*time, revealDistance);
        changeView();
        Q_EMIT seekRequested(std::clamp(*time, 0.0, m_scene.scale.duration()), true);
    }
    m_showsFocus = hasFocus();
    setCurrent({kind, id});
}

void TimelineCanvas::setCurrent(const TimelineHit& item) {
    const bool isNew = std::exchange(m_current, item) != item;
    update();
    if (isNew && hasFocus())
        tellItemFocused(*this, item);
}

// A marker or a cut is worked on only while Delete means it.
void TimelineCanvas::dropCurrentUnlessSelected() {
    using Kind = TimelineHit::Kind;
    const bool isMarker = m_current.kind == Kind::marker;
    const bool isCut =
        m_current.kind == Kind::cut || m_current.kind == Kind::cutStart || m_current.kind == Kind::cutEnd;
    if ((isMarker && m_scene.selectedMarker != m_current.id) ||
        (isCut && m_scene.selectedCut != m_current.id))
        setCurrent(itemOfPlayhead);
}

std::optional<double> TimelineCanvas::shownTimeOf(const TimelineHit& item) const {
    if (m_drag.isDragging() && m_drag.pressed() == item)
        return m_drag.preview()->moment;
    return timeOf(m_scene, item);
}

TimelineHit TimelineCanvas::itemOfKeys() const {
    return m_showsFocus ? m_current : m_scene.selectedItem();
}

void TimelineCanvas::stepCurrent(double seconds) {
    if (const auto time = shownTimeOf(m_current))
        stepItem(m_current, nearestFrame(*time + seconds, m_scene.frameRate));
}

// Over a marker whose frame is taken, rather than asking which of them to keep.
void TimelineCanvas::stepItem(const TimelineHit& item, double time) {
    const auto from = shownTimeOf(item);
    if (!from || (m_drag.isPressed() && !m_drag.isByKey()))
        return;
    const auto& markers = m_context.state.markers.value();
    const ClipFrames clip{1 / m_scene.frameRate, m_scene.scale.duration()};
    const Marker* other =
        item.kind == TimelineHit::Kind::marker ? markerAtFrame(markers, item.id, time, clip) : nullptr;
    if (other)
        time = frameBeside(markers, item.id, *other, time < *from, clip);
    m_drag.step(item, *from, time);
    if (const auto now = shownTimeOf(item); now && !m_scene.scale.shows(*now)) {
        m_scene.scale.reveal(*now, revealDistance);
        changeView();
    }
    tellItemMoved(*this, item);
}

void TimelineCanvas::moveItem(const TimelineHit& item, double time) {
    if (item.kind == TimelineHit::Kind::time) {
        Q_EMIT seekRequested(std::clamp(time, 0.0, m_scene.scale.duration()), true);
        return;
    }
    stepItem(item, time);
    endStepping();
}

}
