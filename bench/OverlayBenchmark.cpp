// Times of the overlay: drawing it when the score changes, blending it into every frame.
#include "export/FrameOverlay.h"
#include "SampleOverlay.h"

#include <benchmark/benchmark.h>

namespace {

using namespace pointloom;

PictureLayout fullHd() {
    media::VideoTrackInfo track;
    track.storedSize = {1920, 1080};
    return planPicture(track, ExportPreset::original);
}

void blendFrame(benchmark::State& state) {
    const media::FrameFormat format{media::Subsampling::s420, static_cast<int>(state.range(0)), {}};
    const ExportJob job = sampleJob();
    FrameOverlay frameOverlay(job, fullHd(), format);
    const auto frame = media::makeBlackFrame(1920, 1080, format, {1, 30});
    for ([[maybe_unused]] auto step : state)
        frameOverlay.drawInto(frame, 0);
}
BENCHMARK(blendFrame)->Arg(8)->Arg(10)->Unit(benchmark::kMillisecond);

void drawAndConvertAtEachMarker(benchmark::State& state) {
    const ExportJob job = sampleJob();
    FrameOverlay frameOverlay(job, fullHd(), {});
    const auto frame = media::makeBlackFrame(1920, 1080, {}, {1, 30});
    double time = 0;
    for ([[maybe_unused]] auto step : state) {
        frameOverlay.drawInto(frame, time);
        time = time > 0 ? 0 : 2; // the other score
    }
}
BENCHMARK(drawAndConvertAtEachMarker)->Unit(benchmark::kMillisecond);

}
