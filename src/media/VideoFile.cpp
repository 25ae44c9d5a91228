#include "media/VideoFile.h"

#include <algorithm>
#include <array>

namespace pointloom::media {

VideoFile::VideoFile(const QString& path)
    : m_path(path)
    , m_file(InputFile::open(path))
    , m_media(openMedia(m_file, 0)) {
    if (!m_media.info.video) {
        requireDecoders(*m_file.context());
        throw NoVideoTrackError("the file has no video track");
    }
    m_anyFrame = m_media.firstFrame != nullptr;
}

Damage VideoFile::damage() const {
    Damage damage = m_media.decoder->damage();
    damage.secondsMissing = secondsMissing();
    return damage;
}

AVFramePtr VideoFile::read() {
    AVFramePtr frame = next();
    if (!frame && !m_anyFrame)
        throw MediaError("no picture could be decoded", MediaFault::damaged);
    m_anyFrame = true;
    return frame;
}

AVFramePtr VideoFile::next() {
    if (m_pending.empty())
        return decodeNext();
    AVFramePtr frame = std::move(m_pending.front());
    m_pending.pop_front();
    return frame;
}

AVFramePtr VideoFile::decodeNext() {
    for (;;) {
        AVFramePtr frame = m_media.firstFrame ? std::move(m_media.firstFrame) : m_media.decoder->next();
        if (!frame)
            return nullptr;
        completeTags(*frame, stream());
        if (placeInTime(*frame))
            return frame;
    }
}

/// Sets the frame's time. False for a frame that is not later than the one before.
bool VideoFile::placeInTime(AVFrame& frame) {
    const std::int64_t known = frame.best_effort_timestamp;
    const std::int64_t refinement = clockRefinement(stream());
    setFrameDuration(frame, refinedTicks(frameDuration(frame), refinement));
    if (known != AV_NOPTS_VALUE)
        frame.pts = refinedTicks(known, refinement);
    else
        frame.pts = m_lastTimestamp ? *m_lastTimestamp + std::max(m_lastDuration, refinement) : 0;
    if (m_lastTimestamp && frame.pts <= *m_lastTimestamp)
        return false;
    m_lastTimestamp = frame.pts;
    if (frameDuration(frame) > 0)
        m_lastDuration = frameDuration(frame);
    return true;
}

void VideoFile::seek(std::int64_t ticks, const std::function<bool()>& goesOn) {
    const double tick = info().video->timeBase.value();
    m_pending.clear();

    // Files are searched by decoding time, which is earlier than presentation: the first try may end after
    // the requested frame.
    constexpr std::array stepsBack = {0.0, 0.5, 2.0, 10.0, 60.0}; // seconds
    AVFramePtr shown;
    for (const double step : stepsBack) {
        if (!seekTo(ticks - static_cast<std::int64_t>(step / tick)))
            continue;
        shown = decodeNext();
        if (shown && shown->pts <= ticks)
            break;
    }
    if (!shown || shown->pts > ticks) {
        rewind();
        shown = decodeNext();
    }

    while (shown && goesOn()) {
        AVFramePtr following = decodeNext();
        if (!following || following->pts > ticks || shown->pts > ticks) {
            m_pending.push_back(std::move(shown));
            if (following)
                m_pending.push_back(std::move(following));
            return;
        }
        shown = std::move(following);
    }
}

void VideoFile::seekToKeyFrame(std::int64_t ticks) {
    m_pending.clear();
    if (!seekTo(ticks))
        rewind();
}

/// Continues decoding with the key frame before `ticks`. False when the file cannot seek there.
bool VideoFile::seekTo(std::int64_t ticks) {
    const std::int64_t streamTicks = ticks / clockRefinement(stream());
    if (av_seek_frame(m_file.context(), m_media.videoStream, streamTicks, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    m_media.decoder->flush();
    m_media.firstFrame.reset();
    m_lastTimestamp.reset();
    return true;
}

/// Goes back to the first frame, by seeking where the file allows it.
void VideoFile::rewind() {
    const AVIndexEntry* first = avformat_index_get_entry(m_file.context()->streams[m_media.videoStream], 0);
    if (first != nullptr && seekTo(refinedTicks(first->timestamp, clockRefinement(stream()))))
        return;
    InputFile reopened = InputFile::open(m_path);
    OpenedMedia again = openMedia(reopened, 0);
    if (!again.info.video)
        throw MediaError("the file has changed and lost its video track", MediaFault::replaced);
    m_media = std::move(again); // before the file that its decoder read from
    m_file = std::move(reopened);
    m_lastTimestamp.reset();
}

/// Seconds from the last frame read to the last one in the index. The index holds decoding times, which are
/// no later than the times of presentation: in a complete file the result is 0.
double VideoFile::secondsMissing() const {
    if (!m_media.decoder->isAtEnd() || !m_lastTimestamp)
        return 0;
    AVStream* track = m_file.context()->streams[m_media.videoStream];
    for (int i = avformat_index_get_entries_count(track) - 1; i >= 0; --i) {
        const AVIndexEntry* entry = avformat_index_get_entry(track, i);
        if ((entry->flags & AVINDEX_DISCARD_FRAME) != 0)
            continue; // beyond the end of the edit
        const std::int64_t missing =
            refinedTicks(entry->timestamp, clockRefinement(*track)) - *m_lastTimestamp;
        return missing > 0 ? static_cast<double>(missing) * m_media.info.video->timeBase.value() : 0;
    }
    return 0;
}

}
