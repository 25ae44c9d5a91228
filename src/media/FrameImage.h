// Pictures as a screen shows them, for stills.
#pragma once

#include "media/VideoFrame.h"

#include <cstdint>
#include <QSize>
#include <vector>

namespace pointloom::media {

/// Rows from top to bottom without gaps, four bytes a pixel: red, green, blue, and 255.
struct RgbaPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// The frame as stored (not turned, pixels not made square) in full-range BT.709 RGB. HDR is tone-mapped as
/// FrameConverter does. Throws MediaError.
RgbaPicture toRgb(const VideoFrame& frame);

/// The same, scaled to `size` pixels on the way, which for small pictures costs a fraction.
RgbaPicture toRgb(const VideoFrame& frame, QSize size);

}
