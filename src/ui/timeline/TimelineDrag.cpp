#include "ui/timeline/TimelineDrag.h"

#include <algorithm>
#include <cmath>
#include <QTimerEvent>
#include <utility>

namespace pointloom {

namespace {

constexpr double dragThreshold = 4;      // points
constexpr double nearby = 1;             // seconds; moves that are shorter show every frame exactly
constexpr int restTime = 120;            // milliseconds
constexpr int edgeScrollInterval = 25;   // milliseconds
constexpr double edgeScrollShare = 0.25; // of the distance to the pointer

}

TimelineDrag::TimelineDrag(const UiContext& context, const TimelineScene& scene, QObject* parent)
    : QObject(parent)
    , m_context(context)
    , m_scene(scene) {}

void TimelineDrag::begin(const TimelineHit& hit, QPointF pointer, bool snaps) {
    m_press = Press{.position = pointer, .hit = hit, .time = m_scene.scale.time(pointer.x())};
    m_pointer = pointer;
    m_snaps = snaps;
    if (hit.kind == TimelineHit::Kind::time)
        start();
}

void TimelineDrag::moveTo(QPointF pointer, bool snaps) {
    m_pointer = pointer;
    m_snaps = snaps;
    if (m_gesture)
        update();
    else if (m_press && std::abs(m_pointer.x() - m_press->position.x()) >= dragThreshold)
        start();
}

void TimelineDrag::step(const TimelineHit& item, double from, double to) {
    if (!m_press) {
        m_press = Press{.position = {}, .hit = item, .time = from, .isByKey = true};
        grab();
    }
    if (m_gesture)
        show(m_gesture->move(to, false));
    else
        m_press.reset();
}

void TimelineDrag::start() {
    if (grab())
        update();
}

bool TimelineDrag::grab() {
    m_gesture = makeGesture(m_context, m_scene, m_press->hit, m_press->time);
    if (!m_gesture)
        return false;
    m_origin = m_scene.playhead;
    m_sought = m_origin;
    m_isExact = false;
    Q_EMIT scrubbingChanged(true);
    return true;
}

void TimelineDrag::update() {
    if (distanceBeyondEdge() == 0)
        m_edgeScroll.stop();
    else if (!m_edgeScroll.isActive())
        m_edgeScroll.start(edgeScrollInterval, this);
    show(m_gesture->move(m_scene.scale.time(m_pointer.x()), m_snaps));
}

void TimelineDrag::show(const DragPreview& preview) {
    m_preview = preview;
    const double moment = preview.moment;
    if (moment != m_sought || !m_isExact)
        seek(moment, std::abs(moment - m_sought) < nearby);
    Q_EMIT previewChanged();
}

void TimelineDrag::seek(double moment, bool exact) {
    m_sought = moment;
    m_isExact = exact;
    if (exact)
        m_rest.stop();
    else
        m_rest.start(restTime, this);
    Q_EMIT seekRequested(moment, exact);
}

// Negative at the left.
double TimelineDrag::distanceBeyondEdge() const {
    return m_pointer.x() - std::clamp(m_pointer.x(), 0.0, m_scene.scale.width());
}

void TimelineDrag::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_rest.timerId()) {
        seek(m_sought, true);
    } else if (event->timerId() == m_edgeScroll.timerId()) {
        Q_EMIT scrollRequested(distanceBeyondEdge() * edgeScrollShare);
        if (m_gesture)
            update();
    }
}

bool TimelineDrag::end(bool commits) {
    m_edgeScroll.stop();
    m_rest.stop();
    const auto gesture = std::exchange(m_gesture, nullptr);
    // What is dragged stays under the pointer while a question is asked.
    const bool isDone = gesture && commits && gesture->commit();
    m_press.reset();
    if (!gesture)
        return false;
    // From now on the session is shown instead of the preview.
    const double moment = std::exchange(m_preview, std::nullopt)->moment;
    seek(isDone ? moment : m_origin, true);
    Q_EMIT scrubbingChanged(false);
    Q_EMIT previewChanged();
    return true;
}

}
