#include "media/VideoReader.h"

#include "media/FFmpeg.h"
#include "media/OpenedMedia.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>

namespace pointloom::media {

namespace {

std::int64_t ticksOf(double time, Rational timeBase) {
    // A frame's time, converted to seconds and back, may be slightly below its tick.
    const double exactTicks = std::floor(time / timeBase.value() + 1e-3);
    constexpr double farthest = 1e17; // ticks
    return static_cast<std::int64_t>(std::clamp(exactTicks, -farthest, farthest));
}

}

struct VideoReader::State {
    QString path;
    InputFile file;
    OpenedMedia media;
    std::deque<AVFramePtr> pending{}; // decoded ahead, in order
    std::optional<std::int64_t> lastTimestamp{};
    std::int64_t lastDuration = 0;
    bool anyFrame = false;

    const AVStream& stream() const { return *file.context()->streams[media.videoStream]; }

    AVFramePtr next();
    AVFramePtr decodeNext();
    bool placeInTime(AVFrame& frame);
    bool seekTo(std::int64_t ticks);
    void rewind();
    double secondsMissing() const;
};

VideoReader::VideoReader(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
VideoReader::VideoReader(VideoReader&&) noexcept = default;
VideoReader& VideoReader::operator=(VideoReader&&) noexcept = default;
VideoReader::~VideoReader() = default;

const MediaInfo& VideoReader::info() const {
    return m_state->media.info;
}

const VideoTrackInfo& VideoReader::track() const {
    return *m_state->media.info.video;
}

Damage VideoReader::damage() const {
    Damage damage = m_state->media.decoder->damage();
    damage.secondsMissing = m_state->secondsMissing();
    return damage;
}

VideoReader VideoReader::open(const QString& path) {
    InputFile file = InputFile::open(path);
    OpenedMedia media = openMedia(file, 0);
    if (!media.info.video) {
        requireDecoders(*file.context());
        throw NoVideoTrackError("the file has no video track");
    }
    auto state = std::make_unique<State>(State{path, std::move(file), std::move(media)});
    state->anyFrame = state->media.firstFrame != nullptr;
    return VideoReader(std::move(state));
}

std::optional<VideoFrame> VideoReader::read() {
    AVFramePtr frame = m_state->next();
    if (!frame) {
        if (!m_state->anyFrame)
            throw MediaError("no picture could be decoded", MediaFault::damaged);
        return std::nullopt;
    }
    m_state->anyFrame = true;
    return VideoFrame(std::move(frame), track().timeBase);
}

AVFramePtr VideoReader::State::next() {
    if (pending.empty())
        return decodeNext();
    AVFramePtr frame = std::move(pending.front());
    pending.pop_front();
    return frame;
}

AVFramePtr VideoReader::State::decodeNext() {
    for (;;) {
        AVFramePtr frame = media.firstFrame ? std::move(media.firstFrame) : media.decoder->next();
        if (!frame)
            return nullptr;
        completeTags(*frame, stream());
        if (placeInTime(*frame))
            return frame;
    }
}

/// Sets the frame's time. False for a frame that is not later than the one before.
bool VideoReader::State::placeInTime(AVFrame& frame) {
    const std::int64_t known = frame.best_effort_timestamp;
    const std::int64_t refinement = clockRefinement(stream());
    setFrameDuration(frame, refinedTicks(frameDuration(frame), refinement));
    if (known != AV_NOPTS_VALUE)
        frame.pts = refinedTicks(known, refinement);
    else
        frame.pts = lastTimestamp ? *lastTimestamp + std::max(lastDuration, refinement) : 0;
    if (lastTimestamp && frame.pts <= *lastTimestamp)
        return false;
    lastTimestamp = frame.pts;
    if (frameDuration(frame) > 0)
        lastDuration = frameDuration(frame);
    return true;
}

void VideoReader::seek(double time, const std::function<bool()>& isStopped) {
    const auto goesOn = [&] { return !(isStopped && isStopped()); };
    State& state = *m_state;
    const Rational timeBase = track().timeBase;
    const std::int64_t ticks = ticksOf(time, timeBase);
    state.pending.clear();

    // Files are searched by decoding time, which is earlier than presentation: the first try may end after
    // the requested frame.
    constexpr std::array stepsBack = {0.0, 0.5, 2.0, 10.0, 60.0}; // seconds
    AVFramePtr shown;
    for (const double step : stepsBack) {
        if (!state.seekTo(ticks - static_cast<std::int64_t>(step / timeBase.value())))
            continue;
        shown = state.decodeNext();
        if (shown && shown->pts <= ticks)
            break;
    }
    if (!shown || shown->pts > ticks) {
        state.rewind();
        shown = state.decodeNext();
    }

    while (shown && goesOn()) {
        AVFramePtr following = state.decodeNext();
        if (!following || following->pts > ticks || shown->pts > ticks) {
            state.pending.push_back(std::move(shown));
            if (following)
                state.pending.push_back(std::move(following));
            return;
        }
        shown = std::move(following);
    }
}

void VideoReader::seekToKeyFrame(double time) {
    m_state->pending.clear();
    if (!m_state->seekTo(ticksOf(time, track().timeBase)))
        m_state->rewind();
}

/// Continues decoding with the key frame before `ticks`. False when the file cannot seek there.
bool VideoReader::State::seekTo(std::int64_t ticks) {
    const std::int64_t streamTicks = ticks / clockRefinement(stream());
    if (av_seek_frame(file.context(), media.videoStream, streamTicks, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    media.decoder->flush();
    media.firstFrame.reset();
    lastTimestamp.reset();
    return true;
}

/// Goes back to the first frame, by seeking where the file allows it.
void VideoReader::State::rewind() {
    const AVIndexEntry* first = avformat_index_get_entry(file.context()->streams[media.videoStream], 0);
    if (first != nullptr && seekTo(refinedTicks(first->timestamp, clockRefinement(stream()))))
        return;
    InputFile reopened = InputFile::open(path);
    OpenedMedia again = openMedia(reopened, 0);
    if (!again.info.video)
        throw MediaError("the file has changed and lost its video track", MediaFault::replaced);
    media = std::move(again); // before the file that its decoder read from
    file = std::move(reopened);
    lastTimestamp.reset();
}

/// Seconds from the last frame read to the last one in the index. The index holds decoding times, which are
/// no later than the times of presentation: in a complete file the result is 0.
double VideoReader::State::secondsMissing() const {
    if (!media.decoder->isAtEnd() || !lastTimestamp)
        return 0;
    AVStream* track = file.context()->streams[media.videoStream];
    for (int i = avformat_index_get_entries_count(track) - 1; i >= 0; --i) {
        const AVIndexEntry* entry = avformat_index_get_entry(track, i);
        if ((entry->flags & AVINDEX_DISCARD_FRAME) != 0)
            continue; // beyond the end of the edit
        const std::int64_t missing = refinedTicks(entry->timestamp, clockRefinement(*track)) - *lastTimestamp;
        return missing > 0 ? static_cast<double>(missing) * media.info.video->timeBase.value() : 0;
    }
    return 0;
}

}
