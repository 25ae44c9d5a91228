// Decodes one track of an open file, skipping damaged data.
#pragma once

#include "media/FFmpeg.h"
#include "media/MediaInfo.h"

#include <limits>

namespace pointloom::media {

class TrackDecoder {
public:
    enum class Sound {
        shown, // as a player plays the file
        all,   // also what its edit list hides before its start; `hiddenAtEnd` is left in its last frames
    };

    /// 0 `threads` means as many as there are cores. The context must outlive the decoder. Throws MediaError.
    TrackDecoder(AVFormatContext* context, int streamIndex, int threads, Sound sound = Sound::shown);

    /// The next frame in the decoder's order; null at the end of the track, and when `packetLimit` packets
    /// gave none. Does not throw for damaged packets.
    AVFramePtr next(std::int64_t packetLimit = std::numeric_limits<std::int64_t>::max());

    /// Drops frames decoded ahead, and the damage found so far. Call after each seek in the context.
    void flush();

    bool isAtEnd() const { return m_atEnd; }
    /// Damage since the last seek, without `secondsMissing`.
    const Damage& damage() const { return m_damage; }

    /// Samples at the end of a frame that are an encoder's padding, with `Sound::all`.
    static int hiddenAtEnd(const AVFrame& frame);

private:
    void feed();
    void beginDraining();

    AVFormatContext* m_context;
    int m_streamIndex;
    CodecPtr m_codec;
    PacketPtr m_packet;
    Damage m_damage;
    int m_failedReadsInARow = 0; // counted as damage once something is read after them
    std::int64_t m_packetsRead = 0;
    int m_failuresInARow = 0; // of draining
    bool m_draining = false;
    bool m_atEnd = false;
};

}
