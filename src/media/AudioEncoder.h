// Encodes stereo sound to AAC into the packets of one track.
#pragma once

#include "media/AudioReader.h"
#include "media/OutputFile.h"

#include <optional>

namespace pointloom::media {

class AudioEncoder {
public:
    /// Opens the encoder and adds its track to `file`, which must outlive it. Throws MediaError.
    explicit AudioEncoder(OutputFile& file);

    /// Samples missing before the frame become silence, samples that came before are left out.
    /// False when the encoder refuses them. Throws MediaError when the file cannot be written.
    [[nodiscard]] bool write(const AudioFrame& frame);

    void finish();

private:
    bool append(const AVFrame& samples, int skipped, int count);
    bool encodeWhole(bool last);
    bool send(const AVFrame* samples);

    OutputFile& m_file;
    CodecPtr m_codec;
    AVStream* m_track = nullptr; // owned by the file
    PacketPtr m_packet;
    AudioFifoPtr m_waiting;        // samples that do not yet fill a frame of the encoder
    std::int64_t m_nextSample = 0; // expected from the caller
    std::int64_t m_encodedSamples = 0;
};

}
