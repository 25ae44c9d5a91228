// Encodes pictures into the packets of one track.
#pragma once

#include "media/DecodeTimes.h"
#include "media/OutputFile.h"
#include "media/PictureEncoder.h"

#include <map>

namespace pointloom::media {

class VideoEncoder {
public:
    /// Opens the encoder and adds its track to `file`, which must outlive it. Throws MediaError.
    VideoEncoder(OutputFile& file, const VideoSettings& settings);

    void write(const VideoFrame& frame);
    void finish();

private:
    void writePackets();
    std::int64_t decodeTimeOf(const AVPacket& packet);
    bool countsDecodeTimes() const;

    OutputFile& m_file;
    VideoSettings m_settings;
    PictureEncoder m_encoder;
    AVStream& m_track;                                // owned by the file
    std::map<std::int64_t, std::int64_t> m_durations; // by timestamp, of pictures inside of the encoder
    DecodeTimes m_decodeTimes;                        // of x265
    std::int64_t m_lastTimestamp = AV_NOPTS_VALUE;
    std::int64_t m_usualDuration = 1; // ticks
};

}
