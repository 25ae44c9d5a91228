// Encodes some frames for the sizes that they get, which tell how large a whole file becomes.
#pragma once

#include "media/MediaWriter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace pointloom::media {

struct EncodedSizes {
    std::vector<std::int64_t> bytes; // of each frame, in the order of coding; the first is a key frame
    int keyFrameDistance = 1;        // frames, at most, in long videos
};

/// Encodes the frames that `next` returns until it returns none; their timestamps rise. Throws MediaError,
/// and what `next` throws.
EncodedSizes encodedSizes(const VideoSettings& settings,
                          const std::function<std::optional<VideoFrame>()>& next);

}
