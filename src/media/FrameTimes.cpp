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

/// The times of one file, in its own refined ticks.
class FileTimes {
public:
    /// Throws MediaError, also when there is no video track.
    explicit FileTimes(const QString& path);

    Rational timeBase() const { return frameClock(*track()); }

    /// As those of FrameTimes.
    void seek(double time);
    std::optional<std::int64_t> next();
    std::vector<std::int64_t> keyFramesFrom(const std::vector<double>& times);

private:
    AVStream* track() const { return m_file.context()->streams[m_stream]; }
    void readPacket();
    std::optional<std::int64_t> keyFrameDecodedAt(std::int64_t time);
    bool readKeyFrameAt(std::int64_t time, std::int64_t target);

    InputFile m_file;
    int m_stream = 0;
    PacketPtr m_packet = makePacket();
    std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> m_waiting;
    std::optional<std::int64_t> m_last;
    bool m_isAtEnd = false;
    std::int64_t m_seekAhead = 0; // ticks by which the targets of seeks are later than decoding times
};

FileTimes::FileTimes(const QString& path)
    : m_file(InputFile::open(path)) {
    const std::optional<int> stream = findVideoTrack(*m_file.context());
    if (!stream)
        throw NoVideoTrackError("the file has no video track");
    m_stream = *stream;
    m_file.keepOnly(m_stream);
}

void FileTimes::seek(double time) {
    const double tick = av_q2d(track()->time_base);
    const auto ticks = static_cast<std::int64_t>(std::max(time - reordering, 0.0) / tick);
    if (av_seek_frame(m_file.context(), m_stream, ticks, AVSEEK_FLAG_BACKWARD) < 0)
        return;
    m_waiting = {};
    m_last.reset();
    m_isAtEnd = false;
}

std::vector<std::int64_t> FileTimes::keyFramesFrom(const std::vector<double>& times) {
    const double tick = av_q2d(track()->time_base);
    std::vector<std::int64_t> found;
    int entry = 0;
    int last = -1;
    const auto isKeyFrameFrom = [&](double time) {
        const AVIndexEntry& frame = *avformat_index_get_entry(track(), entry);
        return (frame.flags & AVINDEX_KEYFRAME) != 0 && (frame.flags & AVINDEX_DISCARD_FRAME) == 0 &&
               static_cast<double>(frame.timestamp) * tick >= time;
    };
    for (const double time : times) {
        while (entry < avformat_index_get_entries_count(track()) && !isKeyFrameFrom(time))
            ++entry;
        if (entry == avformat_index_get_entries_count(track()))
            break;
        if (std::exchange(last, entry) == entry)
            continue;
        const auto shown = keyFrameDecodedAt(avformat_index_get_entry(track(), entry)->timestamp);
        if (shown && (found.empty() || *shown > found.back()))
            found.push_back(*shown);
    }
    return found;
}

std::optional<std::int64_t> FileTimes::next() {
    while (true) {
        while (!m_isAtEnd && m_waiting.size() < deepestReordering)
            readPacket();
        if (m_waiting.empty())
            return std::nullopt;
        const std::int64_t time = m_waiting.top();
        m_waiting.pop();
        if (m_last && time <= *m_last)
            continue;
        m_last = time;
        return time;
    }
}

// The time at which the key frame of a decoding time is shown.
std::optional<std::int64_t> FileTimes::keyFrameDecodedAt(std::int64_t time) {
    // Targets count as times of presentation, of which all are later than those of decoding by what the track
    // reorders, which only trying tells.
    const auto second = static_cast<std::int64_t>(1 / av_q2d(track()->time_base));
    bool isFound = readKeyFrameAt(time, time + m_seekAhead);
    for (std::int64_t ahead = 0; !isFound && ahead < 2 * second;
         ahead = std::max(2 * ahead, second / 100 + 1)) {
        isFound = readKeyFrameAt(time, time + ahead);
        if (isFound)
            m_seekAhead = ahead;
    }
    if (!isFound)
        return std::nullopt;
    return refinedTicks(m_packet->pts, clockRefinement(*track()));
}

bool FileTimes::readKeyFrameAt(std::int64_t time, std::int64_t target) {
    av_packet_unref(m_packet.get());
    return av_seek_frame(m_file.context(), m_stream, target, AVSEEK_FLAG_BACKWARD) >= 0 &&
           av_read_frame(m_file.context(), m_packet.get()) >= 0 && m_packet->stream_index == m_stream &&
           m_packet->dts == time && (m_packet->flags & AV_PKT_FLAG_KEY) != 0 &&
           m_packet->pts != AV_NOPTS_VALUE;
}

void FileTimes::readPacket() {
    for (int failures = 0; failures < mostFailuresInARow; ++failures) {
        const int read = av_read_frame(m_file.context(), m_packet.get());
        if (read == AVERROR_EOF || read == AVERROR_EXIT)
            break;
        if (read < 0)
            continue;
        const std::int64_t time = m_packet->pts != AV_NOPTS_VALUE ? m_packet->pts : m_packet->dts;
        const bool isShown =
            m_packet->stream_index == m_stream && (m_packet->flags & AV_PKT_FLAG_DISCARD) == 0;
        av_packet_unref(m_packet.get());
        if (isShown && time != AV_NOPTS_VALUE)
            m_waiting.push(refinedTicks(time, clockRefinement(*track())));
        return;
    }
    m_isAtEnd = true;
}

}

struct FrameTimes::State {
    RecordingLayout layout;
    std::optional<FileTimes> file;
    std::size_t number = 0; // of `file`
    Rational timeBase;
    std::optional<std::int64_t> last;

    explicit State(const Recording& recording)
        : layout(layoutOf(recording)) {
        file.emplace(recording.first());
        timeBase = file->timeBase();
    }

    void open(std::size_t wanted) {
        if (wanted == number)
            return;
        number = wanted;
        try {
            file.emplace(layout.files[number].path);
        } catch (const MediaError& error) {
            throw named(error, layout.files[number].path);
        }
    }
};

FrameTimes::FrameTimes(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
FrameTimes::FrameTimes(FrameTimes&&) noexcept = default;
FrameTimes::~FrameTimes() = default;

FrameTimes FrameTimes::open(const Recording& recording, double start) {
    FrameTimes times(std::make_unique<State>(recording));
    if (start > reordering)
        times.seek(start); // else they begin with the recording's first
    return times;
}

void FrameTimes::seek(double time) {
    m_state->last.reset();
    // From the file before a seam, whose last frame may be the one that is shown.
    m_state->open(m_state->layout.fileAt(time - reordering));
    m_state->file->seek(time - m_state->layout.offsetOf(m_state->number));
}

Rational FrameTimes::timeBase() const {
    return m_state->timeBase;
}

std::vector<std::int64_t> FrameTimes::keyFramesFrom(const std::vector<double>& times) {
    const RecordingLayout& layout = m_state->layout;
    std::vector<std::int64_t> found;
    auto time = times.begin();
    for (std::size_t number = 0; number < layout.files.size() && time != times.end(); ++number) {
        m_state->open(number);
        std::vector<double> own;
        for (; time != times.end() && layout.fileAt(*time) == number; ++time)
            own.push_back(*time - layout.offsetOf(number));
        for (const std::int64_t ticks : m_state->file->keyFramesFrom(own)) {
            const std::int64_t placed = layout.placed(ticks, number);
            if (found.empty() || placed > found.back())
                found.push_back(placed);
        }
        // Each further file begins with a key frame, which is the first one after the last of these times.
        if (number + 1 < layout.files.size() && !own.empty())
            found.push_back(layout.files[number + 1].begin);
    }
    return found;
}

std::optional<std::int64_t> FrameTimes::next() {
    State& state = *m_state;
    while (true) {
        const std::optional<std::int64_t> own = state.file->next();
        if (!own && state.number + 1 == state.layout.files.size())
            return std::nullopt;
        if (!own) {
            state.open(state.number + 1);
            continue;
        }
        const std::int64_t time = state.layout.placed(*own, state.number);
        if (state.last && time <= *state.last)
            continue;
        state.last = time;
        return time;
    }
}

}
