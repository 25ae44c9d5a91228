// The timeline: the clip's whole length with its markers, trims and cuts, and controls to trim and zoom.
#pragma once

#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"
#include "ui/timeline/ClipCache.h"

#include <QWidget>

class QScrollBar;
class QToolButton;

namespace pointloom {

class TimelineCanvas;

/// Shows the playhead at `AppState::currentTime` and requests others by `seekRequested`.
class TimelineView : public QWidget {
    Q_OBJECT

public:
    explicit TimelineView(const UiContext& context, QWidget* parent = nullptr,
                          const QString& cacheRoot = ClipCache::standardRoot());

    TimelineCanvas& canvas() { return *m_canvas; }

    /// A trim that would leave nothing resets its other end.
    void trimStartAtPlayhead();
    void trimEndAtPlayhead();

    /// Adds a cut from the playhead over a tenth of the visible part, or ends the one around the playhead
    /// there; selects it and tells about it.
    void cutAtPlayhead();

    enum class Direction { back, forward };

    /// Requests the next moment at which a rally ends, by its sound, or says that none is heard.
    void goToRallyEnd(Direction direction);

    /// Shows the choice of what stays in the exported video.
    void chooseParts();

    /// Removes the selected cut, or else the selected marker.
    void removeSelection();

    void zoomIn();
    void zoomOut();
    void zoomToFit();

Q_SIGNALS:
    void seekRequested(double seconds, bool exact);
    void scrubbingChanged(bool isScrubbing);
    /// A command of the editor was chosen in a menu.
    void commandRequested(pointloom::Command command);

private:
    template <class Change>
    void trimAtPlayhead(Change change);
    QToolButton* addButton(const QString& icon, void (TimelineView::*action)());
    void showView();
    void showTexts();

    UiContext m_context;
    TimelineCanvas* m_canvas;
    QScrollBar* m_scrollBar;
    QToolButton* m_trimStart;
    QToolButton* m_trimEnd;
    QToolButton* m_addCut;
    QToolButton* m_parts;
    QToolButton* m_zoomOut;
    QToolButton* m_zoomIn;
    QToolButton* m_fit;
    Bindings m_bindings;
};

}
