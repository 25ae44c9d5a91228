// A three-dimensional lookup table of colours (3D LUT): makes a costly conversion of colours cheap.
#pragma once

#include "media/FrameFormat.h"

#include <array>
#include <cstdint>
#include <vector>

namespace pointloom::media {

class ColorCube {
public:
    /// Converts the code values of an HDR frame or one of a wide gamut, already full-range RGB, to those of
    /// BT.709, as exports do: the table is filled by the same conversion. `peak` is the brightest
    /// light of HDR, in cd/m2. Throws MediaError.
    static ColorCube toScreen(Transfer transfer, Primaries primaries, double peak);

    /// `rgba` holds 16-bit red, green, blue and a number that is ignored for each of `width` pixels; `argb`
    /// takes 0xffRRGGBB for each.
    void convertRow(const std::uint16_t* rgba, std::uint32_t* argb, int width) const;

private:
    using Color = std::array<float, 4>; // blue, green, red, and the highest level

    ColorCube() = default;

    std::vector<Color> m_colors; // red changes fastest, blue slowest
};

}
