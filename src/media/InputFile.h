// Opens an untrusted video file.
#pragma once

#include "media/FFmpeg.h"

#include <memory>
#include <QString>

namespace pointloom::media {

constexpr std::int64_t largestFrameArea = 8192 * 8192; // pixels

class InputFile {
public:
    /// Opens `path` with the MP4/MOV demuxer and the file protocol alone and reads the properties of its
    /// tracks. Never blocks on pipes or devices, never follows references to other files, gives up after ten
    /// seconds. Throws MediaError.
    static InputFile open(const QString& path);

    InputFile(InputFile&&) noexcept;
    InputFile& operator=(InputFile&&) noexcept;
    ~InputFile();

    AVFormatContext* context() const { return m_context; }

    /// Packets of all other tracks are skipped without being read.
    void keepOnly(int streamIndex);

private:
    struct Deadline;

    InputFile();

    AVFormatContext* m_context = nullptr;
    std::unique_ptr<Deadline> m_deadline; // the context's interrupt callback points here
};

/// Whether there is a decoder for the stream.
bool canDecode(const AVStream& stream);

}
