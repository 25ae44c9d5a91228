// Where the range of an export can be cut.
#pragma once

#include "export/TrimRange.h"
#include "media/VideoReader.h"

#include <vector>

namespace pointloom {

/// Times of key frames, ticks of the track, rising, that cut `range` into at most `count` segments of about
/// the same length; none is shorter than a second or eight frames. Throws MediaError.
std::vector<std::int64_t> segmentCuts(media::VideoReader& reader, const TrimRange& range, int count);

}
