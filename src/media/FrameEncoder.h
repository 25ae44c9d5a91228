// Opens a video encoder, which takes frames and returns packets.
#pragma once

#include "media/HardwareInput.h"

#include <optional>

namespace pointloom::media {

/// Errors of hardware encoders name the encoder and suggest the software encoder.
class FrameEncoder {
public:
    /// Throws EncoderError when there is no such encoder or it refuses the settings, else MediaError.
    FrameEncoder(const VideoSettings& settings, bool wantsGlobalHeaders);

    const AVCodecContext& context() const { return *m_codec; }

    /// Takes a frame of the settings' size and layout. `timestamp` counts ticks of their time base and
    /// rises. Throws MediaError.
    void send(const VideoFrame& frame, std::int64_t timestamp);

    /// Flushes; call `next()` until it returns null. Throws MediaError.
    void finish();

    /// The next packet, valid until the next call; null while it needs more frames, and at the end. Throws
    /// MediaError.
    AVPacket* next();

private:
    template <class Call>
    void withEncoderName(const Call& call) const;

    VideoSettings m_settings;
    CodecPtr m_codec;
    std::optional<HardwareInput> m_input; // none for software, which takes frames as they are
    PacketPtr m_packet;
};

}
