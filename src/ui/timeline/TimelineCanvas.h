// The timeline's rows, painted and edited by dragging and by keys, without the controls around them.
#pragma once

#include "ui/common/BackgroundTask.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"
#include "ui/timeline/ThumbnailStore.h"
#include "ui/timeline/TimelineDrag.h"
#include "ui/timeline/TimelineItems.h"
#include "ui/timeline/TimelinePainting.h"
#include "ui/timeline/TimelineScene.h"
#include "ui/timeline/WaveformStore.h"

#include <optional>
#include <QPixmap>
#include <QWidget>

namespace pointloom {

class TimelineCanvas : public QWidget {
    Q_OBJECT

public:
    /// Thumbnails and peaks are cached on disk below `cacheRoot`.
    TimelineCanvas(const UiContext& context, const QString& cacheRoot, QWidget* parent = nullptr);

    const UiContext& context() const { return m_context; }
    const TimelineScene& scene() const { return m_scene; }
    const WaveformStore& sound() const { return m_waveform; }

    /// Around the playhead when it is visible, else around the middle.
    void zoomBy(double factor);
    void fit();
    void scrollTo(double offset);

    /// The item that the keys work on while the focus came by the keyboard: the playhead (`time`) until
    /// another one is gone to.
    const TimelineHit& currentItem() const { return m_current; }
    /// Selects the item, if it can be, and requests its time.
    void goTo(const TimelineHit& item);
    /// As a drag would, to exactly this time and as one step to undo.
    void moveItem(const TimelineHit& item, double time);
    /// Seconds; during a drag, where the item would be. Empty when it is gone.
    std::optional<double> shownTimeOf(const TimelineHit& item) const;
    /// Beside the item, or at a place in it where the commands are for that moment.
    void openMenu(const TimelineHit& item, std::optional<QPoint> place = {});

    /// Shows the tool tip of a cut beside it, with `note` below its range.
    void tellAboutCut(const CutZone& cut, const QString& note);

    /// Shows a tool tip at the playhead.
    void tellAtPlayhead(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void seekRequested(double seconds, bool exact);
    void scrubbingChanged(bool isScrubbing);
    void commandRequested(pointloom::Command command);
    void viewChanged(); // zoom or scroll position

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void bind();
    void takeClip();
    void takeFrameRate(double frameRate);
    void takeDuration();
    void takeShape();
    void takeMarkers();
    void takeRanges();
    void takeParts();
    void takeSelection();
    void takePlayhead();
    void takeDrag();

    void refresh();
    void layOut();
    void changeView();
    void showFont();
    TimelinePainting::Look look() const;
    void paintLayer();
    void paintWhatMoves(QPainter& painter);

    void select(const TimelineHit& hit);
    TimelineHit itemOfKeys() const;
    bool takesKey(const QKeyEvent& event) const;
    void goBeside(ItemDirection direction);
    void stepItem(const TimelineHit& item, double time);
    void stepCurrent(double seconds);
    void endStepping();
    void setCurrent(const TimelineHit& item);
    void dropCurrentUnlessSelected();
    void paintFocus(QPainter& painter);
    void seekTo(double x);
    void setHover(const TimelineHit& hit);

    static constexpr double revealDistance = 60; // points from the edge

    UiContext m_context;
    TimelineScene m_scene;
    ThumbnailStore m_thumbnails;
    WaveformStore m_waveform;
    struct ClipFacts {
        double frameRate = 0;
        std::vector<Seam> seams;
    };
    static ClipFacts readFacts(const media::Recording& recording);

    BackgroundTask<ClipFacts> m_frameRateReading;
    std::vector<std::int64_t> m_wantedThumbnails;

    QPixmap m_layer; // everything that does not move while playing
    bool m_isLayerStale = true;
    bool m_showsFocus = false; // it came by the keyboard
    TimelineHit m_current{TimelineHit::Kind::time, {}};

    TimelineDrag m_drag;

    Bindings m_bindings;
};

}
