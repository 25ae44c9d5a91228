// Brings linear light into the range of an SDR target: other primaries, tones of HDR, colours outside the
// gamut.
#pragma once

#include "media/FrameFormat.h"

#include <array>
#include <optional>

struct AVFrame;

namespace pointloom::media {

/// The numbers by which HDR becomes SDR. Exports and the player, which use different means, follow the same
/// ones.
namespace ToneLevels {

constexpr double referenceWhite = 203; // cd/m2, BT.2408: HDR light that becomes SDR white
constexpr double usualPeak = 1000;     // cd/m2, of an HLG display and of most PQ masters
constexpr double knee = 0.5;           // in units of SDR white: light below is not changed
constexpr double colorLimit = 2;       // in units of SDR white: colours above it fade

}

/// The planes of a row of linear light, 1 being SDR white.
struct LightRow {
    float* red;
    float* green;
    float* blue;
    int width; // pixels
};

/// Tone mapping by a Möbius transformation of the brightest of red, green and blue, after very bright colours
/// are mixed with grey. Light M(x) for light x, both in units of SDR white: M(x) = x up to the knee of 0.5,
/// above it M(x) = scale * (x + rise) / (x + bend) with M(knee) = knee, M'(knee) = 1 and M(peak) = 1. The
/// same result as FFmpeg's filter "tonemap=mobius:param=0.5:desat=2", in half of its time.
class ToneCurve {
public:
    /// `peak` is the brightest light, in units of SDR white, [1, infinity); less counts as 1.
    explicit ToneCurve(double peak);

    void apply(const LightRow& row) const;

private:
    float m_scale;
    float m_rise;
    float m_bend;
};

/// All changes of light between the source's transfer function and the target's. The result is in [0, 1] for
/// every input, infinity and NaN included, so that a transfer function gets only light for which it is
/// defined.
class LightMapping {
public:
    /// `peak` is the brightest light of an HDR source in units of SDR white; without it tones are not mapped.
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
