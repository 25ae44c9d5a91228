// The window: menus, title, dropped files, its size between runs.
#pragma once

#include "app/AppCommands.h"
#include "app/TopLevelView.h"
#include "ui/export/ExportRunner.h"
#include "ui/export/TaskBarProgress.h"

#include <QMainWindow>
#include <QTimer>

namespace pointloom {

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// The arguments outlive the window.
    MainWindow(const UiContext& context, LicenceManager& licence, ExportRunner& exports,
               CommandBridge& bridge = CommandBridge::shared());

    TopLevelView& content() { return *m_content; }

    /// Raises and activates the window as far as the desktop allows it.
    void bringToFront();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void restorePlace();
    void fillRecentProjects();
    void watchDocument();
    void watchExports();
    void updateTitle();

    UiContext m_context;
    ExportRunner& m_exports;
    TopLevelView* m_content;
    AppCommands m_commands;
    TaskBarProgress m_taskBar;
    QTimer m_titleUpdate; // one for all changes of a moment
    Bindings m_bindings;
};

}
