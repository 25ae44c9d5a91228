// Brings pictures into the form that encoders in hardware take.
#pragma once

#include "media/FFmpegHandles.h"
#include "media/MediaWriter.h"

namespace pointloom::media {

struct BufferDeleter {
    void operator()(AVBufferRef* buffer) const { av_buffer_unref(&buffer); }
};
using BufferPtr = std::unique_ptr<AVBufferRef, BufferDeleter>;

/// A copy of a picture in 4:2:0 of 8 or 10 bits with its two planes of colour interleaved into one: NV12, or
/// P010, whose samples stand in the upper bits. Throws MediaError.
AVFramePtr interleaved(const AVFrame& picture);

class HardwareInput {
public:
    /// Tells `encoder`, which is not open yet, what it will be given. Throws MediaError when there is no such
    /// device.
    HardwareInput(AVCodecContext& encoder, const VideoSettings& settings);

    /// The picture as the encoder takes it. Throws MediaError.
    AVFramePtr convert(const AVFrame& picture) const;

private:
    void allocateSurfaces(AVCodecContext& encoder);
    AVFramePtr uploaded(const AVFrame& picture) const;

    AVPixelFormat m_layout;
    BufferPtr m_surfaces; // in the card's memory, for VAAPI; the others copy by themselves
};

}
