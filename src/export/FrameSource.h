// Decodes and converts ahead of the encoder, on a thread of its own.
#pragma once

#include "export/ExportTimeline.h"
#include "media/FrameConverter.h"
#include "media/VideoReader.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>

namespace pointloom {

/// The frames of a reader, from where it is, converted.
class ConvertedFrames {
public:
    /// Throws MediaError when frames cannot be converted to the target.
    ConvertedFrames(media::VideoReader reader, const media::FrameTarget& target)
        : m_reader(std::move(reader))
        , m_target(target)
        , m_converter(m_reader.track(), target) {}

    const media::VideoReader& reader() const { return m_reader; }

    /// As VideoReader::seek.
    void seek(double time, const std::function<bool()>& isStopped);

    /// Empty at the end. Throws MediaError.
    std::optional<media::VideoFrame> next();

private:
    media::VideoReader m_reader;
    media::FrameTarget m_target;
    media::FrameConverter m_converter;
    bool m_readerIsDone = false;
};

/// A frame of the range, writable, its timestamp on the new file's timeline.
struct TrimmedFrame {
    media::VideoFrame frame;
    double sourceTime = 0; // seconds of the source's timeline at which it comes on screen
};

class FrameSource {
public:
    FrameSource(ConvertedFrames frames, std::vector<ExportPart> parts);
    ~FrameSource();

    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;

    /// The next frame; empty at the end of the last part. Polls `control` while it waits for one. Throws what
    /// decoding threw, and ExportCancelled.
    std::optional<TrimmedFrame> next(const ExportControl& control);

    /// The damage of the parts. Complete when `next` has come to the end.
    const media::Damage& damage() const { return m_damage; }

private:
    void run();
    void decode(const ExportPart& part);
    bool push(TrimmedFrame frame);
    bool isLostBefore(const TrimRange& range, const media::VideoFrame& last) const;
    void assessDamage(const TrimRange& range, std::optional<double> lastTime);
    double decodingStart(const TrimRange& range) const;

    ConvertedFrames m_frames;
    std::vector<ExportPart> m_parts;
    std::exception_ptr m_failure; // this and the damage are complete when `m_isDone` is set
    media::Damage m_damage;

    std::mutex m_mutex; // guards the members below
    std::condition_variable m_changed;
    std::deque<TrimmedFrame> m_queue;
    bool m_isDone = false;                 // the thread adds no more
    std::atomic<bool> m_isStopped = false; // the receiver takes no more
    std::thread m_thread;
};

}
