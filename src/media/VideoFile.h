// Decodes the first video track of one file, in the file's own times.
#pragma once

#include "media/OpenedMedia.h"

#include <deque>
#include <functional>

namespace pointloom::media {

class VideoFile {
public:
    /// Throws MediaError as `readMediaInfo`, also when there is no video track.
    explicit VideoFile(const QString& path);

    const MediaInfo& info() const { return m_media.info; }

    /// Continues `read` with the frame that is shown at `ticks` of the track's refined clock, or the first
    /// one when all are later. `goesOn` is polled between frames; when it is false, the position is
    /// undefined. Throws MediaError.
    void seek(std::int64_t ticks, const std::function<bool()>& goesOn);

    /// Continues `read` with a key frame near `ticks`, mostly the last one at or before it. Throws
    /// MediaError.
    void seekToKeyFrame(std::int64_t ticks);

    /// The next frame in presentation order, its time refined and later than the one before; null at the end.
    /// Throws MediaError when nothing can be decoded at all.
    AVFramePtr read();

    /// As VideoReader::damage.
    Damage damage() const;

private:
    const AVStream& stream() const { return *m_file.context()->streams[m_media.videoStream]; }

    AVFramePtr next();
    AVFramePtr decodeNext();
    bool placeInTime(AVFrame& frame);
    bool seekTo(std::int64_t ticks);
    void rewind();
    double secondsMissing() const;

    QString m_path;
    InputFile m_file;
    OpenedMedia m_media;
    std::deque<AVFramePtr> m_pending; // decoded ahead, in order
    std::optional<std::int64_t> m_lastTimestamp;
    std::int64_t m_lastDuration = 0;
    bool m_anyFrame = false;
};

}
