// Decodes the first video track of a recording, frame by frame, with the times of its presentation timeline.
#pragma once

#include "media/Recording.h"
#include "media/VideoFrame.h"

#include <functional>
#include <memory>
#include <optional>

namespace pointloom::media {

class VideoReader {
public:
    /// Opens the first file as `readMediaInfo` does, and a decoder; the others when they are reached. Throws
    /// MediaError, also when there is no video track.
    static VideoReader open(const Recording& recording);

    VideoReader(VideoReader&&) noexcept;
    VideoReader& operator=(VideoReader&&) noexcept;
    ~VideoReader();

    const MediaInfo& info() const;       // the track is that of the first file
    const VideoTrackInfo& track() const; // of `info()`

    /// Continues `read` with the frame that is shown at `time` (seconds): the last one at or before it,
    /// or the first of the file when all are later. All frames from the key frame before it are decoded;
    /// `isStopped` is polled between them; when it is true, the position is undefined. Throws MediaError.
    void seek(double time, const std::function<bool()>& isStopped = {});

    /// Continues `read` with a key frame near `time` (seconds), mostly the last one at or before it, for the
    /// cost of one decoded frame whatever the distance of key frames. Throws MediaError.
    void seekToKeyFrame(double time);

    /// The next frame in presentation order, timestamps strictly rising; empty at the end.
    /// Frames that cannot be decoded are left out and counted. Throws MediaError when nothing of a file can
    /// be decoded at all.
    std::optional<VideoFrame> read();

    /// The damage since the key frame of the last seek. `secondsMissing` is known when `read` has returned
    /// empty.
    Damage damage() const;

private:
    struct State;
    explicit VideoReader(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}
