// Contrast of two colours after WCAG 2.1, "contrast ratio" and "relative luminance":
// https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio
#pragma once

#include <algorithm>
#include <cmath>
#include <QColor>

namespace pointloom::test {

inline double relativeLuminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// 1 to 21.
inline double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

}
