// Decodes one track of an open file, going on over damage.
#pragma once

#include "media/Damage.h"
#include "media/FFmpegHandles.h"

#include <limits>

namespace pointloom::media {

class TrackDecoder {
public:
    /// `threads` 0 takes as many as there are cores. The context must outlive the decoder. Throws MediaError.
    TrackDecoder(AVFormatContext* context, int streamIndex, int threads);

    /// The next frame in the decoder's order; null at the end of the track, and when `packetLimit` packets
    /// brought none. Never fails for what the packets hold.
    AVFramePtr next(std::int64_t packetLimit = std::numeric_limits<std::int64_t>::max());

    /// Forgets what was read ahead, and the damage found so far. Call after each seek in the context.
    void flush();

    bool isAtEnd() const { return m_atEnd; }
    /// Since the last seek; without what is missing at the end.
    const Damage& damage() const { return m_damage; }

private:
    void feed();
    void beginDraining();

    AVFormatContext* m_context;
    int m_streamIndex;
    CodecPtr m_codec;
    PacketPtr m_packet;
    Damage m_damage;
    int m_failedReadsInARow = 0; // damage only when something can be read after them
    std::int64_t m_packetsRead = 0;
    int m_failuresInARow = 0; // of draining
    bool m_draining = false;
    bool m_atEnd = false;
};

}
