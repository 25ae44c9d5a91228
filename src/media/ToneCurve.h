// Brings the light of HDR into the range of SDR.
#pragma once

#include "media/FFmpeg.h"

namespace pointloom::media {

/// A Möbius curve on the brightest of red, green and blue, after very bright colours were drawn towards grey:
/// what FFmpeg's filter "tonemap=mobius:param=0.5:desat=2" does, which on its own takes as long as the rest
/// of a conversion. The curve is straight up to half of white and reaches white at the peak.
class ToneCurve {
public:
    /// `peak` is the brightest light, in units of SDR white; less than 1 counts as 1.
    explicit ToneCurve(double peak);

    /// Changes linear light in planes of 32-bit floats (AV_PIX_FMT_GBRPF32), 1 being SDR white. The frame
    /// must be writable.
    void apply(AVFrame& frame) const;

private:
    void applyToRow(float* green, float* blue, float* red, int width) const;

    // Above the knee, light x becomes scale * (x + rise) / (x + bend).
    struct Curve {
        float scale;
        float rise;
        float bend;
    } m_curve;
};

}
