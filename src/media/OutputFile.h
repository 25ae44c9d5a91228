// A file that is written: container, tracks, interleaving.
#pragma once

#include "media/FFmpeg.h"
#include "media/MediaWriter.h"

#include <QString>

namespace pointloom::media {

class OutputFile {
public:
    /// Creates or replaces the file. `container` is "mp4" or "mov". Throws MediaError.
    OutputFile(const QString& path, const char* container);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile(); // closes the file, finished or not

    /// Adds a track for the packets of `encoder`; the stream belongs to the file. Throws MediaError.
    AVStream& addTrack(const AVCodecContext& encoder);

    /// Adds a track for unchanged packets of `source`, a stream of another file. Throws MediaError.
    AVStream& addTrack(const AVStream& source);

    bool wantsGlobalHeaders() const;

    /// Stores a comment in the file; call before the header is written. Throws MediaError.
    void setComment(const QString& comment);

    /// Adds a chapter; call in the order of their times, before the header is written. Throws MediaError.
    void addChapter(const Chapter& chapter);

    /// Call once, after the last track and before the first packet. Throws MediaError.
    void writeHeader(Rational videoTimeBase);

    /// Writes the packet and empties it. `timeBase` is that of its timestamps. Throws MediaError.
    void write(AVPacket& packet, const AVStream& track, AVRational timeBase);

    /// Writes the index and closes the file. Throws MediaError.
    void finish();

private:
    [[noreturn]] void fail(int code) const;

    AVFormatContext* m_context = nullptr;
};

}
