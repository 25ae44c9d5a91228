#include "media/SameFrames.h"

#include "media/InputFile.h"
#include "media/OpenedMedia.h"

#include <cmath>
#include <vector>

namespace pointloom::media {

namespace {

struct IndexedVideo {
    VideoTrackInfo track;
    double start = 0;          // seconds at which the first frame is shown
    std::vector<double> times; // seconds at which frames are decoded, rising
};

IndexedVideo readIndex(const QString& path) {
    InputFile file = InputFile::open(path);
    const OpenedMedia media = openMedia(file, 1);
    if (!media.info.video || !media.firstFrame)
        throw NoVideoTrackError("the file has no video track");
    AVStream* stream = file.context()->streams[media.videoStream];
    const double tick = av_q2d(stream->time_base);
    IndexedVideo video{
        *media.info.video, static_cast<double>(media.firstFrame->best_effort_timestamp) * tick, {}};
    const int count = avformat_index_get_entries_count(stream);
    for (int i = 0; i < count; ++i) {
        const AVIndexEntry* entry = avformat_index_get_entry(stream, i);
        if ((entry->flags & AVINDEX_DISCARD_FRAME) == 0)
            video.times.push_back(static_cast<double>(entry->timestamp) * tick);
    }
    return video;
}

bool isSameTime(double a, double b) {
    constexpr double rounding = 1e-7; // seconds; clocks of different ticks give the same time
    return std::abs(a - b) < rounding;
}

// Decoding may begin earlier than showing, by what a codec reorders.
bool hasSameTimes(const IndexedVideo& a, const IndexedVideo& b) {
    if (a.times.empty() || a.times.size() != b.times.size() || !isSameTime(a.start, b.start))
        return false;
    for (std::size_t i = 0; i < a.times.size(); ++i) {
        if (!isSameTime(a.times[i] - a.times.front(), b.times[i] - b.times.front()))
            return false;
    }
    return true;
}

bool hasSameLook(const VideoTrackInfo& a, const VideoTrackInfo& b) {
    constexpr double rounding = 0.02; // of the aspect ratio: small pictures have whole pixels too
    const auto shape = [](QSize size) { return static_cast<double>(size.width()) / size.height(); };
    return a.orientation == b.orientation && a.color.transfer == b.color.transfer &&
           a.color.primaries == b.color.primaries && a.color.matrix == b.color.matrix &&
           std::abs(shape(a.uprightSize()) / shape(b.uprightSize()) - 1) < rounding;
}

int pixelsOf(const VideoTrackInfo& track) {
    return track.storedSize.width() * track.storedSize.height();
}

}

bool isSmallCopy(const QString& copy, const QString& original) {
    try {
        const IndexedVideo small = readIndex(copy);
        const IndexedVideo large = readIndex(original);
        return pixelsOf(small.track) < pixelsOf(large.track) && hasSameLook(small.track, large.track) &&
               hasSameTimes(small, large);
    } catch (const MediaError&) {
        return false;
    }
}

}
