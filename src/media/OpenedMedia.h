// What both readMediaInfo and VideoReader do first: describe the file and decode its first picture.
#pragma once

#include "media/InputFile.h"
#include "media/MediaInfo.h"
#include "media/TrackDecoder.h"

#include <optional>

namespace pointloom::media {

struct OpenedMedia {
    MediaInfo info;
    int videoStream = -1;                // index; -1 without video
    std::optional<TrackDecoder> decoder; // of the video track
    AVFramePtr firstPicture;             // tags completed; null when none came within bounds
};

/// Leaves `file` set to read its video track alone. Throws MediaError when the file has neither video nor
/// sound, and when no picture of its video track can be decoded.
OpenedMedia openMedia(InputFile& file, int decoderThreads);

}
