// Brings frames to one size, orientation and sample layout: deinterlaces, crops, turns upright, fits with
// black bars, converts depth, subsampling and colours, tone-maps HDR to SDR.
#pragma once

#include "media/MediaInfo.h"
#include "media/VideoFrame.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <QRect>
#include <vector>

namespace pointloom::media {

constexpr QRectF wholePicture(0, 0, 1, 1);

struct FrameTarget {
    QSize size;                 // of the output frames, both sides even
    QRectF seen = wholePicture; // the part of the upright source that is kept, fractions of it
    QRect picture;              // its place inside of the frame; black around it
    Orientation orientation;    // applied to the picture before it is fitted; identity keeps it as stored
    Rational sampleAspectRatio{1, 1}; // of the output frames
    FrameFormat format;               // of the output frames
};

/// Frames that already match the target pass unchanged, without a copy.
class FrameConverter {
public:
    /// Throws MediaError when frames cannot be converted to that layout.
    FrameConverter(const VideoTrackInfo& source, const FrameTarget& target);
    FrameConverter(FrameConverter&&) noexcept;
    FrameConverter& operator=(FrameConverter&&) noexcept;
    ~FrameConverter();

    /// Takes the next frame. Frames whose size or layout differs from the track's are converted too.
    /// Throws MediaError when the conversion cannot be set up.
    void push(VideoFrame frame);

    /// Flushes: no more frames will be pushed. Throws MediaError.
    void finish();

    /// The next converted frame, with the time of the frame it was made from; empty when another `push`
    /// is needed, or after `finish` at the end.
    std::optional<VideoFrame> pull();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// Rows from top to bottom without gaps, four bytes a pixel: red, green, blue, and 255.
struct RgbaImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// The frame as stored (not turned, pixels not made square) as a screen shows it, in full-range BT.709 RGB.
/// HDR is tone-mapped as FrameConverter does. Throws MediaError.
RgbaImage toRgb(const VideoFrame& frame);

/// The same, scaled to `size` pixels during conversion, which takes much less time for small images.
RgbaImage toRgb(const VideoFrame& frame, QSize size);

}
