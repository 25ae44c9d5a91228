// Time of one drawing of a scoreboard. An export draws it whenever the score changes, the editor at
// every step of a drag.
#include "render/ScoreboardTemplate.h"

#include <benchmark/benchmark.h>
#include <QPainter>

namespace {

using namespace pointloom;

TemplatePayload tennisMatch() {
    MatchConfig config;
    config.team1 = {QStringLiteral("Alcaraz"), {}, QStringLiteral("ES"), {}};
    config.team2 = {QStringLiteral("Sinner"), {}, QStringLiteral("IT"), {}};
    QImage logo(512, 512, QImage::Format_ARGB32_Premultiplied);
    logo.fill(Qt::white);
    const ScoreState score{{{6, 4, {}}, {6, 7, 5}, {3, 3, {}}}, {GamePoint::advantage, GamePoint::forty}, 1};
    return {score, config, QSizeF(1920, 1080), logo};
}

void drawOneScoreboard(benchmark::State& state, TemplateID id) {
    const double scale = static_cast<double>(state.range(0));
    QImage frame(1920, 1080, QImage::Format_ARGB32_Premultiplied);
    frame.fill(Qt::transparent);
    const TemplatePayload payload = tennisMatch();
    const ScoreboardTemplate& scoreboard = TemplateRegistry::templateFor(id);
    for (auto _ : state) {
        QPainter painter(&frame);
        painter.scale(scale, scale);
        scoreboard.draw(painter, payload, {40, 40});
    }
}

}

BENCHMARK_CAPTURE(drawOneScoreboard, classic, TemplateID::classic)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(drawOneScoreboard, nightsession, TemplateID::nightsession)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(drawOneScoreboard, stacked, TemplateID::stacked)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMicrosecond);
