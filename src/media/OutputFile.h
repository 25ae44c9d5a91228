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

    /// Adds chapters, captions and comment; call after the last track and before the header is written.
    /// Throws MediaError.
    void addTexts(const FileTexts& texts);

    /// Call once, after the last track and before the first packet. Throws MediaError.
    void writeHeader(Rational videoTimeBase);

    /// Writes the packet and empties it. `timeBase` is that of its timestamps. Throws MediaError.
    void write(AVPacket& packet, const AVStream& track, AVRational timeBase);

    /// Writes the index and closes the file. Throws MediaError.
    void finish();

private:
    void addChapter(const Chapter& chapter);
    void writeCaptionsUntil(double time);
    void writePacket(AVPacket& packet, const AVStream& track, AVRational timeBase);
    [[noreturn]] void fail(int code) const;

    QString m_path;
    AVFormatContext* m_context = nullptr;
    std::vector<Caption> m_captions;
    std::size_t m_writtenCaptions = 0;
    AVStream* m_textTrack = nullptr; // owned by the file
    PacketPtr m_textPacket;
};

}
