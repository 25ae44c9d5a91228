// The editor: picture with the scoreboard, transport, timeline, and the sidebar with markers and scores.
#pragma once

#include "ui/editor/EditorCommands.h"
#include "ui/editor/EditorKeys.h"
#include "ui/editor/EditorPlayback.h"
#include "ui/editor/EditorSidebar.h"
#include "ui/editor/PictureStage.h"
#include "ui/editor/TransportBar.h"
#include "ui/timeline/TimelineView.h"

#include <QSplitter>

namespace pointloom {

/// Plays the session's `videoURL`. Keys are in Commands.h.
class EditorView : public QWidget {
    Q_OBJECT

public:
    explicit EditorView(const UiContext& context, QWidget* parent = nullptr);
    ~EditorView() override;

    EditorPlayback& playback() { return m_playback; }
    PictureStage& stage() { return *m_stage; }
    TimelineView& timeline() { return *m_timeline; }
    EditorSidebar& sidebar() { return *m_sidebar; }

    void setHardwareDecoding(bool enabled) { m_playback.setHardwareDecoding(enabled); }
    void setQuickPictures(bool enabled) { m_playback.setQuickPictures(enabled); }

    /// Carries out a command of the group `editor`.
    void run(Command command) { m_keys->run(command); }

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void exportRequested();
    void previewFrameRequested();
    void importRequested();
    /// The user wants to change the names of the match.
    void editNamesRequested();
    void screenRequested(Screen screen);
    void nameRequested(Side side); // to be edited

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makePictureColumn();
    void arrange();
    void giveTimelineWhatThePictureLeaves();
    EditorCommands::ShownFrame shownFrame() const;
    void holdWhileScrubbing(bool isScrubbing);
    EditorKeys::Actions actions();
    void sayScore();
    void goToNeighbour(EditorCommands::Neighbour which);

    UiContext m_context;
    EditorPlayback m_playback;
    PictureStage* m_stage;
    TransportBar* m_transport;
    TimelineView* m_timeline;
    EditorSidebar* m_sidebar;
    QSplitter* m_columns;
    QSplitter* m_rows;
    EditorKeys* m_keys;
    Bindings m_bindings;
    bool m_resumes = false;              // playing when scrubbing began
    bool m_isArranged = false;           // sizes are chosen when it is first shown
    std::optional<int> m_sidebarWidth;   // points, when chosen by hand
    std::optional<int> m_timelineHeight; // points, when chosen by hand
};

}
