// Brings frames to one size, orientation and sample layout: deinterlaces, turns upright, fits with black
// bars, converts depth, subsampling and colours, tone-maps HDR to SDR.
#pragma once

#include "media/MediaInfo.h"
#include "media/VideoFrame.h"

#include <memory>
#include <optional>
#include <QRect>

namespace pointloom::media {

struct PictureTarget {
    QSize size;              // of the output frames, both sides even
    QRect picture;           // where the picture goes inside of it; black around it
    Orientation orientation; // applied to the picture before it is fitted; identity keeps it as stored
    Rational sampleAspectRatio{1, 1}; // of the output frames
    FrameFormat format;               // of the output frames
};

/// Frames that already are what the target asks for pass through untouched, without a copy.
class FrameConverter {
public:
    FrameConverter(const VideoTrackInfo& source, const PictureTarget& target);
    FrameConverter(FrameConverter&&) noexcept;
    FrameConverter& operator=(FrameConverter&&) noexcept;
    ~FrameConverter();

    /// Takes the next frame. Frames whose size or layout differs from the track's are converted too.
    /// Throws MediaError when the conversion cannot be set up.
    void push(VideoFrame frame);

    /// No more frames will be pushed.
    void finish();

    /// The next converted frame, with the time of the frame it was made from; empty when another `push`
    /// is needed, or after `finish` at the end.
    std::optional<VideoFrame> pull();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}
