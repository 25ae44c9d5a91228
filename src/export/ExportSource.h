// Opens the video of an export and holds the job against it, before anything is written.
#pragma once

#include "export/ExportManager.h"
#include "files/FileError.h"
#include "media/MediaWriter.h"
#include "media/VideoReader.h"

namespace pointloom::ExportSource {

/// An error of the export from one of a module below; `what` ends with a colon and a space.
ExportError failure(const char* what, const media::MediaError& reason);
ExportError failure(const char* what, const FileError& reason);

/// What `write` returns; its FileError as an error of the export.
template <class Write>
auto writing(const char* what, const Write& write) {
    try {
        return write();
    } catch (const FileError& error) {
        throw failure(what, error);
    }
}

/// An error of the export whose text is a sentence of its own; the reason follows in parentheses.
ExportError refusal(const char* text, const media::MediaError& reason);

/// The error of the export for the exception in flight, which creating a writer threw: MediaError, FileError
/// or std::bad_alloc.
ExportError writerError();

/// Throws ExportError.
media::VideoReader open(const QString& path);

/// Throws ExportError when the picture is too small for an overlay.
void requireOverlaySize(const media::VideoTrackInfo& track);

/// Throws ExportError when a file written to `path` would replace one that the job reads.
void requireOtherFile(const ExportJob& job, const QString& path);

/// Throws ExportError when the range is no range of a video that lasts `videoDuration` seconds.
void requireRange(const ExportJob& job, double videoDuration);

/// Where a range that `requireRange` took ends: at `trimEnd`, but not behind the video's end. Seconds; a
/// duration of 0 is unknown.
double endOfRange(std::optional<double> trimEnd, double videoDuration);

media::VideoCodec codecOf(ExportFormat format);

}
