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

    void readPacket();
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
