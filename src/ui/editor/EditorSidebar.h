// The editor's sidebar: the score at the playhead, the markers, and the score of the selected one.
#pragma once

#include "persistence/MarkerImport.h"
#include "ui/common/LiveScoreboard.h"
#include "ui/common/ScoreboardView.h"
#include "ui/common/UiContext.h"
#include "ui/editor/CountBar.h"
#include "ui/editor/MarkerListView.h"
#include "ui/editor/MessageBar.h"
#include "ui/editor/ScorePanel.h"
#include "ui/style/Bindings.h"

#include <QPushButton>
#include <QToolButton>
#include <QWidget>

namespace pointloom {

class EditorSidebar : public QWidget {
    Q_OBJECT

public:
    explicit EditorSidebar(const UiContext& context, QWidget* parent = nullptr);

    MarkerListView& markers() { return *m_markers; }
    MessageBar& messages() { return *m_messages; }
    CountBar& count() { return *m_count; }
    ScorePanel& panel() { return *m_panel; }

    /// Asks for a file and imports its markers; what became of them is said above the list.
    void importMarkersFromFile();

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void addMarkerRequested();
    void exportRequested();
    void screenRequested(Screen screen);
    void nameRequested(Side side); // pressed on the scoreboard
    void seekRequested(double seconds);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeLiveScore();
    QWidget* makeInitialScore();
    QWidget* makeListHead();
    QWidget* makeButtons();
    void showImport();
    void takeNames();
    void forgetImport();
    void showLiveScore();
    void nameLiveScore();
    void fitScoreboard();

    UiContext m_context;
    Bindings m_bindings; // before the parts that are made with it
    LiveScoreboard m_scoreboard;
    ScoreboardView* m_scoreboardView;
    QToolButton* m_back = nullptr;
    QToolButton* m_editMatch = nullptr;
    MarkerListView* m_markers;
    MessageBar* m_messages;
    CountBar* m_count;
    ScorePanel* m_panel;
    ImportOutcome m_imported; // the latest
    QToolButton* m_editInitial = nullptr;
    QToolButton* m_import = nullptr;
    QPushButton* m_add = nullptr;
    QPushButton* m_export = nullptr;
};

}
