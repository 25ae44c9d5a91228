#include "media/ToneCurve.h"

#include "media/ToneLevels.h"

#include <algorithm>

namespace pointloom::media {

namespace {

constexpr auto knee = static_cast<float>(ToneLevels::knee);
constexpr auto colorLimit = static_cast<float>(ToneLevels::colorLimit);
constexpr float nearlyDark = 1e-6F;

// Of BT.2020, as the filter takes them from the tags of the source.
constexpr float redWeight = 0.2627F;
constexpr float greenWeight = 0.6780F;
constexpr float blueWeight = 0.0593F;

float* rowOf(AVFrame& frame, int plane, int y) {
    return reinterpret_cast<float*>(frame.data[plane] +
                                    static_cast<std::ptrdiff_t>(y) * frame.linesize[plane]);
}

}

// The Möbius transformation that passes the knee with slope 1 and takes the peak to 1.
ToneCurve::ToneCurve(double peak) {
    const double k = knee;
    const double p = std::max(peak, 1.0);
    const double rise = -k * k * (p - 1) / (k * k - 2 * k + p);
    const double bend = (k * k - 2 * k * p + p) / std::max(p - 1, 1e-6);
    m_curve = {static_cast<float>((bend * bend + 2 * bend * k + k * k) / (bend - rise)),
               static_cast<float>(rise), static_cast<float>(bend)};
}

void ToneCurve::apply(AVFrame& frame) const {
    for (int y = 0; y < frame.height; ++y)
        applyToRow(rowOf(frame, 0, y), rowOf(frame, 1, y), rowOf(frame, 2, y), frame.width);
}

// Without branches, and without members, which the rows might overlap: so the compiler works on several
// pixels at once.
void ToneCurve::applyToRow(float* green, float* blue, float* red, int width) const {
    const auto [scale, rise, bend] = m_curve;
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

}
