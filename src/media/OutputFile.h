// The file that a MediaWriter fills: container, tracks, interleaving.
#pragma once

#include "media/Chapter.h"
#include "media/FFmpegHandles.h"

#include <QString>

namespace pointloom::media {

class OutputFile {
public:
    /// Creates the file, replacing what is there. `container` is "mp4" or "mov". Throws MediaError.
    OutputFile(const QString& path, const char* container);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile(); // closes the file, finished or not

    /// A track for what `encoder` produces; the stream belongs to the file.
    AVStream& addTrack(const AVCodecContext& encoder);

    /// A track that takes the packets of `source`, which belongs to another file, as they are.
    AVStream& addTrack(const AVStream& source);

    bool wantsGlobalHeaders() const;

    /// Kept in the file for whoever reads it; call before the header is written.
    void setComment(const QString& comment);

    /// In the order of their times.
    void addChapter(const Chapter& chapter);

    /// Call once, after the last track and before the first packet.
    void writeHeader(Rational videoTimeBase);

    /// Takes the packet's content. `timeBase` is that of its timestamps.
    void write(AVPacket& packet, const AVStream& track, AVRational timeBase);

    /// Writes the index and closes the file.
    void finish();

private:
    [[noreturn]] void fail(int code) const;

    AVFormatContext* m_context = nullptr;
};

}
