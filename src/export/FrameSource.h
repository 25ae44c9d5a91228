// Decodes and converts ahead of the encoder, on a thread of its own.
#pragma once

#include "export/BoundedQueue.h"
#include "export/TrimRange.h"
#include "media/FrameConverter.h"
#include "media/VideoReader.h"

#include <atomic>
#include <exception>
#include <functional>
#include <optional>
#include <thread>

namespace pointloom {

/// A frame of the range, writable, its timestamp on the new file's timeline.
struct TrimmedFrame {
    media::VideoFrame frame;
    double sourceTime = 0; // seconds of the source's timeline at which it comes on screen
};

class FrameSource {
public:
    FrameSource(media::VideoReader reader, media::FrameConverter converter, const TrimRange& range);
    ~FrameSource();

    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;

    /// The next frame; empty at the end of the range. `isCancelled` is polled while it waits for one. Throws
    /// what decoding threw, and ExportCancelled.
    std::optional<TrimmedFrame> next(const std::function<bool()>& isCancelled);

    /// What of the range could not be read. Complete when `next` has come to the end.
    const media::Damage& damage() const { return m_damage; }

private:
    void run();
    void decode();
    bool isLostBefore(const media::VideoFrame& last) const;
    void assessDamage(std::optional<double> lastTime);
    double decodingStart() const;
    std::optional<media::VideoFrame> nextConverted();

    media::VideoReader m_reader;
    media::FrameConverter m_converter;
    TrimRange m_range;
    std::atomic<bool> m_isStopped = false;
    bool m_readerIsDone = false;
    std::exception_ptr m_failure; // this and the damage are written before the queue is closed, read after
    media::Damage m_damage;
    BoundedQueue<TrimmedFrame> m_queue;
    std::thread m_thread;
};

}
