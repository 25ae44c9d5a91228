// One frame of a video.
#pragma once

#include "media/FrameFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

struct AVFrame;

namespace pointloom::media {

struct AVFrameDeleter {
    void operator()(AVFrame* frame) const;
};
using AVFramePtr = std::unique_ptr<AVFrame, AVFrameDeleter>;

/// One plane of samples. Rows are `bytesPerRow` apart; the plane is `width` by `height` samples.
struct Plane {
    std::byte* data = nullptr;
    std::ptrdiff_t bytesPerRow = 0;
    int width = 0;
    int height = 0;
};

/// Owns a frame's buffer, which a decoder may still be reading: call `makeWritable` before drawing.
class VideoFrame {
public:
    /// `timeBase` is the length of a tick of the frame's timestamps, in seconds.
    VideoFrame(AVFramePtr frame, Rational timeBase);

    int width() const; // stored, not displayed
    int height() const;

    /// Sample layout; empty when the samples are not planar Y'CbCr of 8, 10 or 12 bits
    /// (a FrameConverter brings any frame to a layout that has one).
    std::optional<FrameFormat> format() const;

    std::int64_t timestamp() const; // ticks of the time base, on the source's presentation timeline
    std::int64_t duration() const;  // ticks; 0 when unknown
    void setTimestamp(std::int64_t timestamp, std::int64_t duration);
    Rational timeBase() const { return m_timeBase; }
    double time() const; // seconds from the start of the source

    /// Gives the frame a buffer of its own if others share it. Throws MediaError when memory is short.
    void makeWritable();

    /// The planes Y, Cb, Cr. Write to them only after `makeWritable`.
    std::array<Plane, 3> planes() const;

    AVFrame* handle() const { return m_frame.get(); }

private:
    AVFramePtr m_frame;
    Rational m_timeBase;
};

/// A frame of its own, black, of the given layout. Throws MediaError when memory is short.
VideoFrame makeBlackFrame(int width, int height, const FrameFormat& format, Rational timeBase);

}
