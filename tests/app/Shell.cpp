#include "app/Shell.h"

#include "persistence/ProjectSession.h"
#include "support/Sessions.h"
#include "ui/common/Preferences.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace pointloom::test {

Shell::Shell() {
    Theme::shared().apply(*qApp, ThemeChoice::dark);
    defaults.setBoolean("crashConsentAsked", true);
    start();
}

void Shell::start() {
    window.reset();
    exports.reset();
    undo.reset();
    state.reset();
    persistence = std::make_unique<Persistence>(defaults, *lock);
    state = std::make_unique<AppState>(persistence.get());
    state->language = Preferences::firstLanguage(defaults, {});
    persistence->load(*state);
    undo = std::make_unique<UndoStack>();
    licence = std::make_unique<LicenceManager>(LicenceManager::Parts{
        .info = {},
        .store = std::make_unique<FileRecordStore>(path(QStringLiteral("licence.json"))),
        .machineId = "machine"});
    exports = std::make_unique<ExportRunner>(*state, path(QStringLiteral("data/exports.json")));
    exports->queue().restore();
    window = std::make_unique<MainWindow>(context(), *licence, *exports, bridge);
    window->show();
    QCoreApplication::processEvents();
}

QAction& Shell::action(const QString& title) {
    for (QMenu* menu : window->menuBar()->findChildren<QMenu*>()) {
        for (QAction* candidate : menu->actions()) {
            if (candidate->text().section(u'\t', 0, 0) == title) // what follows is its key
                return *candidate;
        }
    }
    throw std::runtime_error("no menu holds " + title.toStdString());
}

QStringList Shell::titlesIn(const QString& menu) {
    QStringList titles;
    for (const QAction* opener : window->menuBar()->actions()) {
        if (opener->text() != menu)
            continue;
        for (const QAction* candidate : opener->menu()->actions())
            titles.append(candidate->isSeparator() ? QStringLiteral("-") : candidate->text());
    }
    return titles;
}

void Shell::configure() {
    state->selectedTemplate = TemplateID::broadcast;
    state->matchConfig = tennisMatch();
    state->markers = std::vector{markerAt(1), markerAt(2)};
    state->save();
    QCoreApplication::processEvents();
}

QString Shell::makeProject(const QString& name, const std::optional<QString>& video) {
    AppState session;
    session.selectedTemplate = TemplateID::wimbledon;
    session.matchConfig = tennisMatch();
    session.markers = std::vector{markerAt(1)};
    session.trimStart = 0.5;
    session.scoreboardPosition = QPointF(0.5, 0.75);
    if (video)
        session.videoURL = QUrl::fromLocalFile(*video);
    projectFrom(session).save(path(name));
    return path(name);
}

QString Shell::makeClip(const QString& name, double seconds) {
    return folder.make(
        name, QStringLiteral("-f lavfi -i testsrc2=s=320x180:r=25:d=%1 -c:v libx264 -preset ultrafast "
                             "-pix_fmt yuv420p")
                  .arg(seconds)
                  .split(u' '));
}

bool eventually(const std::function<bool()>& isDone) {
    return QTest::qWaitFor(isDone, 10000);
}

}
