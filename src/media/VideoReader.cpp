#include "media/VideoReader.h"

#include "media/FFmpegError.h"
#include "media/OpenedMedia.h"
#include "media/VideoTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>

namespace pointloom::media {

namespace {

std::int64_t ticksOf(double time, Rational timeBase) {
    // A frame's time in seconds may come back a hair below its tick.
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
    bool anyPicture = false;

    const AVStream& stream() const { return *file.context()->streams[media.videoStream]; }

    AVFramePtr next();
    AVFramePtr decodeNext();
    bool placeInTime(AVFrame& picture);
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
    state->anyPicture = state->media.firstPicture != nullptr;
    return VideoReader(std::move(state));
}

std::optional<VideoFrame> VideoReader::read() {
    AVFramePtr picture = m_state->next();
    if (!picture) {
        if (!m_state->anyPicture)
            throw MediaError("no picture could be decoded", MediaFault::damaged);
        return std::nullopt;
    }
    m_state->anyPicture = true;
    return VideoFrame(std::move(picture), track().timeBase);
}

AVFramePtr VideoReader::State::next() {
    if (pending.empty())
        return decodeNext();
    AVFramePtr picture = std::move(pending.front());
    pending.pop_front();
    return picture;
}

AVFramePtr VideoReader::State::decodeNext() {
    for (;;) {
        AVFramePtr picture = media.firstPicture ? std::move(media.firstPicture) : media.decoder->next();
        if (!picture)
            return nullptr;
        completeTags(*picture, stream());
        if (placeInTime(*picture))
            return picture;
    }
}

/// Settles the picture's time. False for one that a later one already replaced.
bool VideoReader::State::placeInTime(AVFrame& picture) {
    const std::int64_t known = picture.best_effort_timestamp;
    const std::int64_t refinement = clockRefinement(stream());
    setFrameDuration(picture, refinedTicks(frameDuration(picture), refinement));
    if (known != AV_NOPTS_VALUE)
        picture.pts = refinedTicks(known, refinement);
    else
        picture.pts = lastTimestamp ? *lastTimestamp + std::max(lastDuration, refinement) : 0;
    if (lastTimestamp && picture.pts <= *lastTimestamp)
        return false;
    lastTimestamp = picture.pts;
    if (frameDuration(picture) > 0)
        lastDuration = frameDuration(picture);
    return true;
}

void VideoReader::seek(double time, const std::function<bool()>& isStopped) {
    const auto goesOn = [&] { return !(isStopped && isStopped()); };
    State& state = *m_state;
    const Rational timeBase = track().timeBase;
    const std::int64_t ticks = ticksOf(time, timeBase);
    state.pending.clear();

    // Files are searched by decoding time, which runs ahead of presentation: the first try may land after the
    // frame that is wanted.
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

/// Makes decoding go on with the key picture before `ticks`. False when the file cannot seek there.
bool VideoReader::State::seekTo(std::int64_t ticks) {
    const std::int64_t streamTicks = ticks / clockRefinement(stream());
    if (av_seek_frame(file.context(), media.videoStream, streamTicks, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    media.decoder->flush();
    media.firstPicture.reset();
    lastTimestamp.reset();
    return true;
}

/// Back to the first picture, by seeking where the file allows it.
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

/// From the last picture that came out to the last one that the index names. The index holds decoding times,
/// which are no later than the times of presentation: in a whole file nothing is left.
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
