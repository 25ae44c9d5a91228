// The whole window over a session in a folder that goes away, with every question answered by the test.
#pragma once

#include "app/MainWindow.h"
#include "licensing/LicenceManager.h"
#include "licensing/RecordStore.h"
#include "persistence/Persistence.h"
#include "session/UndoStack.h"
#include "support/TestClips.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <memory>

namespace pointloom::test {

class Shell : public testing::Test {
protected:
    Shell();

    /// The window as at a start of the program; called again, the program is started again.
    void start();
    /// The action of the menus with this title; throws when there is none.
    QAction& action(const QString& title);
    /// The dialog of this kind that is open over the window; null when there is none.
    template <class Kind>
    Kind* sheet() const {
        return window->findChild<Kind*>();
    }
    void choose(const QString& title) { action(title).trigger(); }
    QStringList titlesIn(const QString& menu);
    UiContext context() { return {*state, *undo, defaults, dialogs, keys}; }
    QString path(const QString& name) const { return folder.path(name); }

    /// A session worth losing.
    void configure();
    /// A document with such a session, and with `video` when that is named.
    QString makeProject(const QString& name, const std::optional<QString>& video = {});
    QString makeClip(const QString& name, double seconds = 2);

    ClipFolder folder;
    UserDefaults defaults{folder.path(QStringLiteral("Pointloom.conf"))};
    PreparedDialogs dialogs;
    CommandKeys keys;
    CommandBridge bridge;
    std::optional<SessionLock> lock = SessionLock::tryAcquire(folder.path(QStringLiteral("data")));
    std::unique_ptr<Persistence> persistence;
    std::unique_ptr<AppState> state;
    std::unique_ptr<UndoStack> undo;
    std::unique_ptr<LicenceManager> licence;
    std::unique_ptr<ExportRunner> exports;
    std::unique_ptr<MainWindow> window;
};

/// Runs events until `isDone`, at most some seconds; false when it never was.
[[nodiscard]] bool eventually(const std::function<bool()>& isDone);

}
