#include "media/FrameTimes.h"

#include "media/FFmpeg.h"
#include "media/InputFile.h"
#include "media/OpenedMedia.h"

#include <cmath>
#include <functional>
#include <queue>
#include <vector>

namespace pointloom::media {

namespace {

constexpr std::size_t deepestReordering = 32; // frames; codecs allow half of it
constexpr double reordering = 2;              // seconds by which decoding times may run ahead
constexpr int mostFailuresInARow = 1000;      // as many packets may be missing of a file that was cut short

}

struct FrameTimes::State {
    InputFile file;
    int stream;
    PacketPtr packet = makePacket();
    std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> waiting{};
    std::optional<std::int64_t> last{};
    bool isAtEnd = false;
    std::int64_t seekAhead = 0; // ticks by which the targets of seeks are later than decoding times

    void readPacket();
    std::optional<std::int64_t> keyFrameDecodedAt(std::int64_t time);
    bool readKeyFrameAt(std::int64_t time, std::int64_t target);
};

FrameTimes::FrameTimes(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
FrameTimes::FrameTimes(FrameTimes&&) noexcept = default;
FrameTimes::~FrameTimes() = default;

FrameTimes FrameTimes::open(const QString& path, double start) {
    InputFile file = InputFile::open(path);
    const std::optional<int> stream = findVideoTrack(*file.context());
    if (!stream)
        throw NoVideoTrackError("the file has no video track");
    file.keepOnly(*stream);
    FrameTimes times(std::make_unique<State>(State{std::move(file), *stream}));
    if (start > reordering)
        times.seek(start); // else they begin with the file's first
    return times;
}

void FrameTimes::seek(double time) {
    AVFormatContext* context = m_state->file.context();
    const double tick = av_q2d(context->streams[m_state->stream]->time_base);
    const auto ticks = static_cast<std::int64_t>(std::max(time - reordering, 0.0) / tick);
    if (av_seek_frame(context, m_state->stream, ticks, AVSEEK_FLAG_BACKWARD) < 0)
        return;
    m_state->waiting = {};
    m_state->last.reset();
    m_state->isAtEnd = false;
}

Rational FrameTimes::timeBase() const {
    return frameClock(*m_state->file.context()->streams[m_state->stream]);
}

std::vector<std::int64_t> FrameTimes::keyFramesFrom(const std::vector<double>& times) {
    AVStream* track = m_state->file.context()->streams[m_state->stream];
    const double tick = av_q2d(track->time_base);
    std::vector<std::int64_t> found;
    int entry = 0;
    int last = -1;
    const auto isKeyFrameFrom = [&](double time) {
        const AVIndexEntry& frame = *avformat_index_get_entry(track, entry);
        return (frame.flags & AVINDEX_KEYFRAME) != 0 && (frame.flags & AVINDEX_DISCARD_FRAME) == 0 &&
               static_cast<double>(frame.timestamp) * tick >= time;
    };
    for (const double time : times) {
        while (entry < avformat_index_get_entries_count(track) && !isKeyFrameFrom(time))
            ++entry;
        if (entry == avformat_index_get_entries_count(track))
            break;
        if (std::exchange(last, entry) == entry)
            continue;
        const auto shown = m_state->keyFrameDecodedAt(avformat_index_get_entry(track, entry)->timestamp);
        if (shown && (found.empty() || *shown > found.back()))
            found.push_back(*shown);
    }
    return found;
}

std::optional<std::int64_t> FrameTimes::next() {
    State& state = *m_state;
    while (true) {
        while (!state.isAtEnd && state.waiting.size() < deepestReordering)
            state.readPacket();
        if (state.waiting.empty())
            return std::nullopt;
        const std::int64_t time = state.waiting.top();
        state.waiting.pop();
        if (state.last && time <= *state.last)
            continue;
        state.last = time;
        return time;
    }
}

// The time at which the key frame of a decoding time is shown.
std::optional<std::int64_t> FrameTimes::State::keyFrameDecodedAt(std::int64_t time) {
    // Targets count as times of presentation, of which all are later than those of decoding by what the track
    // reorders, which only trying tells.
    const auto second = static_cast<std::int64_t>(1 / av_q2d(file.context()->streams[stream]->time_base));
    bool isFound = readKeyFrameAt(time, time + seekAhead);
    for (std::int64_t ahead = 0; !isFound && ahead < 2 * second;
         ahead = std::max(2 * ahead, second / 100 + 1)) {
        isFound = readKeyFrameAt(time, time + ahead);
        if (isFound)
            seekAhead = ahead;
    }
    if (!isFound)
        return std::nullopt;
    return refinedTicks(packet->pts, clockRefinement(*file.context()->streams[stream]));
}

bool FrameTimes::State::readKeyFrameAt(std::int64_t time, std::int64_t target) {
    av_packet_unref(packet.get());
    return av_seek_frame(file.context(), stream, target, AVSEEK_FLAG_BACKWARD) >= 0 &&
           av_read_frame(file.context(), packet.get()) >= 0 && packet->stream_index == stream &&
           packet->dts == time && (packet->flags & AV_PKT_FLAG_KEY) != 0 && packet->pts != AV_NOPTS_VALUE;
}

void FrameTimes::State::readPacket() {
    for (int failures = 0; failures < mostFailuresInARow; ++failures) {
        const int read = av_read_frame(file.context(), packet.get());
        if (read == AVERROR_EOF || read == AVERROR_EXIT)
            break;
        if (read < 0)
            continue;
        const std::int64_t time = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        const bool isShown = packet->stream_index == stream && (packet->flags & AV_PKT_FLAG_DISCARD) == 0;
        av_packet_unref(packet.get());
        if (isShown && time != AV_NOPTS_VALUE)
            waiting.push(refinedTicks(time, clockRefinement(*file.context()->streams[stream])));
        return;
    }
    isAtEnd = true;
}

}
