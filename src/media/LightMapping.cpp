#include "media/LightMapping.h"

#include "media/FFmpeg.h"

#include <algorithm>

namespace pointloom::media {

namespace {

constexpr auto knee = static_cast<float>(ToneLevels::knee);
constexpr auto colorLimit = static_cast<float>(ToneLevels::colorLimit);
constexpr float nearlyDark = 1e-6F;

// BT.2020's weights of luma, as the filter takes them from the tags of the source.
constexpr float redWeight = 0.2627F;
constexpr float greenWeight = 0.6780F;
constexpr float blueWeight = 0.0593F;

using Matrix3 = std::array<double, 9>; // row by row

struct ChromaticityPoint { // CIE 1931
    double x;
    double y;
};

struct Gamut {
    ChromaticityPoint red;
    ChromaticityPoint green;
    ChromaticityPoint blue;
};

constexpr ChromaticityPoint d65{0.3127, 0.3290}; // white of all of them

Gamut gamutOf(Primaries primaries) {
    switch (primaries) {
    case Primaries::bt601_525: // SMPTE ST 170
        return {{0.630, 0.340}, {0.310, 0.595}, {0.155, 0.070}};
    case Primaries::bt601_625: // BT.470 system B, G
        return {{0.640, 0.330}, {0.290, 0.600}, {0.150, 0.060}};
    case Primaries::bt709:
        break;
    case Primaries::bt2020:
        return {{0.708, 0.292}, {0.170, 0.797}, {0.131, 0.046}};
    case Primaries::displayP3: // SMPTE EG 432-1
        return {{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}};
    }
    return {{0.640, 0.330}, {0.300, 0.600}, {0.150, 0.060}};
}

double cofactor(const Matrix3& m, std::size_t row, std::size_t column) {
    const auto at = [&](std::size_t r, std::size_t c) { return m[(row + r) % 3 * 3 + (column + c) % 3]; };
    return at(1, 1) * at(2, 2) - at(1, 2) * at(2, 1);
}

Matrix3 inverse(const Matrix3& m) {
    const double determinant = m[0] * cofactor(m, 0, 0) + m[1] * cofactor(m, 0, 1) + m[2] * cofactor(m, 0, 2);
    Matrix3 result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            result[row * 3 + column] = cofactor(m, column, row) / determinant;
    }
    return result;
}

Matrix3 product(const Matrix3& a, const Matrix3& b) {
    Matrix3 result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t i = 0; i < 3; ++i)
                result[row * 3 + column] += a[row * 3 + i] * b[i * 3 + column];
        }
    }
    return result;
}

/// From linear RGB to CIE XYZ, white at Y = 1 (SMPTE RP 177).
Matrix3 toXyz(const Gamut& gamut) {
    const auto z = [](ChromaticityPoint color) { return 1 - color.x - color.y; };
    Matrix3 matrix{gamut.red.x,  gamut.green.x, gamut.blue.x,   gamut.red.y,  gamut.green.y,
                   gamut.blue.y, z(gamut.red),  z(gamut.green), z(gamut.blue)};
    const Matrix3 weights = inverse(matrix);
    for (std::size_t column = 0; column < 3; ++column) {
        const double share = (weights[column * 3] * d65.x + weights[column * 3 + 1] * d65.y +
                              weights[column * 3 + 2] * z(d65)) /
                             d65.y;
        for (std::size_t row = 0; row < 3; ++row)
            matrix[row * 3 + column] *= share;
    }
    return matrix;
}

float* rowOf(AVFrame& frame, int plane, int y) {
    return reinterpret_cast<float*>(frame.data[plane] +
                                    static_cast<std::ptrdiff_t>(y) * frame.linesize[plane]);
}

/// 0 for NaN.
float clampToUnit(float value) {
    return std::min(std::max(0.0F, value), 1.0F);
}

}

// Solves M(k) = k, M'(k) = 1, M(p) = 1 for the three parameters.
ToneCurve::ToneCurve(double peak) {
    const double k = knee;
    const double p = std::max(peak, 1.0);
    const double rise = -k * k * (p - 1) / (k * k - 2 * k + p);
    const double bend = (k * k - 2 * k * p + p) / std::max(p - 1, 1e-6);
    m_scale = static_cast<float>((bend * bend + 2 * bend * k + k * k) / (bend - rise));
    m_rise = static_cast<float>(rise);
    m_bend = static_cast<float>(bend);
}

// This and the loops below have no branches and use no members, which could overlap the rows: so the compiler
// works on several pixels at once.
void ToneCurve::apply(const LightRow& row) const {
    const auto [red, green, blue, width] = row;
    const float scale = m_scale;
    const float rise = m_rise;
    const float bend = m_bend;
    for (int x = 0; x < width; ++x) {
        const float luma = redWeight * red[x] + greenWeight * green[x] + blueWeight * blue[x];
        const float fade = std::max(luma - colorLimit, nearlyDark) / std::max(luma, nearlyDark);
        const float r = red[x] + fade * (luma - red[x]);
        const float g = green[x] + fade * (luma - green[x]);
        const float b = blue[x] + fade * (luma - blue[x]);
        const float light = std::max(std::max(r, g), std::max(b, nearlyDark));
        const float bright = std::max(light, knee);
        const float above = scale * (bright + rise) / (bright + bend) - knee;
        const float factor = (std::min(light, knee) + above) / light;
        red[x] = r * factor;
        green[x] = g * factor;
        blue[x] = b * factor;
    }
}

LightMapping::LightMapping(Primaries source, Primaries target, std::optional<double> peak) {
    const Matrix3 targetToXyz = toXyz(gamutOf(target));
    const Matrix3 matrix = product(inverse(targetToXyz), toXyz(gamutOf(source)));
    std::ranges::transform(matrix, m_matrix.begin(), [](double value) { return static_cast<float>(value); });
    for (std::size_t i = 0; i < m_lumaWeights.size(); ++i)
        m_lumaWeights[i] = static_cast<float>(targetToXyz[3 + i]);
    if (peak)
        m_tones.emplace(*peak);
}

void LightMapping::apply(AVFrame& light) const {
    for (int y = 0; y < light.height; ++y) {
        const LightRow row{rowOf(light, 2, y), rowOf(light, 0, y), rowOf(light, 1, y), light.width};
        changePrimaries(row);
        if (m_tones)
            m_tones->apply(row);
        fitIntoGamut(row);
    }
}

void LightMapping::changePrimaries(const LightRow& row) const {
    const auto [red, green, blue, width] = row;
    const auto m = m_matrix;
    for (int x = 0; x < width; ++x) {
        const float r = red[x];
        const float g = green[x];
        const float b = blue[x];
        red[x] = m[0] * r + m[1] * g + m[2] * b;
        green[x] = m[3] * r + m[4] * g + m[5] * b;
        blue[x] = m[6] * r + m[7] * g + m[8] * b;
    }
}

// Mixes a colour outside the gamut with the grey of its luminance until it is inside: its hue and luminance
// stay, where cutting off each component by itself would change both.
void LightMapping::fitIntoGamut(const LightRow& row) const {
    const auto [red, green, blue, width] = row;
    const auto [redLuma, greenLuma, blueLuma] = m_lumaWeights;
    for (int x = 0; x < width; ++x) {
        const float r = red[x];
        const float g = green[x];
        const float b = blue[x];
        const float grey = clampToUnit(redLuma * r + greenLuma * g + blueLuma * b);
        const float below = std::max(grey - std::min(std::min(r, g), b), nearlyDark);
        const float above = std::max(std::max(std::max(r, g), b) - grey, nearlyDark);
        const float share = std::min(std::min(grey / below, (1 - grey) / above), 1.0F);
        red[x] = clampToUnit(grey + share * (r - grey));
        green[x] = clampToUnit(grey + share * (g - grey));
        blue[x] = clampToUnit(grey + share * (b - grey));
    }
}

}
