// The menus: entries of the table of commands in the session's language, carried out through the bridge.
#pragma once

#include "app/CommandBridge.h"
#include "ui/common/UiContext.h"
#include "ui/style/Bindings.h"

#include <initializer_list>
#include <QAction>

class QMenu;
class QMenuBar;

namespace pointloom {

class AppCommands {
public:
    /// Fills the menu bar. `bridge` is read when a command is chosen; it and what `context` names outlive the
    /// menus.
    AppCommands(QMenuBar& menuBar, const UiContext& context, const CommandBridge& bridge);

    /// The menu of recent projects, which its owner fills.
    QMenu& recentProjects() { return *m_recent; }

private:
    using BridgeAction = CommandBridge::Action CommandBridge::*;

    template <class Parent>
    QMenu& addMenu(Parent& parent, L10nKey title);
    QAction* addUntitled(QMenu& menu, Command command, std::function<void()> run);
    QAction* add(QMenu& menu, Command command, std::function<void()> run);
    QAction* add(QMenu& menu, Command command, BridgeAction action);
    void addInEditor(QMenu& menu, std::initializer_list<Command> commands);
    void addScreens(QMenu& menu);
    void addUndo(QMenu& menu, Command command, L10nKey withName, QBindable<bool> isPossible,
                 QBindable<std::optional<L10nKey>> name, void (UndoStack::*run)());

    UiContext m_context;
    const CommandBridge& m_bridge;
    QMenu* m_recent;
    Bindings m_bindings;
};

}
