// The files of one match, read as one video: cameras split what they record into several.
#pragma once

#include "media/MediaError.h"
#include "media/MediaInfo.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <QString>
#include <utility>
#include <vector>

namespace pointloom::media {

/// The names of the files in their order; mostly of a single one, which costs nothing more.
class Recording {
public:
    Recording(const QString& file) // implicit: a file is a recording
        : m_files{file} {}

    /// All of `files`, or `first` alone where they do not begin with it.
    Recording(const QString& first, const std::optional<std::vector<QString>>& files)
        : m_files(files && !files->empty() && files->front() == first ? *files : std::vector{first}) {}

    const std::vector<QString>& files() const& { return m_files; }
    std::vector<QString> files() && { return std::move(m_files); } // a loop over a temporary keeps them
    const QString& first() const& { return m_files.front(); }
    QString first() && { return std::move(m_files.front()); }
    bool isSplit() const { return m_files.size() > 1; }

    bool operator==(const Recording&) const = default;

private:
    std::vector<QString> m_files;
};

/// Facts about one file, in its own times.
struct FileFacts {
    MediaInfo info;         // with a video track
    std::int64_t first = 0; // ticks of the video track at which its first frame is shown
    std::int64_t end = 0;   // ticks at which its last frame ends, by the index when frames are missing there
    std::optional<std::int64_t> createdAt; // milliseconds since 1970, as the file says

    /// From the first frame to the end of the last, seconds.
    double length() const { return static_cast<double>(end - first) * info.video->timeBase.value(); }
};

/// Reads the file's index and one frame; the facts of files that have not changed are remembered. May be
/// called by any thread. Throws MediaError as `readMediaInfo`, also when there is no video track.
FileFacts factsOf(const QString& path);

/// The place of a file in its recording, whose times are those of the first file: each further file's first
/// frame follows the end of the last frame before it, and its sound keeps its distance to its own frames.
struct PlacedFile {
    QString path;
    Rational timeBase;       // of the file's own times
    std::int64_t begin = 0;  // ticks of the recording at which its first frame is shown
    std::int64_t offset = 0; // ticks of the recording added to the file's own times
};

struct RecordingLayout {
    std::vector<PlacedFile> files;
    Rational timeBase;   // of the recording: that of its first file
    double duration = 0; // seconds
    int audioTracks = 0; // most of any file

    bool isSplit() const { return files.size() > 1; }

    /// Seconds at which the file's first frame is shown; 0 for the first file.
    double beginOf(std::size_t file) const;

    /// Seconds of the recording that are added to the file's own times.
    double offsetOf(std::size_t file) const;

    /// The file that is shown at `ticks`, or at `time` in seconds.
    std::size_t fileAt(std::int64_t ticks) const;
    std::size_t fileAt(double time) const;

    /// A file's own time in the recording, and back; in ticks of either.
    std::int64_t placed(std::int64_t ownTicks, std::size_t file) const;
    std::int64_t ownTicks(std::int64_t ticks, std::size_t file) const;
};

enum class Difference { shape, size, rate, codec, light, sound };

/// What of a further file is another than of the first: upright shape, turning or interlacing; size; rate of
/// frames; codec; SDR or kind of HDR; number of audio tracks. With another shape they cannot be one video;
/// all else is converted to what the first file has.
std::vector<Difference> differences(const MediaInfo& first, const MediaInfo& further);

/// Places the files; opens them only when there are several, and throws MediaError then, which names the
/// file, also for a file of another shape. The layout of a single file has nothing but its path.
RecordingLayout layoutOf(const Recording& recording);

/// Where a moment of one recording is in another one that shares files with it.
struct MovedTime {
    double time;    // seconds
    bool isLeftOut; // the other one does not have its file: `time` is where the next file begins, or infinite
};

/// `time` in seconds of `from`.
MovedTime movedTime(double time, const RecordingLayout& from, const RecordingLayout& to);

/// `readMediaInfo` of the first file, with the length and the audio tracks of all. Throws MediaError as both.
MediaInfo infoOf(const Recording& recording);

/// The error with the file's name before its reason.
MediaError named(const MediaError& error, const QString& path);

}
