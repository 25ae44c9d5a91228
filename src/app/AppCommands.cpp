#include "app/AppCommands.h"

#include "session/UndoStack.h"

#include <memory>
#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace pointloom::AppCommands {

namespace {

using BridgeAction = CommandBridge::Action CommandBridge::*;

struct Command {
    const char* title;
    const char* shortcuts; // parted by blanks; Qt's Ctrl is this desktop's command key
    BridgeAction action;
};

constexpr Command newSession{"New Session", "Ctrl+N", &CommandBridge::reset};
constexpr Command openProject{"Open Project…", "Ctrl+Shift+O", &CommandBridge::openProject};
constexpr Command openVideo{"Open Video…", "Ctrl+O", &CommandBridge::openVideo};
constexpr Command saveProject{"Save Project", "Ctrl+S", &CommandBridge::saveProject};
constexpr Command saveProjectAs{"Save Project As…", "Ctrl+Shift+S", &CommandBridge::saveProjectAs};
constexpr Command exportVideo{"Export Video…", "Ctrl+Shift+E", &CommandBridge::exportVideo};
constexpr Command preferences{"Preferences…", "Ctrl+,", &CommandBridge::showPreferences};
constexpr Command about{"About Pointloom", "", &CommandBridge::showAbout};
constexpr Command licence{"Licence…", "", &CommandBridge::showLicense};
constexpr Command help{"Help…", "Ctrl+? F1", &CommandBridge::showHelp};
constexpr Command sampleCSV{"Download Sample CSV…", "", &CommandBridge::downloadSampleCSV};

QAction* add(QMenu& menu, const Command& command, const CommandBridge& bridge) {
    QAction* action = menu.addAction(QString::fromUtf8(command.title));
    QList<QKeySequence> shortcuts;
    for (const QString& keys : QString::fromUtf8(command.shortcuts).split(u' ', Qt::SkipEmptyParts))
        shortcuts.append(QKeySequence(keys, QKeySequence::PortableText));
    action->setShortcuts(shortcuts);
    QObject::connect(action, &QAction::triggered, action,
                     [&bridge, command] { CommandBridge::call(bridge.*command.action); });
    return action;
}

// "Undo Add Marker", greyed out when there is nothing to take back.
void addUndo(QMenu& menu, const QString& verb, const QList<QKeySequence>& shortcuts,
             QBindable<bool> isPossible, QBindable<QString> name, std::function<void()> run) {
    QAction* action = menu.addAction(verb);
    action->setShortcuts(shortcuts);
    QObject::connect(action, &QAction::triggered, action, std::move(run));
    const auto update = [action, verb, isPossible, name] {
        action->setEnabled(isPossible.value());
        action->setText(name.value().isEmpty() ? verb : verb + u' ' + name.value());
    };
    update();
    // The notifiers live as long as the action.
    auto notifiers = std::make_shared<std::pair<QPropertyNotifier, QPropertyNotifier>>(
        isPossible.addNotifier(update), name.addNotifier(update));
    QObject::connect(action, &QObject::destroyed, [notifiers] {});
}

}

QMenu* fillMenuBar(QMenuBar& menuBar, const CommandBridge& bridge, UndoStack& undo) {
    QMenu& file = *menuBar.addMenu(QStringLiteral("&File"));
    add(file, newSession, bridge);
    add(file, openProject, bridge);
    QMenu* recent = file.addMenu(QStringLiteral("Open Recent"));
    add(file, openVideo, bridge);
    file.addSeparator();
    add(file, saveProject, bridge);
    add(file, saveProjectAs, bridge);
    add(file, exportVideo, bridge);
    file.addSeparator();
    QAction* quit = file.addAction(QStringLiteral("Quit"), qApp, &QApplication::closeAllWindows);
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    quit->setMenuRole(QAction::QuitRole);

    QMenu& edit = *menuBar.addMenu(QStringLiteral("&Edit"));
    addUndo(edit, QStringLiteral("Undo"), {Qt::CTRL | Qt::Key_Z}, undo.canUndo(), undo.undoActionName(),
            [&undo] { undo.undo(); });
    addUndo(edit, QStringLiteral("Redo"), {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y},
            undo.canRedo(), undo.redoActionName(), [&undo] { undo.redo(); });
    edit.addSeparator();
    add(edit, preferences, bridge)->setMenuRole(QAction::PreferencesRole);

    QMenu& helpMenu = *menuBar.addMenu(QStringLiteral("&Help"));
    add(helpMenu, help, bridge);
    add(helpMenu, sampleCSV, bridge);
    helpMenu.addSeparator();
    add(helpMenu, about, bridge)->setMenuRole(QAction::AboutRole);
    add(helpMenu, licence, bridge)->setMenuRole(QAction::ApplicationSpecificRole);
    return recent;
}

}
