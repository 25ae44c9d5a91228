#include "app/AppCommands.h"

#include "ui/common/CommandMenu.h"
#include "ui/wizard/WizardFlow.h"

#include <QApplication>
#include <QMenuBar>

namespace pointloom {

AppCommands::AppCommands(QMenuBar& menuBar, const UiContext& context, const CommandBridge& bridge)
    : m_context(context)
    , m_bridge(bridge) {
    QMenu& file = addMenu(menuBar, L10nKey::commandFileMenu);
    add(file, Command::newSession, &CommandBridge::reset);
    add(file, Command::openProject, &CommandBridge::openProject);
    m_recent = &addMenu(file, L10nKey::commandOpenRecent);
    add(file, Command::openVideo, &CommandBridge::openVideo);
    file.addSeparator();
    add(file, Command::saveProject, &CommandBridge::saveProject);
    add(file, Command::saveProjectAs, &CommandBridge::saveProjectAs);
    add(file, Command::exportVideo, &CommandBridge::exportVideo);
    add(file, Command::showQueue, &CommandBridge::showQueue);
    file.addSeparator();
    add(file, Command::quit, &QApplication::closeAllWindows)->setMenuRole(QAction::QuitRole);

    QMenu& edit = addMenu(menuBar, L10nKey::commandEditMenu);
    addUndo(edit, Command::undo, L10nKey::commandUndoNamed, context.undo.canUndo(),
            context.undo.undoActionName(), &UndoStack::undo);
    addUndo(edit, Command::redo, L10nKey::commandRedoNamed, context.undo.canRedo(),
            context.undo.redoActionName(), &UndoStack::redo);
    edit.addSeparator();
    addScreens(edit);
    edit.addSeparator();
    add(edit, Command::showPreferences, &CommandBridge::showPreferences)
        ->setMenuRole(QAction::PreferencesRole);

    QMenu& view = addMenu(menuBar, L10nKey::commandViewMenu);
    addInEditor(view, {Command::zoomIn, Command::zoomOut, Command::zoomToFit});
    view.addSeparator();
    addInEditor(view, {Command::previewFrame});

    QMenu& playback = addMenu(menuBar, L10nKey::commandPlaybackMenu);
    addInEditor(playback, {Command::playPause, Command::playFaster, Command::jumpBack, Command::playKept});
    playback.addSeparator();
    addInEditor(playback, {Command::goToTime, Command::goToStart, Command::goToEnd});
    playback.addSeparator();
    addInEditor(playback, {Command::frameBack, Command::frameForward, Command::previousMarker,
                           Command::nextMarker, Command::previousRallyEnd, Command::nextRallyEnd});

    QMenu& help = addMenu(menuBar, L10nKey::commandHelpMenu);
    add(help, Command::showHelp, &CommandBridge::showHelp);
    add(help, Command::openSample, &CommandBridge::openSample);
    add(help, Command::downloadSampleCSV, &CommandBridge::downloadSampleCSV);
    help.addSeparator();
    add(help, Command::showNews, &CommandBridge::showNews);
    add(help, Command::showAbout, &CommandBridge::showAbout)->setMenuRole(QAction::AboutRole);
    add(help, Command::showLicence, &CommandBridge::showLicense)
        ->setMenuRole(QAction::ApplicationSpecificRole);
}

template <class Parent>
QMenu& AppCommands::addMenu(Parent& parent, L10nKey title) {
    QMenu* menu = parent.addMenu(QString());
    m_bindings.watch(m_context.state.language,
                     [this, menu, title] { menu->setTitle(m_context.text(title)); });
    return *menu;
}

QAction* AppCommands::addUntitled(QMenu& menu, Command command, std::function<void()> run) {
    QAction* action = menu.addAction(QString());
    m_bindings.watchAll(
        [this, action, command] {
            const CommandKeys::Keys keys = m_context.keys.of(command);
            action->setShortcuts(QList<QKeySequence>(keys.begin(), keys.end()));
        },
        m_context.keys.chosen());
    QObject::connect(action, &QAction::triggered, action, std::move(run));
    return action;
}

QAction* AppCommands::add(QMenu& menu, Command command, std::function<void()> run) {
    QAction* action = addUntitled(menu, command, std::move(run));
    m_bindings.watch(m_context.state.language, [this, action, command] {
        action->setText(m_context.text(*commandRow(command).title));
    });
    return action;
}

QAction* AppCommands::add(QMenu& menu, Command command, BridgeAction action) {
    return add(menu, command, [&bridge = m_bridge, action] { CommandBridge::call(bridge.*action); });
}

// The editor handles the keys itself, so that text fields keep theirs.
void AppCommands::addInEditor(QMenu& menu, std::initializer_list<Command> commands) {
    for (const Command command : commands) {
        QAction* action = menu.addAction(QString());
        QObject::connect(action, &QAction::triggered, action, [&bridge = m_bridge, command] {
            if (bridge.runInEditor)
                bridge.runInEditor(command);
        });
        m_bindings.watchAll(
            [this, action, command] {
                action->setText(entryText(m_context, command));
                action->setEnabled(m_context.state.step == Screen::editor);
            },
            m_context.state.language, m_context.state.step, m_context.keys.chosen());
    }
}

// The pages of the wizard and the editor, enabled when what comes before them is done.
void AppCommands::addScreens(QMenu& menu) {
    constexpr std::pair<Command, Screen> screens[] = {{Command::goToSport, Screen::sport},
                                                      {Command::goToScoreboard, Screen::scoreboard},
                                                      {Command::goToMatch, Screen::match},
                                                      {Command::goToVideo, Screen::video},
                                                      {Command::goToEditor, Screen::editor}};
    AppState& state = m_context.state;
    for (const auto& [command, screen] : screens) {
        QAction* action = add(menu, command, [this, target = screen] {
            if (m_bridge.goTo)
                m_bridge.goTo(target);
        });
        m_bindings.watchAll(
            [this, action, target = screen] { action->setEnabled(isReachable(m_context.state, target)); },
            state.step, state.selectedTemplate, state.matchConfig, state.videoURL);
    }
}

// "Undo Add Marker", disabled when there is no step.
void AppCommands::addUndo(QMenu& menu, Command command, L10nKey withName, QBindable<bool> isPossible,
                          QBindable<std::optional<L10nKey>> name, void (UndoStack::*run)()) {
    QAction* action = addUntitled(menu, command, [&undo = m_context.undo, run] { (undo.*run)(); });
    m_bindings.watchAll(
        [this, action, command, withName, isPossible, name] {
            action->setEnabled(isPossible.value());
            action->setText(name.value() ? format(m_context.text(withName), m_context.text(*name.value()))
                                         : m_context.text(*commandRow(command).title));
        },
        m_context.state.language, isPossible, name);
}

}
