// A drag on the timeline from the press of the button or of a key to its release, with the picture following
// it.
#pragma once

#include "ui/timeline/Gestures.h"

#include <memory>
#include <optional>
#include <QBasicTimer>
#include <QObject>

namespace pointloom {

class TimelineDrag : public QObject {
    Q_OBJECT

public:
    /// `scene` outlives it.
    TimelineDrag(const UiContext& context, const TimelineScene& scene, QObject* parent = nullptr);

    /// The button is pressed on `hit`. On a time that is a drag; on other items a move makes it one.
    void begin(const TimelineHit& hit, QPointF pointer, bool snaps);
    void moveTo(QPointF pointer, bool snaps);

    /// Moves an item `from` a time `to` another by a key, exactly; the first step begins the drag.
    void step(const TimelineHit& item, double from, double to);

    /// Without `commits` everything is as before, the playhead too. Returns whether there was a drag. A
    /// question may be asked, in an event loop of its own.
    bool end(bool commits);

    bool isPressed() const { return m_press.has_value(); }
    bool isByKey() const { return m_press && m_press->isByKey; }
    /// Where the button is pressed, or `nothing`.
    TimelineHit pressed() const { return m_press ? m_press->hit : TimelineHit(); }
    bool isDragging() const { return m_preview.has_value(); }
    const std::optional<DragPreview>& preview() const { return m_preview; }

    /// The playhead when the drag began, seconds.
    double origin() const { return m_origin; }

Q_SIGNALS:
    void previewChanged();
    /// Key frames are enough while the drag goes far.
    void seekRequested(double seconds, bool exact);
    void scrubbingChanged(bool isScrubbing);
    /// The pointer is beyond the edge.
    void scrollRequested(double points);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void start();
    bool grab();
    void update();
    void show(const DragPreview& preview);
    void seek(double moment, bool exact);
    double distanceBeyondEdge() const;

    struct Press {
        QPointF position;
        TimelineHit hit;
        double time = 0; // under the pointer
        bool isByKey = false;
    };

    UiContext m_context;
    const TimelineScene& m_scene;
    std::optional<Press> m_press;
    std::unique_ptr<Gesture> m_gesture;
    std::optional<DragPreview> m_preview;
    QPointF m_pointer;
    bool m_snaps = true;
    double m_origin = 0;
    double m_sought = 0; // seconds
    bool m_isExact = false;
    QBasicTimer m_edgeScroll;
    QBasicTimer m_rest; // until the frame itself is shown in place of its key frame
};

}
