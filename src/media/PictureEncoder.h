// One opened encoder: pictures in, packets out.
#pragma once

#include "media/HardwareInput.h"

#include <optional>

namespace pointloom::media {

/// An encoder in hardware that fails at work is named by its error, with the advice to take the software.
class PictureEncoder {
public:
    /// Throws MediaError.
    PictureEncoder(const VideoSettings& settings, bool wantsGlobalHeaders);

    const AVCodecContext& context() const { return *m_codec; }

    /// Takes a picture of the settings' size and layout. `timestamp` counts ticks of their time base and
    /// rises. Throws MediaError.
    void send(const VideoFrame& frame, std::int64_t timestamp);

    /// Lets out what it still holds.
    void finish();

    /// The next packet, valid until the next call; null while it wants more pictures, and at the end. Throws
    /// MediaError.
    AVPacket* next();

private:
    template <class Call>
    void tellingTheEncoder(const Call& call) const;

    VideoSettings m_settings;
    CodecPtr m_codec;
    std::optional<HardwareInput> m_input; // none for software, which takes pictures as they are
    PacketPtr m_packet;
};

}
