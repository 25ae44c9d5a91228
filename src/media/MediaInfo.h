// Properties of a source file, read without decoding it whole.
#pragma once

#include "media/FrameFormat.h"

#include <cstdint>
#include <optional>
#include <QSize>
#include <QString>

namespace pointloom::media {

struct VideoTrackInfo {
    QString codecName;                // "h264", "hevc", ...
    QSize storedSize;                 // pixels as they are encoded
    Rational sampleAspectRatio{1, 1}; // width of a stored pixel divided by its height
    Orientation orientation;
    Rational frameRate{30, 1};         // nominal; 30 when the file does not say
    Rational timeBase{1, 90000};       // seconds a tick of the frames' times, 1/600 or less
    std::optional<FrameFormat> format; // empty when frames must be converted before drawing
    ColorDescription color;
    HdrMetadata hdr; // also of tracks that are not HDR, if they carry any
    int bitDepth = 8;
    bool interlaced = false;

    /// Size of the picture as shown: square pixels, upright. Width is stored width times the pixel's shape.
    QSize uprightSize() const;
};

struct MediaInfo {
    double duration = 0;                 // seconds
    std::optional<VideoTrackInfo> video; // the first video track that is not a cover
    int audioTracks = 0;                 // that can be decoded
};

/// Parts of a video that could not be read.
struct Damage {
    std::int64_t lostFrames = 0;   // could not be decoded and were left out
    std::int64_t faultyFrames = 0; // were decoded with faults that may be seen
    double secondsMissing = 0;     // at the end: in the file's index, but not in the file

    bool operator==(const Damage&) const = default;
};

/// Opens `path` with the MP4/MOV demuxer and the file protocol alone, within size and time limits.
/// Throws MediaError: not a regular file, empty, not an MP4/MOV file, damaged, too many tracks, too slow.
/// A file without a video track is no error here.
MediaInfo readMediaInfo(const QString& path);

}
