// Times of painting the timeline: while scrolling, and after an edit.
#include "LongMatch.h"
#include "persistence/UserDefaults.h"
#include "ui/timeline/TimelineCanvas.h"

#include <benchmark/benchmark.h>
#include <QTemporaryDir>

namespace pointloom {
namespace {

/// A canvas as wide as a large window, at a scale of the screen.
struct Stage {
    explicit Stage(std::int64_t markerCount) {
        state.videoDuration = LongMatch::duration;
        state.markers = LongMatch::markers(markerCount);
        canvas.resize(1600, 260);
        canvas.ensurePolished();
        paint();
    }

    void paint() { canvas.render(&picture); }

    QTemporaryDir folder;
    AppState state;
    UndoStack undo;
    UserDefaults defaults{folder.filePath(QStringLiteral("Pointloom.ini"))};
    DesktopDialogs dialogs{state, defaults};
    CommandKeys keys;
    TimelineCanvas canvas{UiContext{state, undo, defaults, dialogs, keys}, folder.path()};
    QImage picture{1600, 260, QImage::Format_ARGB32_Premultiplied};
};

/// At a zoom (the argument, in steps of a half more) where flags change from ticks to whole texts.
void scroll(benchmark::State& run) {
    Stage stage(2000);
    for (std::int64_t i = 0; i < run.range(0); ++i)
        stage.canvas.zoomBy(1.5);
    double offset = 0;
    for ([[maybe_unused]] const auto step : run) {
        offset = offset + 7 > stage.canvas.scene().scale.largestOffset() ? 0 : offset + 7;
        stage.canvas.scrollTo(offset);
        stage.canvas.update();
        stage.paint();
    }
}
BENCHMARK(scroll)->Arg(1)->Arg(5)->Arg(9)->Arg(14)->Unit(benchmark::kMillisecond);

void repaintAfterEdit(benchmark::State& run) {
    Stage stage(2000);
    for (std::int64_t i = 0; i < run.range(0); ++i)
        stage.canvas.zoomBy(1.5);
    std::int64_t round = 0;
    for ([[maybe_unused]] const auto step : run) {
        const auto& markers = stage.state.markers.value();
        const QUuid id = markers[static_cast<std::size_t>(round * 7919) % markers.size()].id;
        stage.state.updateMarkerTime(id, static_cast<double>(round++ * 37 % 7200), nullptr);
        stage.paint();
    }
}
BENCHMARK(repaintAfterEdit)->Arg(0)->Arg(9)->Unit(benchmark::kMillisecond);

void movePlayhead(benchmark::State& run) {
    Stage stage(2000);
    double time = 0;
    for ([[maybe_unused]] const auto step : run) {
        time = time > 7000 ? 0 : time + 0.04;
        stage.state.currentTime = time;
        stage.paint();
    }
}
BENCHMARK(movePlayhead)->Unit(benchmark::kMillisecond);

}
}
