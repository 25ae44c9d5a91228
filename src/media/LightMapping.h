// Brings linear light into the range of an SDR target: other primaries, tones of HDR, colours outside the
// gamut.
#pragma once

#include "media/FFmpeg.h"
#include "media/FrameFormat.h"

#include <array>
#include <optional>

namespace pointloom::media {

/// The planes of a row of linear light, 1 being SDR white.
struct LightRow {
    float* red;
    float* green;
    float* blue;
    int width; // pixels
};

/// Möbius transformation of the brightest of red, green and blue, after very bright colours are mixed with
/// grey: the result of FFmpeg's filter "tonemap=mobius:param=0.5:desat=2", in half of its time. The curve is
/// straight up to half of white and maps the peak to white.
class ToneCurve {
public:
    /// `peak` is the brightest light, in units of SDR white; less than 1 counts as 1.
    explicit ToneCurve(double peak);

    void apply(const LightRow& row) const;

private:
    // Above the knee, light x becomes scale * (x + rise) / (x + bend).
    float m_scale;
    float m_rise;
    float m_bend;
};

/// Everything that happens to light between the source's transfer function and the target's. The result is in
/// [0, 1] whatever the input holds, infinity and NaN included, so that a transfer function never gets light
/// that it is not defined for.
class LightMapping {
public:
    /// `peak` is the brightest light of an HDR source in units of SDR white; none: tones stay as they are.
    LightMapping(Primaries source, Primaries target, std::optional<double> peak);

    /// Changes linear light in planes of 32-bit floats (AV_PIX_FMT_GBRPF32), in the source's primaries. The
    /// frame must be writable.
    void apply(AVFrame& light) const;

private:
    void changePrimaries(const LightRow& row) const;
    void fitIntoGamut(const LightRow& row) const;

    std::array<float, 9> m_matrix;      // row by row, from the source's RGB to the target's
    std::array<float, 3> m_lumaWeights; // of the target's red, green and blue
    std::optional<ToneCurve> m_tones;
};

}
