// Times of an edit with its autosave, and of resolving the score at the playhead.
#include "model/ScoringEngine.h"
#include "persistence/Persistence.h"
#include "session/AppState.h"
#include "session/UndoStack.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <vector>

namespace pointloom {
namespace {

constexpr double secondsBetweenMarkers = 5;

Marker markerNumber(std::int64_t number) {
    const std::int64_t games = number % 7;
    ScoreState score{.sets = {{6, games, std::nullopt}, {7, 6, 4}, {games, 3, std::nullopt}},
                     .currentGame = {GamePoint::forty, GamePoint::fifteen},
                     .servingTeam = 1 + number % 2};
    return {.id = QUuid::createUuid(),
            .startTime = secondsBetweenMarkers * static_cast<double>(number) + 0.123456789,
            .score = std::move(score),
            .label = QStringLiteral("Échange %1").arg(number)};
}

std::vector<Marker> markerList(std::int64_t count) {
    std::vector<Marker> markers;
    for (std::int64_t i = 0; i < count; ++i)
        markers.push_back(markerNumber(i));
    return markers;
}

void fill(AppState& state, std::int64_t markerCount) {
    state.selectedTemplate = TemplateID::broadcast;
    MatchConfig config;
    config.team1.player1 = QStringLiteral("Dravnik");
    config.team2.player1 = QStringLiteral("Solvane");
    config.numberOfSets = 3;
    state.matchConfig = config;
    state.markers = markerList(markerCount);
}

/// Milliseconds of each round, as median and 99th percentile: users notice the slow ones.
class Percentiles {
public:
    void add(std::chrono::steady_clock::duration time) {
        m_times.push_back(std::chrono::duration<double, std::milli>(time).count());
    }

    void report(benchmark::State& run) {
        std::ranges::sort(m_times);
        run.counters["median_ms"] = m_times[m_times.size() / 2];
        run.counters["p99_ms"] = m_times[m_times.size() * 99 / 100];
    }

private:
    std::vector<double> m_times;
};

void editWithAutosave(benchmark::State& run) {
    const QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(QStringLiteral("Pointloom.ini")));
    const auto lock = SessionLock::tryAcquire(folder.path());
    Persistence persistence(defaults, *lock);
    AppState state(&persistence);
    UndoStack undo;
    fill(state, run.range(0));

    Percentiles times;
    std::int64_t round = 0;
    for ([[maybe_unused]] const auto step : run) {
        const auto& markers = state.markers.value();
        const QUuid id = markers[static_cast<std::size_t>(round * 7919) % markers.size()].id;
        const auto start = std::chrono::steady_clock::now();
        switch (round++ % 6) {
        case 0:
            state.addMarker(markerNumber(round), &undo);
            break;
        case 1:
            state.removeMarker(id, &undo);
            break;
        case 2:
            state.updateMarkerScore(id, markerNumber(round).score, &undo);
            break;
        case 3:
            state.updateMarkerTime(id, static_cast<double>(round % 5000), &undo);
            break;
        case 4:
            state.updateMarkerLabel(id, QStringLiteral("Label %1").arg(round), &undo);
            break;
        default:
            undo.undo();
        }
        times.add(std::chrono::steady_clock::now() - start);
    }
    times.report(run);
}
BENCHMARK(editWithAutosave)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(600);

void encodeSnapshot(benchmark::State& run) {
    AppState state;
    fill(state, run.range(0));
    const auto snapshot = Persistence::Snapshot::of(state);
    for ([[maybe_unused]] const auto step : run)
        benchmark::DoNotOptimize(json::write(snapshot));
}
BENCHMARK(encodeSnapshot)->Arg(1000)->Unit(benchmark::kMillisecond);

void storeBytes(benchmark::State& run) {
    const QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(QStringLiteral("Pointloom.ini")));
    AppState state;
    fill(state, run.range(0));
    const QByteArray bytes = json::write(Persistence::Snapshot::of(state));
    for ([[maybe_unused]] const auto step : run)
        defaults.setData(Persistence::sessionKey, bytes);
    run.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(storeBytes)->Arg(1000)->Unit(benchmark::kMillisecond);

void resolveScore(benchmark::State& run) {
    const auto markers = markerList(run.range(0));
    double time = 0;
    for ([[maybe_unused]] const auto step : run) {
        time = time > 5000 ? 0 : time + 0.04;
        auto score = ScoringEngine::resolveScoreAtTime(markers, time);
        benchmark::DoNotOptimize(score);
    }
}
BENCHMARK(resolveScore)->Arg(1000)->Unit(benchmark::kMicrosecond);

void movePlayhead(benchmark::State& run) {
    AppState state;
    fill(state, run.range(0));
    double time = 0;
    for ([[maybe_unused]] const auto step : run) {
        time = time > 5000 ? 0 : time + 0.04;
        state.currentTime = time;
        auto score = state.liveScore();
        benchmark::DoNotOptimize(score);
    }
}
BENCHMARK(movePlayhead)->Arg(1000)->Unit(benchmark::kMicrosecond);

}
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
