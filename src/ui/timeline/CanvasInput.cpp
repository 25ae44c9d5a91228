// What the pointer does on the timeline's canvas.
#include "ui/timeline/TimelineCanvas.h"

#include "l10n/L10nKey.h"
#include "ui/timeline/TimelineToolTips.h"

#include <algorithm>
#include <cmath>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QToolTip>
#include <QWheelEvent>

namespace pointloom {

namespace {

constexpr double dragThreshold = 4; // points
constexpr double snapDistance = 7;  // points
constexpr double wheelNotch = 120;  // eighths of a degree
constexpr double pointsPerNotch = 96;
constexpr double zoomPerNotch = 1.25;
constexpr int edgeScrollInterval = 25; // milliseconds

Qt::CursorShape cursorFor(TimelineHit::Kind kind) {
    switch (kind) {
    case TimelineHit::Kind::trimStart:
    case TimelineHit::Kind::trimEnd:
    case TimelineHit::Kind::cutStart:
    case TimelineHit::Kind::cutEnd:
        return Qt::SizeHorCursor;
    case TimelineHit::Kind::marker:
    case TimelineHit::Kind::cut:
        return Qt::PointingHandCursor;
    case TimelineHit::Kind::nothing:
    case TimelineHit::Kind::time:
    case TimelineHit::Kind::trimLane:
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
    // A plain wheel turns along the one way that there is to scroll.
    const bool isFine = !event->pixelDelta().isNull();
    const QPointF way =
        isFine ? QPointF(event->pixelDelta()) : QPointF(degrees) * (pointsPerNotch / wheelNotch);
    scrollTo(m_scene.scale.offset() - (std::abs(way.x()) > std::abs(way.y()) ? way.x() : way.y()));
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
    if (event->type() == QEvent::ToolTip && !m_gesture) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QString text = toolTipFor(m_scene.hitAt(help->pos()));
        QToolTip::showText(help->globalPos(), text, this);
        return true;
    }
    if (event->type() == QEvent::ShortcutOverride && m_press &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void TimelineCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_press)
        return;
    const TimelineHit hit = m_scene.hitAt(event->position());
    if (hit.kind == TimelineHit::Kind::nothing)
        return;
    QToolTip::hideText();
    m_press = Press{event->position(), hit, m_scene.scale.time(event->position().x())};
    m_pointer = event->position();
    m_snaps = !event->modifiers().testFlag(Qt::AltModifier);
    press(hit, m_press->time);
}

void TimelineCanvas::press(const TimelineHit& hit, double time) {
    AppState& state = m_context.state;
    switch (hit.kind) {
    case TimelineHit::Kind::time:
        m_isScrubbing = true;
        Q_EMIT scrubbingChanged(true);
        m_gesture = makeGesture(hit, time);
        moveGesture();
        break;
    case TimelineHit::Kind::marker:
        state.selectedMarkerID = hit.id;
        state.selectedCutID = std::nullopt;
        break;
    case TimelineHit::Kind::cut:
    case TimelineHit::Kind::cutStart:
    case TimelineHit::Kind::cutEnd:
        state.selectedMarkerID = std::nullopt;
        state.selectedCutID = hit.id;
        break;
    case TimelineHit::Kind::trimLane:
        state.selectedCutID = std::nullopt;
        break;
    case TimelineHit::Kind::trimStart:
    case TimelineHit::Kind::trimEnd:
    case TimelineHit::Kind::nothing:
        break;
    }
}

void TimelineCanvas::mouseMoveEvent(QMouseEvent* event) {
    m_pointer = event->position();
    m_snaps = !event->modifiers().testFlag(Qt::AltModifier);
    if (!m_press) {
        setHover(m_scene.hitAt(m_pointer));
        return;
    }
    if (!m_gesture && std::abs(m_pointer.x() - m_press->position.x()) >= dragThreshold)
        m_gesture = makeGesture(m_press->hit, m_press->time);
    if (m_gesture)
        moveGesture();
}

std::unique_ptr<Gesture> TimelineCanvas::makeGesture(const TimelineHit& hit, double grabbedAt) {
    using Kind = TimelineHit::Kind;
    SnapRules rules = rulesFor(hit);
    const auto cutDrag = [&](CutPart part) -> std::unique_ptr<Gesture> {
        const auto cut = std::ranges::find(m_scene.cuts, hit.id, &CutZone::id);
        return cut == m_scene.cuts.end() ? nullptr
                                         : makeCutDrag(m_context, *cut, part, grabbedAt, std::move(rules));
    };
    switch (hit.kind) {
    case Kind::time:
        return makeScrub([this](double time, bool exact) { Q_EMIT seekRequested(time, exact); },
                         m_scene.playhead, std::move(rules));
    case Kind::marker: {
        const auto& markers = m_context.state.markers.value();
        const auto marker = std::ranges::find(markers, hit.id, &Marker::id);
        return marker == markers.end() ? nullptr
                                       : makeMarkerDrag(m_context, *marker, grabbedAt, std::move(rules));
    }
    case Kind::trimStart:
        return makeTrimDrag(m_context, TrimEdge::start, std::move(rules));
    case Kind::trimEnd:
        return makeTrimDrag(m_context, TrimEdge::end, std::move(rules));
    case Kind::cut:
        return cutDrag(CutPart::whole);
    case Kind::cutStart:
        return cutDrag(CutPart::start);
    case Kind::cutEnd:
        return cutDrag(CutPart::end);
    case Kind::trimLane:
        return makeNewCut(m_context, grabbedAt, std::move(rules));
    case Kind::nothing:
        break;
    }
    return nullptr;
}

SnapRules TimelineCanvas::rulesFor(const TimelineHit& hit) const {
    using Kind = TimelineHit::Kind;
    SnapRules rules;
    rules.frameRate = m_scene.frameRate;
    rules.duration = m_scene.scale.duration();
    rules.reach = snapDistance / m_scene.scale.pointsPerSecond();
    if (hit.kind == Kind::time)
        return rules;
    rules.targets.push_back(m_scene.playhead);
    for (const Flag& flag : m_scene.flags.flags()) {
        if (flag.id != hit.id && std::isfinite(flag.time))
            rules.targets.push_back(flag.time);
    }
    if (hit.kind == Kind::marker)
        return rules;
    for (const CutZone& cut : m_scene.cuts) {
        if (cut.id != hit.id)
            rules.targets.insert(rules.targets.end(), {cut.start, cut.end});
    }
    if (hit.kind != Kind::trimStart)
        rules.targets.push_back(m_scene.trim.start);
    if (hit.kind != Kind::trimEnd)
        rules.targets.push_back(m_scene.trimEnd());
    return rules;
}

void TimelineCanvas::moveGesture() {
    m_preview = m_gesture->move(m_scene.scale.time(m_pointer.x()), m_snaps);
    const bool isBeyond = m_pointer.x() < 0 || m_pointer.x() > width();
    if (isBeyond && !m_edgeScroll.isActive())
        m_edgeScroll.start(edgeScrollInterval, this);
    else if (!isBeyond)
        m_edgeScroll.stop();
    if (m_preview.marker && m_scene.movingMarker != m_preview.marker->first) {
        m_scene.movingMarker = m_preview.marker->first;
        refresh();
    }
    if (m_preview.trim || m_preview.cut)
        takeRanges();
    update();
}

void TimelineCanvas::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_edgeScroll.timerId())
        return;
    constexpr double share = 0.25; // of the way that the pointer is outside
    const double beyond = m_pointer.x() < 0 ? m_pointer.x() : std::max(0.0, m_pointer.x() - width());
    scrollTo(m_scene.scale.offset() + beyond * share);
    if (m_gesture)
        moveGesture();
}

void TimelineCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_press)
        return;
    const TimelineHit hit = m_press->hit;
    const bool wasDragged = m_gesture != nullptr;
    endGesture(true);
    if (!wasDragged && hit.kind == TimelineHit::Kind::marker) {
        if (const Flag* flag = m_scene.flags.find(hit.id))
            Q_EMIT seekRequested(std::clamp(flag->time, 0.0, m_scene.scale.duration()), true);
    }
    setHover(m_scene.hitAt(event->position()));
}

void TimelineCanvas::endGesture(bool commits) {
    m_edgeScroll.stop();
    m_press.reset();
    // The session shows what the gesture leaves behind, not what it has previewed.
    m_preview = {};
    m_scene.movingMarker.reset();
    if (const auto gesture = std::exchange(m_gesture, nullptr)) {
        if (commits)
            gesture->commit();
        else
            gesture->cancel();
    }
    if (std::exchange(m_isScrubbing, false))
        Q_EMIT scrubbingChanged(false);
    takeRanges();
}

void TimelineCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const TimelineHit hit = m_scene.hitAt(event->position());
    TrimTimes trim = trimOf(m_context.state);
    if (hit.kind == TimelineHit::Kind::trimStart)
        trim.start = 0;
    else if (hit.kind == TimelineHit::Kind::trimEnd)
        trim.end = std::nullopt;
    else
        return mousePressEvent(event);
    setTrim(m_context.state, trim, &m_context.undo);
}

void TimelineCanvas::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_press)
        endGesture(false);
    else
        QWidget::keyPressEvent(event);
}

void TimelineCanvas::leaveEvent(QEvent*) {
    if (!m_press)
        setHover({});
}

void TimelineCanvas::setHover(const TimelineHit& hit) {
    setCursor(cursorFor(hit.kind));
    const bool changes = hit != m_scene.hover;
    m_scene.hover = hit;
    if (changes)
        refresh();
}

void TimelineCanvas::focusInEvent(QFocusEvent* event) {
    m_showsFocus = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                   event->reason() == Qt::ShortcutFocusReason;
    update();
}

void TimelineCanvas::focusOutEvent(QFocusEvent*) {
    m_showsFocus = false;
    update();
}

QString TimelineCanvas::toolTipFor(const TimelineHit& hit) const {
    using Kind = TimelineHit::Kind;
    switch (hit.kind) {
    case Kind::marker: {
        const auto& markers = m_context.state.markers.value();
        const auto marker = std::ranges::find(markers, hit.id, &Marker::id);
        return marker == markers.end() ? QString() : markerToolTip(m_context, *marker);
    }
    case Kind::cut:
    case Kind::cutStart:
    case Kind::cutEnd: {
        const auto cut = std::ranges::find(m_scene.cuts, hit.id, &CutZone::id);
        return cut == m_scene.cuts.end() ? QString() : cutToolTip(m_context, *cut);
    }
    case Kind::trimStart:
        return trimToolTip(m_context, L10nKey::timelineExportStart, m_scene.trim.start);
    case Kind::trimEnd:
        return trimToolTip(m_context, L10nKey::timelineExportEnd, m_scene.trimEnd());
    case Kind::time:
    case Kind::trimLane:
    case Kind::nothing:
        break;
    }
    return {};
}

}
