// A recording of two hours with 1,000 markers in the whole window: opening it, painting its timeline, reading
// its sound and pictures, scrubbing through it, editing it. Prints a table.
//
//     two-hours CLIP
#include "app/MainWindow.h"
#include "licensing/LicenceManager.h"
#include "licensing/RecordStore.h"
#include "LongMatch.h"
#include "persistence/Persistence.h"
#include "persistence/ProjectSession.h"
#include "ProcessMemory.h"
#include "session/UndoStack.h"
#include "ui/editor/EditorView.h"
#include "ui/export/ExportRunner.h"
#include "ui/style/Theme.h"
#include "ui/timeline/ThumbnailStrip.h"
#include "ui/timeline/TimelineCanvas.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <QApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

namespace pointloom {
namespace {

void print(const char* what, const QString& figure, const char* target) {
    std::printf("| %-74s | %22s | %10s |\n", what, qPrintable(figure), target);
    std::fflush(stdout);
}

QString milliseconds(std::vector<double> times) {
    std::ranges::sort(times);
    return QStringLiteral("%1, %2 ms")
        .arg(times[times.size() / 2], 0, 'f', 1)
        .arg(times[times.size() * 99 / 100], 0, 'f', 1);
}

/// Milliseconds of this thread's processor time: other programs do not count.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Seconds until `isDone`, which is asked after each event and every `interval` milliseconds.
double waitFor(const std::function<bool()>& isDone, int interval = 5) {
    constexpr qint64 patience = 1'800'000; // milliseconds
    QElapsedTimer time;
    time.start();
    QTimer tick;
    tick.start(interval);
    while (!isDone()) {
        if (time.hasExpired(patience)) {
            std::fprintf(stderr, "two-hours: nothing happens any more\n");
            std::exit(EXIT_FAILURE);
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return static_cast<double>(time.nsecsElapsed()) / 1e9;
}

/// One start of the program, as far as its window.
struct Program {
    explicit Program(const QString& folder)
        : defaults(folder + QStringLiteral("/Pointloom.ini"))
        , lock(SessionLock::tryAcquire(folder))
        , persistence(defaults, *lock)
        , licence({.info = {},
                   .store = std::make_unique<FileRecordStore>(folder + QStringLiteral("/licence")),
                   .machineId = "bench"}) {
        defaults.setBoolean("crashConsentAsked", true);
        window.resize(1600, 1000);
        window.show();
        QCoreApplication::processEvents();
    }

    EditorView* editor() { return window.findChild<EditorView*>(); }
    TimelineCanvas& canvas() { return editor()->timeline().canvas(); }

    bool showsPicture() {
        return state.step == Screen::editor && editor() && editor()->playback().isLoaded() &&
               !editor()->playback().player()->isSeeking() && canvas().scene().scale.duration() > 0;
    }
    bool hasAllSound() {
        const double heard =
            static_cast<double>(canvas().sound().peaks().size()) / WaveformPyramid::peaksPerSecond;
        return heard > state.videoDuration - 1;
    }

    UserDefaults defaults;
    std::optional<SessionLock> lock;
    Persistence persistence;
    AppState state{&persistence};
    UndoStack undo;
    DesktopDialogs dialogs{state, defaults};
    CommandKeys keys;
    LicenceManager licence;
    ExportRunner exports{state};
    MainWindow window{{state, undo, defaults, dialogs, keys}, licence, exports};
};

QString makeDocument(const QString& folder, const QString& clip) {
    AppState session;
    session.selectedTemplate = TemplateID::broadcast;
    MatchConfig config;
    config.team1.player1 = QStringLiteral("Dravnik");
    config.team2.player1 = QStringLiteral("Solvane");
    config.numberOfSets = 3;
    session.matchConfig = config;
    session.markers = LongMatch::markers(1000);
    session.videoURL = QUrl::fromLocalFile(clip);
    const QString path = folder + QStringLiteral("/match.plp");
    projectFrom(session).save(path);
    return path;
}

qsizetype cachedPictures(const QString& cache) {
    qsizetype count = 0;
    for (QDirIterator files(cache, {QStringLiteral("*.jpg")}, QDir::Files, QDirIterator::Subdirectories);
         files.hasNext(); files.next())
        ++count;
    return count;
}

void open(Program& program, const QString& document, const char* title, const char* target) {
    QElapsedTimer timer;
    timer.start();
    const std::clock_t start = std::clock();
    program.window.content().openFile(document);
    waitFor([&] { return program.state.step == Screen::editor; });
    program.window.grab();
    const double painted = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    waitFor([&] { return program.showsPicture(); });
    const double shown = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    print(title, QStringLiteral("%1 s, %2 s").arg(painted, 0, 'f', 2).arg(shown, 0, 'f', 2), target);
    print("the same, processor time of all threads",
          QStringLiteral("%1 s").arg(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0, 'f', 2),
          "");
}

void readAll(Program& program, const QString& cache) {
    const auto expected = static_cast<qsizetype>(thumbnailsOfClip(program.state.videoDuration).size());
    const std::clock_t start = std::clock();
    const double sound = waitFor([&] { return program.hasAllSound(); }, 200);
    const double pictures = waitFor([&] { return cachedPictures(cache) >= expected; }, 500);
    print("the whole sound in the background, pictures every eight seconds after",
          QStringLiteral("%1 s, %2 s").arg(sound, 0, 'f', 0).arg(sound + pictures, 0, 'f', 0), "720 s");
    print("the same, processor time of both",
          QStringLiteral("%1 s").arg(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0, 'f', 0),
          "");
}

void paintAtEveryZoom(Program& program) {
    TimelineCanvas& canvas = program.canvas();
    QImage picture(canvas.size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<double> slowest;
    std::vector<double> all;
    canvas.fit();
    for (double scale = 0; canvas.scene().scale.pointsPerSecond() > scale;) {
        scale = canvas.scene().scale.pointsPerSecond();
        std::vector<double> times;
        for (int frame = 0; frame < 60; ++frame) {
            canvas.scrollTo(canvas.scene().scale.offset() + 7);
            canvas.update();
            const double start = threadMilliseconds();
            canvas.render(&picture);
            times.push_back(threadMilliseconds() - start);
            all.push_back(times.back());
            QCoreApplication::processEvents();
        }
        std::ranges::nth_element(times, times.begin() + 30);
        slowest.push_back(times[30]);
        canvas.zoomBy(1.5);
    }
    canvas.fit();
    print("a frame of the scrolling timeline, at every zoom: median, 99 of 100 below", milliseconds(all),
          "16 ms");
    print("the same at the slowest zoom, median",
          QStringLiteral("%1 ms").arg(std::ranges::max(slowest), 0, 'f', 1), "16 ms");
}

void scrub(Program& program) {
    constexpr int seeks = 1440; // one every five seconds
    const double before = residentMegabytes();
    double most = before;
    const double seconds = [&] {
        QElapsedTimer timer;
        timer.start();
        for (int seek = 0; seek < seeks; ++seek) {
            program.editor()->playback().seek(program.state.videoDuration * seek / seeks, false);
            waitFor([&] { return !program.editor()->playback().player()->isSeeking(); });
            most = std::max(most, residentMegabytes());
        }
        return static_cast<double>(timer.nsecsElapsed()) / 1e9;
    }();
    print("scrubbing through all of it: memory before, at most, after",
          QStringLiteral("%1, %2, %3 MB")
              .arg(before, 0, 'f', 0)
              .arg(most, 0, 'f', 0)
              .arg(residentMegabytes(), 0, 'f', 0),
          "flat");
    print("the same, pictures a second", QStringLiteral("%1").arg(seeks / seconds, 0, 'f', 0), "");
}

void edit(Program& program) {
    AppState& state = program.state;
    std::vector<double> times;
    std::vector<double> processor;
    for (int round = 0; round < 400; ++round) {
        const auto& markers = state.markers.value();
        const QUuid id = markers[static_cast<std::size_t>(round) * 7919 % markers.size()].id;
        const double start = threadMilliseconds();
        QElapsedTimer timer;
        timer.start();
        if (round % 4 == 3)
            program.undo.undo();
        else
            state.updateMarkerTime(id, static_cast<double>(round * 37 % 7200) + 0.25, &program.undo);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        processor.push_back(threadMilliseconds() - start);
        QCoreApplication::processEvents();
    }
    print("an edit, stored on the disk: median, 99 of 100 below", milliseconds(times), "10 ms");
    print("the same, processor time of the main thread", milliseconds(processor), "");
}

void measure(const QString& clip) {
    const QTemporaryDir folder;
    const QString cache = folder.filePath(QStringLiteral("cache"));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache));
    {
        Program program(folder.path());
        const QString document = makeDocument(folder.path(), clip);
        open(program, document, "opening it: editor painted, picture shown", "1 s");
        readAll(program, cache);
        paintAtEveryZoom(program);
        scrub(program);
        edit(program);
    }
    Program again(folder.path());
    open(again, makeDocument(folder.path(), clip), "opening it again", "1 s");
    print("its sound, once it is open",
          QStringLiteral("%1 s").arg(waitFor([&] { return again.hasAllSound(); }), 0, 'f', 2), "");
}

}
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: two-hours CLIP\n");
        return EXIT_FAILURE;
    }
    QApplication::setApplicationName(QStringLiteral("Pointloom"));
    pointloom::Theme::shared().apply(application, pointloom::ThemeChoice::dark);
    pointloom::measure(QFileInfo(QApplication::arguments().at(1)).absoluteFilePath());
    return EXIT_SUCCESS;
}
