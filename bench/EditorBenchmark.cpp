// Times of the list of markers in the sidebar with a long match: following an edit, scrolling, seeking.
#include "LongMatch.h"
#include "persistence/UserDefaults.h"
#include "ui/editor/MarkerListView.h"

#include <benchmark/benchmark.h>
#include <QCoreApplication>
#include <QScrollBar>
#include <QTemporaryDir>

namespace pointloom {
namespace {

/// The list as high as in a large window.
struct Stage {
    Stage() {
        state.videoDuration = LongMatch::duration;
        state.markers = LongMatch::markers(2000);
        list.resize(304, 700);
        list.show();
        paint();
    }

    void paint() {
        QCoreApplication::processEvents();
        list.render(&picture);
    }

    QUuid markerOf(std::int64_t round) const {
        const auto& markers = state.markers.value();
        return markers[static_cast<std::size_t>(round * 7919) % markers.size()].id;
    }

    QTemporaryDir folder;
    AppState state;
    UndoStack undo;
    UserDefaults defaults{folder.filePath(QStringLiteral("Pointloom.ini"))};
    DesktopDialogs dialogs{state, defaults};
    CommandKeys keys;
    MarkerListView list{UiContext{state, undo, defaults, dialogs, keys}};
    QImage picture{304, 700, QImage::Format_ARGB32_Premultiplied};
};

void listAfterMove(benchmark::State& run) {
    Stage stage;
    std::int64_t round = 0;
    for ([[maybe_unused]] const auto step : run) {
        stage.state.updateMarkerTime(stage.markerOf(round), static_cast<double>(round * 37 % 7200), nullptr);
        ++round;
        stage.paint();
    }
}
BENCHMARK(listAfterMove)->Unit(benchmark::kMillisecond);

void listAfterNewMarker(benchmark::State& run) {
    Stage stage;
    std::int64_t round = 0;
    for ([[maybe_unused]] const auto step : run) {
        Marker marker = stage.state.markers.value().front();
        marker.id = QUuid::createUuid();
        marker.startTime = static_cast<double>(round++ * 37 % 7200) + 0.5;
        stage.state.addMarker(marker, nullptr);
        stage.state.selectedMarkerID = marker.id;
        stage.paint();
        run.PauseTiming();
        stage.state.removeMarker(marker.id, nullptr);
        QCoreApplication::processEvents();
        run.ResumeTiming();
    }
}
BENCHMARK(listAfterNewMarker)->Unit(benchmark::kMillisecond);

void jumpInList(benchmark::State& run) {
    Stage stage;
    std::int64_t round = 0;
    for ([[maybe_unused]] const auto step : run) {
        const QUuid id = stage.markerOf(round++);
        stage.state.selectedMarkerID = id;
        stage.state.currentTime = static_cast<double>(round * 37 % 7200);
        stage.paint();
    }
}
BENCHMARK(jumpInList)->Unit(benchmark::kMillisecond);

void scrollList(benchmark::State& run) {
    Stage stage;
    QScrollBar& bar = *stage.list.verticalScrollBar();
    for ([[maybe_unused]] const auto step : run) {
        bar.setValue(bar.value() + 7 > bar.maximum() ? 0 : bar.value() + 7);
        stage.paint();
    }
}
BENCHMARK(scrollList)->Unit(benchmark::kMillisecond);

}
}
