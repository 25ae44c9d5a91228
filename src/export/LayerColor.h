// Converts drawn colours to the samples of a video frame.
#pragma once

#include "media/FrameFormat.h"

#include <array>
#include <QRgb>

namespace pointloom {

/// One colour as Y', Cb, Cr in units of the format's code values, offsets included: white is 235 (or 940 at
/// ten bits) in limited range, grey has its chroma at 128 (512).
using CodeValues = std::array<double, 3>;

/// Maps drawn colours (sRGB) to a frame's samples. In HDR frames drawn white has the reference level.
class LayerColor {
public:
    explicit LayerColor(const media::FrameFormat& format);

    /// The samples of an opaque colour; its alpha is ignored.
    CodeValues codeValues(QRgb opaque) const;

private:
    std::array<double, 3> signal(QRgb opaque) const;

    media::FrameFormat m_format;
};

}
