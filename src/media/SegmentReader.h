// Reads the packets of a segment's one track as they are.
#pragma once

#include "media/FFmpegHandles.h"
#include "media/InputFile.h"

namespace pointloom::media {

class SegmentReader {
public:
    /// Opens a file with exactly one track, of pictures or of sound. Throws MediaError, which names the file.
    SegmentReader(const QString& path, AVMediaType type);

    const AVStream& track() const { return *m_file.context()->streams[0]; }

    /// The next packet in the order of decoding, `offset` ticks later than the segment says; null at the end.
    /// Throws MediaError when the file holds fewer packets than its index names.
    AVPacket* next(std::int64_t offset = 0);

    /// Throws MediaError unless the tracks of both could stand in one.
    void requireAlike(const SegmentReader& other) const;

private:
    void limitDuration();
    [[noreturn]] void fail(const std::string& reason) const;

    QString m_path;
    InputFile m_file;
    PacketPtr m_packet;
    std::int64_t m_packets = 0;
};

}
