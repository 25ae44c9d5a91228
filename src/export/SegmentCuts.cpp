#include "export/SegmentCuts.h"

#include "export/ExportSource.h"

#include <algorithm>

namespace pointloom {

namespace {

// Each segment begins with a costly key picture and tells the encoder nothing of what came before.
double shortestSegment(const media::VideoTrackInfo& track) {
    constexpr double shortest = 1; // second
    constexpr double frames = 8;
    return std::max(shortest, frames / track.frameRate.value());
}

}

std::vector<std::int64_t> segmentCuts(media::VideoReader& reader, const TrimRange& range, int count) {
    const media::MediaInfo info = reader.info();
    const double shortest = shortestSegment(*info.video);
    const double end = ExportSource::endOfRange(range.end(), info.duration);
    const double step = (end - range.start()) / count;
    std::vector<std::int64_t> cuts;
    double last = range.start();
    for (int i = 1; i < count; ++i) {
        reader.seekToKeyFrame(range.start() + i * step);
        const auto frame = reader.read();
        if (!frame || frame->time() < last + shortest || frame->time() > end - shortest)
            continue;
        cuts.push_back(frame->timestamp());
        last = frame->time();
    }
    return cuts;
}

}
