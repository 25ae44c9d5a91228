#include "app/AppCommands.h"

#include <QApplication>
#include <QMenuBar>

namespace pointloom {

AppCommands::AppCommands(QMenuBar& menuBar, const UiContext& context, const CommandBridge& bridge)
    : m_context(context)
    , m_bridge(bridge) {
    QMenu& file = *menuBar.addMenu(QStringLiteral("&File"));
    add(file, Command::newSession, &CommandBridge::reset);
    add(file, Command::openProject, &CommandBridge::openProject);
    m_recent = file.addMenu(QStringLiteral("Open Recent"));
    add(file, Command::openVideo, &CommandBridge::openVideo);
    file.addSeparator();
    add(file, Command::saveProject, &CommandBridge::saveProject);
    add(file, Command::saveProjectAs, &CommandBridge::saveProjectAs);
    add(file, Command::exportVideo, &CommandBridge::exportVideo);
    file.addSeparator();
    add(file, Command::quit, &QApplication::closeAllWindows)->setMenuRole(QAction::QuitRole);

    QMenu& edit = *menuBar.addMenu(QStringLiteral("&Edit"));
    addUndo(edit, Command::undo, context.undo.canUndo(), context.undo.undoActionName(), &UndoStack::undo);
    addUndo(edit, Command::redo, context.undo.canRedo(), context.undo.redoActionName(), &UndoStack::redo);
    edit.addSeparator();
    add(edit, Command::showPreferences, &CommandBridge::showPreferences)
        ->setMenuRole(QAction::PreferencesRole);

    QMenu& help = *menuBar.addMenu(QStringLiteral("&Help"));
    add(help, Command::showHelp, &CommandBridge::showHelp);
    add(help, Command::downloadSampleCSV, &CommandBridge::downloadSampleCSV);
    help.addSeparator();
    add(help, Command::showAbout, &CommandBridge::showAbout)->setMenuRole(QAction::AboutRole);
    add(help, Command::showLicence, &CommandBridge::showLicense)
        ->setMenuRole(QAction::ApplicationSpecificRole);
}

QAction* AppCommands::add(QMenu& menu, Command command, std::function<void()> run) {
    QAction* action = menu.addAction(QString::fromUtf8(commandRow(command).title));
    const QList<QKeyCombination> keys = m_context.keys.of(command);
    action->setShortcuts(QList<QKeySequence>(keys.begin(), keys.end()));
    QObject::connect(action, &QAction::triggered, action, std::move(run));
    return action;
}

QAction* AppCommands::add(QMenu& menu, Command command, BridgeAction action) {
    return add(menu, command, [&bridge = m_bridge, action] { CommandBridge::call(bridge.*action); });
}

// "Undo Add Marker", disabled when there is no step.
void AppCommands::addUndo(QMenu& menu, Command command, QBindable<bool> isPossible, QBindable<QString> name,
                          void (UndoStack::*run)()) {
    QAction* action = add(menu, command, [&undo = m_context.undo, run] { (undo.*run)(); });
    const QString verb = action->text();
    m_bindings.watchAll(
        [action, verb, isPossible, name] {
            action->setEnabled(isPossible.value());
            action->setText(name.value().isEmpty() ? verb : verb + u' ' + name.value());
        },
        isPossible, name);
}

}
