// Mouse and wheel on the timeline's rows, and menus.
#include "ui/timeline/TimelineCanvas.h"

#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"
#include "ui/timeline/TimelineMenu.h"
#include "ui/timeline/TimelineToolTip.h"

#include <algorithm>
#include <cmath>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QToolTip>
#include <QWheelEvent>

namespace pointloom {

namespace {

using Hit = TimelineHit::Kind;

constexpr double wheelNotch = 120; // eighths of a degree
constexpr double pointsPerNotch = 96;
constexpr double zoomPerNotch = 1.25;

bool snaps(const QMouseEvent& event) {
    return !event.modifiers().testFlag(Qt::AltModifier);
}

Qt::CursorShape cursorFor(Hit kind) {
    switch (kind) {
    case Hit::trimStart:
    case Hit::trimEnd:
    case Hit::cutStart:
    case Hit::cutEnd:
        return Qt::SizeHorCursor;
    case Hit::marker:
    case Hit::cut:
        return Qt::PointingHandCursor;
    case Hit::nothing:
    case Hit::time:
    case Hit::trimLane:
        break;
    }
    return Qt::ArrowCursor;
}

}

void TimelineCanvas::wheelEvent(QWheelEvent* event) {
    event->accept();
    const QPoint degrees = event->angleDelta();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        m_scene.scale.zoomBy(std::pow(zoomPerNotch, degrees.y() / wheelNotch), event->position().x());
        changeView();
        return;
    }
    // A plain wheel scrolls horizontally too.
    const bool isFine = !event->pixelDelta().isNull();
    const QPointF distance =
        isFine ? QPointF(event->pixelDelta()) : QPointF(degrees) * (pointsPerNotch / wheelNotch);
    scrollTo(m_scene.scale.offset() -
             (std::abs(distance.x()) > std::abs(distance.y()) ? distance.x() : distance.y()));
}

bool TimelineCanvas::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            m_scene.scale.zoomBy(std::max(0.1, 1 + gesture->value()), gesture->position().x());
            changeView();
            return true;
        }
    }
    if (event->type() == QEvent::ToolTip && !m_drag.isDragging()) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QString text = timelineToolTip(m_context, m_scene, m_scene.hitAt(help->pos()));
        if (const Seam* seam = m_scene.seamAt(help->pos()); seam && text.isEmpty())
            text = plainToolTip({seam->file, shortTime(seam->time, true)});
        QToolTip::showText(help->globalPos(), text, this);
        return true;
    }
    if (event->type() == QEvent::ShortcutOverride && takesKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void TimelineCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_drag.isPressed())
        return;
    const TimelineHit hit = m_scene.hitAt(event->position());
    if (hit.kind == Hit::nothing)
        return;
    QToolTip::hideText();
    m_showsFocus = false;
    setCurrent({Hit::time, {}});
    select(hit);
    m_drag.begin(hit, event->position(), snaps(*event));
}

void TimelineCanvas::select(const TimelineHit& hit) {
    AppState& state = m_context.state;
    switch (hit.kind) {
    case Hit::marker:
        state.selectedMarkerID = hit.id;
        state.selectedCutID = std::nullopt;
        break;
    case Hit::cut:
    case Hit::cutStart:
    case Hit::cutEnd:
        state.selectedMarkerID = std::nullopt;
        state.selectedCutID = hit.id;
        break;
    case Hit::trimLane:
        state.selectedCutID = std::nullopt;
        break;
    case Hit::time:
    case Hit::trimStart:
    case Hit::trimEnd:
    case Hit::nothing:
        break;
    }
}

void TimelineCanvas::mouseMoveEvent(QMouseEvent* event) {
    if (m_drag.isPressed())
        m_drag.moveTo(event->position(), snaps(*event));
    else
        setHover(m_scene.hitAt(event->position()));
}

void TimelineCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_drag.isPressed())
        return;
    const TimelineHit hit = m_drag.pressed();
    const bool wasDragged = m_drag.end(true);
    if (!wasDragged && hit.kind == Hit::marker) {
        if (const Flag* flag = m_scene.flags.find(hit.id))
            Q_EMIT seekRequested(std::clamp(flag->time, 0.0, m_scene.scale.duration()), true);
    }
    setHover(m_scene.hitAt(event->position()));
}

void TimelineCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const TimelineHit hit = m_scene.hitAt(event->position());
    TrimTimes trim = m_context.state.trim();
    if (hit.kind == Hit::trimStart)
        trim.start = 0;
    else if (hit.kind == Hit::trimEnd)
        trim.end = std::nullopt;
    else
        return mousePressEvent(event);
    m_context.state.setTrim(trim, &m_context.undo);
}

void TimelineCanvas::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Mouse)
        openMenu(m_scene.hitAt(event->pos()), event->pos());
    else
        openMenu(itemOfKeys());
}

void TimelineCanvas::openMenu(const TimelineHit& item, std::optional<QPoint> place) {
    endStepping();
    if (m_drag.isPressed() || item.kind == Hit::nothing)
        return;
    select(item);
    auto* menu = new CommandMenu(m_context, this);
    connect(menu, &QMenu::aboutToHide, this, [this] { Q_EMIT scrubbingChanged(false); });
    Q_EMIT scrubbingChanged(true);
    if (place && (item.kind == Hit::time || item.kind == Hit::trimLane))
        seekTo(place->x());
    fillTimelineMenu(*menu, m_context, m_scene, item,
                     [this](Command command) { Q_EMIT commandRequested(command); });
    menu->popup(mapToGlobal(place.value_or(m_scene.placeOf(item).toPoint())));
}

void TimelineCanvas::seekTo(double x) {
    const double time = std::clamp(m_scene.scale.time(x), 0.0, m_scene.scale.duration());
    Q_EMIT seekRequested(frameStart(time, m_scene.frameRate), true);
}

void TimelineCanvas::tellAboutCut(const CutZone& cut, const QString& note) {
    if (!m_scene.scale.shows(cut.start)) {
        m_scene.scale.reveal(cut.start, revealDistance);
        changeView();
    }
    const QPointF place = m_scene.placeOf({Hit::cut, cut.id});
    QToolTip::showText(mapToGlobal(place.toPoint()), cutToolTip(m_context, cut, note), this);
}

void TimelineCanvas::tellAtPlayhead(const QString& text) {
    const QPointF place = m_scene.placeOf({Hit::time, {}});
    QToolTip::showText(mapToGlobal(place.toPoint()), text, this);
}

void TimelineCanvas::leaveEvent(QEvent*) {
    if (!m_drag.isPressed())
        setHover({});
}

void TimelineCanvas::setHover(const TimelineHit& hit) {
    setCursor(cursorFor(hit.kind));
    const bool changes = hit != m_scene.hover;
    m_scene.hover = hit;
    if (changes)
        refresh();
}

}
