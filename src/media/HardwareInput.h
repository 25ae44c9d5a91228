// Converts frames to the layouts that hardware encoders take.
#pragma once

#include "media/FFmpeg.h"
#include "media/MediaWriter.h"

namespace pointloom::media {

struct BufferDeleter {
    void operator()(AVBufferRef* buffer) const { av_buffer_unref(&buffer); }
};
using BufferPtr = std::unique_ptr<AVBufferRef, BufferDeleter>;

/// A copy of a frame in 4:2:0 of 8 or 10 bits with its two planes of colour interleaved into one: NV12, or
/// P010, whose samples are in the upper bits. Throws MediaError.
AVFramePtr interleaved(const AVFrame& frame);

class HardwareInput {
public:
    /// Sets the layout that `encoder`, which is not open yet, will be given. Throws MediaError when there is
    /// no such device.
    HardwareInput(AVCodecContext& encoder, const VideoSettings& settings);

    /// The frame as the encoder takes it. Throws MediaError.
    AVFramePtr convert(const AVFrame& frame) const;

private:
    void allocateSurfaces(AVCodecContext& encoder);
    AVFramePtr uploaded(const AVFrame& frame) const;

    AVPixelFormat m_layout;
    BufferPtr m_surfaces; // in the card's memory, for VAAPI; the other encoders copy frames themselves
};

}
