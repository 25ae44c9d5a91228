// Data beside a track's packets, which FFmpeg's versions keep in different places.
#pragma once

#include "media/FFmpeg.h"

#include <cstddef>

namespace pointloom::media {

/// Null when the track has none of that type, or less than `size` bytes of it.
const std::uint8_t* findSideData(const AVStream& stream, AVPacketSideDataType type, std::size_t size);

/// Zeros for the caller to fill; they belong to the stream. Throws MediaError when memory is short.
std::uint8_t* addSideData(AVStream& stream, AVPacketSideDataType type, std::size_t size);

}
