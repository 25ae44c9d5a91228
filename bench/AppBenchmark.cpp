// Times that a user waits: for the window after a start, and for a long project after opening it.
#include "app/MainWindow.h"
#include "licensing/LicenceManager.h"
#include "licensing/RecordStore.h"
#include "persistence/InstanceChannel.h"
#include "persistence/Persistence.h"
#include "persistence/ProjectSession.h"
#include "session/UndoStack.h"
#include "ui/export/ExportRunner.h"
#include "ui/style/Theme.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace pointloom {
namespace {

ProjectFile longProject(std::int64_t markerCount, const QString& video) {
    AppState session;
    session.selectedTemplate = TemplateID::broadcast;
    MatchConfig config;
    config.team1.player1 = QStringLiteral("Dravnik");
    config.team2.player1 = QStringLiteral("Solvane");
    config.numberOfSets = 3;
    session.matchConfig = config;
    std::vector<Marker> markers;
    for (std::int64_t i = 0; i < markerCount; ++i) {
        ScoreState score{
            .sets = {{6, i % 7, {}}, {7, 6, 4}, {i % 5, 3, {}}}, .currentGame = {}, .servingTeam = 1};
        markers.push_back(
            {QUuid::createUuid(), 3.0 * static_cast<double>(i), score, QStringLiteral("Rally %1").arg(i)});
    }
    session.markers = markers;
    session.videoURL = QUrl::fromLocalFile(video);
    return projectFrom(session);
}

// A started program answers another start as soon as its window is shown and its event loop runs.
void coldStart(benchmark::State& run) {
    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(QStringLiteral("config"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(QStringLiteral("data"))));
    const QString data = folder.filePath(QStringLiteral("data/Pointloom"));
    QDir().mkpath(data);
    UserDefaults(UserDefaults::standardPath()).setBoolean("crashConsentAsked", true);
    for ([[maybe_unused]] const auto step : run) {
        const auto start = std::chrono::steady_clock::now();
        QProcess program;
        program.setProcessChannelMode(QProcess::SeparateChannels);
        program.start(QCoreApplication::applicationDirPath() + QStringLiteral("/pointloom"), QStringList());
        if (!handOver(data, {}, std::chrono::seconds(20)))
            run.SkipWithError("the program did not answer");
        run.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        program.kill();
        program.waitForFinished();
    }
}
BENCHMARK(coldStart)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);

void openProject(benchmark::State& run) {
    const QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(QStringLiteral("Pointloom.ini")));
    defaults.setBoolean("crashConsentAsked", true);
    const auto lock = SessionLock::tryAcquire(folder.path());
    Persistence persistence(defaults, *lock);
    AppState state(&persistence);
    UndoStack undo;
    DesktopDialogs dialogs{state, defaults};
    CommandKeys keys;
    LicenceManager licence(
        {.info = {},
         .store = std::make_unique<FileRecordStore>(folder.filePath(QStringLiteral("licence"))),
         .machineId = "bench"});
    Theme::shared().apply(*qApp, ThemeChoice::dark);
    ExportRunner exports(state);
    MainWindow window({state, undo, defaults, dialogs, keys}, licence, exports);
    window.show();
    QCoreApplication::processEvents();

    const QString video = folder.filePath(QStringLiteral("match.mp4"));
    QProcess::execute(QCoreApplication::applicationDirPath() + QStringLiteral("/sample-clip"),
                      {video, QStringLiteral("--size"), QStringLiteral("640x360"),
                       QStringLiteral("--seconds"), QStringLiteral("2")});
    const QString project = folder.filePath(QStringLiteral("match.plp"));
    longProject(run.range(0), video).save(project);
    for ([[maybe_unused]] const auto step : run) {
        window.content().openFile(project);
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(window.grab());
    }
    if (state.step != Screen::editor)
        run.SkipWithError("the project did not open in the editor");
}
BENCHMARK(openProject)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(5);

}
}

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
