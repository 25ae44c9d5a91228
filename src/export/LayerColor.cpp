#include "export/LayerColor.h"

#include "media/LightMapping.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

using media::Matrix;
using media::Primaries;
using media::Range;
using media::Transfer;
using media::ToneLevels::referenceWhite;

namespace {

using Triple = std::array<double, 3>;

struct LumaWeights {
    double red;
    double blue;
};

LumaWeights lumaWeights(Matrix matrix) {
    switch (matrix) {
    case Matrix::bt601:
        return {0.299, 0.114}; // BT.601
    case Matrix::bt709:
        return {0.2126, 0.0722}; // BT.709
    case Matrix::bt2020:
        return {0.2627, 0.0593}; // BT.2020
    }
    return {0.2126, 0.0722};
}

// sRGB, IEC 61966-2-1.
double linearFromSrgb(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double srgbFromLinear(double value) {
    const double light = std::max(0.0, value);
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

// Linear light from BT.709 primaries to others of the same white.
Triple toPrimaries(const Triple& rgb, Primaries primaries) {
    static constexpr std::array<Triple, 3> toBt2020 = {
        Triple{0.6274039, 0.3292830, 0.0433131}, // BT.2087
        Triple{0.0690973, 0.9195404, 0.0113623},
        Triple{0.0163914, 0.0880133, 0.8955953},
    };
    static constexpr std::array<Triple, 3> toDisplayP3 = {
        Triple{0.8224621, 0.1775380, 0.0}, // from the chromaticities of SMPTE EG 432-1, D65
        Triple{0.0331941, 0.9668058, 0.0},
        Triple{0.0170827, 0.0723974, 0.9105199},
    };
    const auto& matrix = primaries == Primaries::bt2020 ? toBt2020 : toDisplayP3;
    Triple result{};
    for (std::size_t row = 0; row < 3; ++row)
        result[row] = matrix[row][0] * rgb[0] + matrix[row][1] * rgb[1] + matrix[row][2] * rgb[2];
    return result;
}

// The primaries of standard-definition video are so close to BT.709's that players treat them alike.
bool isWide(Primaries primaries) {
    return primaries == Primaries::bt2020 || primaries == Primaries::displayP3;
}

// The inverse PQ curve of SMPTE ST 2084: display light in cd/m2 to a signal of 0..1.
double pqSignal(double light) {
    constexpr double m1 = 2610.0 / 16384;
    constexpr double m2 = 2523.0 / 4096 * 128;
    constexpr double c1 = 3424.0 / 4096;
    constexpr double c2 = 2413.0 / 4096 * 32;
    constexpr double c3 = 2392.0 / 4096 * 32;
    constexpr double peak = 10000; // cd/m2
    const double power = std::pow(std::clamp(light / peak, 0.0, 1.0), m1);
    return std::pow((c1 + c2 * power) / (1 + c3 * power), m2);
}

// HLG of BT.2100: linear display light of the three primaries in cd/m2, on the nominal display, to signals of
// 0..1.
Triple hlgSignal(const Triple& light) {
    constexpr double peak = 1000; // cd/m2 of the nominal display
    constexpr double systemGamma = 1.2;
    constexpr double a = 0.17883277;
    constexpr double b = 0.28466892;
    constexpr double c = 0.55991073;
    const double luminance = (0.2627 * light[0] + 0.6780 * light[1] + 0.0593 * light[2]) / peak;
    Triple signals{};
    if (luminance <= 0)
        return signals;
    // The inverse of the display's opto-optical transfer, then the camera's curve.
    const double gain = std::pow(luminance, (1 - systemGamma) / systemGamma) / peak;
    for (std::size_t i = 0; i < 3; ++i) {
        const double scene = std::clamp(light[i] * gain, 0.0, 1.0);
        signals[i] = scene <= 1.0 / 12 ? std::sqrt(3 * scene) : a * std::log(12 * scene - b) + c;
    }
    return signals;
}

}

LayerColor::LayerColor(const media::FrameFormat& format)
    : m_format(format) {}

CodeValues LayerColor::codeValues(QRgb opaque) const {
    const Triple rgb = signal(opaque);
    const LumaWeights weights = lumaWeights(m_format.color.matrix);
    const double luma =
        weights.red * rgb[0] + (1 - weights.red - weights.blue) * rgb[1] + weights.blue * rgb[2];
    const double cb = (rgb[2] - luma) / (2 * (1 - weights.blue)); // -0.5..0.5
    const double cr = (rgb[0] - luma) / (2 * (1 - weights.red));
    const double step = 1 << (m_format.bitDepth - 8);
    const double chromaZero = 128 * step;
    if (m_format.color.range == Range::full) {
        const double peak = (1 << m_format.bitDepth) - 1;
        // Pure blue and pure red are half a step above the last code value.
        return {luma * peak, std::min(chromaZero + cb * peak, peak), std::min(chromaZero + cr * peak, peak)};
    }
    return {(16 + 219 * luma) * step, chromaZero + 224 * step * cb, chromaZero + 224 * step * cr};
}

std::array<double, 3> LayerColor::signal(QRgb opaque) const {
    Triple rgb = {qRed(opaque) / 255.0, qGreen(opaque) / 255.0, qBlue(opaque) / 255.0};
    const Transfer transfer = m_format.color.transfer;
    const bool wide = isWide(m_format.color.primaries);
    if (transfer == Transfer::sdr && !wide)
        return rgb;
    std::transform(rgb.begin(), rgb.end(), rgb.begin(), linearFromSrgb);
    if (wide)
        rgb = toPrimaries(rgb, m_format.color.primaries);
    if (transfer == Transfer::sdr) {
        std::transform(rgb.begin(), rgb.end(), rgb.begin(), srgbFromLinear);
        return rgb;
    }
    for (double& light : rgb)
        light *= referenceWhite;
    if (transfer == Transfer::hlg)
        return hlgSignal(rgb);
    std::transform(rgb.begin(), rgb.end(), rgb.begin(), pqSignal);
    return rgb;
}

}
