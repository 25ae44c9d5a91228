#include "media/VideoReader.h"

#include "media/VideoFile.h"

#include <algorithm>
#include <cmath>

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
    RecordingLayout layout;
    std::optional<VideoFile> file;
    std::size_t number = 0; // of `file`
    MediaInfo info;
    Damage damageBefore; // of the files before this one, since the last seek
    std::optional<std::int64_t> last;

    explicit State(const Recording& recording);

    AVFramePtr next();
    void open(std::size_t wanted);
    void goTo(std::int64_t ticks);
    Damage damage() const;
};

VideoReader::State::State(const Recording& recording)
    : layout(layoutOf(recording)) {
    file.emplace(recording.first());
    info = file->info();
    if (layout.isSplit()) {
        info.duration = layout.duration;
        info.audioTracks = layout.audioTracks;
    }
}

AVFramePtr VideoReader::State::next() {
    for (;;) {
        AVFramePtr frame = file->read();
        if (!frame) {
            if (number + 1 == layout.files.size())
                return nullptr;
            damageBefore = damage();
            open(number + 1);
            continue;
        }
        if (number > 0) {
            const std::int64_t duration = frameDuration(*frame);
            setFrameDuration(*frame, layout.placed(frame->pts + duration, number) -
                                         layout.placed(frame->pts, number));
            frame->pts = layout.placed(frame->pts, number);
        }
        if (last && frame->pts <= *last)
            continue;
        last = frame->pts;
        return frame;
    }
}

void VideoReader::State::open(std::size_t wanted) {
    if (wanted == number)
        return;
    try {
        file.emplace(layout.files[wanted].path);
    } catch (const MediaError& error) {
        file.emplace(layout.files[number].path); // a reader without a file could not go on
        throw named(error, layout.files[wanted].path);
    }
    number = wanted;
}

// Opens the file that holds the frame shown at `ticks`.
void VideoReader::State::goTo(std::int64_t ticks) {
    last.reset();
    damageBefore = {};
    open(layout.fileAt(ticks));
}

Damage VideoReader::State::damage() const {
    Damage sum = file->damage();
    sum.lostFrames += damageBefore.lostFrames;
    sum.faultyFrames += damageBefore.faultyFrames;
    sum.secondsMissing += damageBefore.secondsMissing;
    return sum;
}

VideoReader::VideoReader(std::unique_ptr<State> state)
    : m_state(std::move(state)) {}
VideoReader::VideoReader(VideoReader&&) noexcept = default;
VideoReader& VideoReader::operator=(VideoReader&&) noexcept = default;
VideoReader::~VideoReader() = default;

VideoReader VideoReader::open(const Recording& recording) {
    return VideoReader(std::make_unique<State>(recording));
}

const MediaInfo& VideoReader::info() const {
    return m_state->info;
}

const VideoTrackInfo& VideoReader::track() const {
    return *m_state->info.video;
}

Damage VideoReader::damage() const {
    return m_state->damage();
}

std::optional<VideoFrame> VideoReader::read() {
    AVFramePtr frame = m_state->next();
    return frame ? std::optional(VideoFrame(std::move(frame), track().timeBase)) : std::nullopt;
}

void VideoReader::seek(double time, const std::function<bool()>& isStopped) {
    const std::int64_t ticks = ticksOf(time, track().timeBase);
    m_state->goTo(ticks);
    m_state->file->seek(m_state->layout.ownTicks(ticks, m_state->number),
                        [&] { return !(isStopped && isStopped()); });
}

void VideoReader::seekToKeyFrame(double time) {
    const std::int64_t ticks = ticksOf(time, track().timeBase);
    m_state->goTo(ticks);
    m_state->file->seekToKeyFrame(m_state->layout.ownTicks(ticks, m_state->number));
}

}
