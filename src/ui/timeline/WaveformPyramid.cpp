#include "ui/timeline/WaveformPyramid.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

void WaveformPyramid::append(std::span<const std::uint8_t> peaks) {
    std::size_t changed = m_levels[0].size();
    for (const std::uint8_t peak : peaks)
        m_loudest = std::max(m_loudest, peak);
    m_levels[0].insert(m_levels[0].end(), peaks.begin(), peaks.end());
    for (std::size_t level = 1; level < levelCount; ++level) {
        const auto& below = m_levels[level - 1];
        auto& here = m_levels[level];
        changed /= childrenOfPeak;
        here.resize((below.size() + childrenOfPeak - 1) / childrenOfPeak);
        for (std::size_t i = changed; i < here.size(); ++i) {
            const auto first = below.begin() + static_cast<std::ptrdiff_t>(i * childrenOfPeak);
            const auto count = std::min(childrenOfPeak, below.size() - i * childrenOfPeak);
            here[i] = *std::max_element(first, first + static_cast<std::ptrdiff_t>(count));
        }
    }
}

void WaveformPyramid::clear() {
    for (auto& level : m_levels)
        level.clear();
    m_loudest = 0;
}

std::uint8_t WaveformPyramid::loudest(double from, double to) const {
    const auto clamped = [&](double peak) {
        return static_cast<std::size_t>(std::clamp(peak, 0.0, static_cast<double>(size())));
    };
    std::size_t first = clamped(std::floor(from * peaksPerSecond));
    std::size_t last = clamped(std::ceil(to * peaksPerSecond));
    std::uint8_t loudest = 0;
    const auto take = [&](const std::vector<std::uint8_t>& level, std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            loudest = std::max(loudest, level[i]);
    };
    // Up the levels, taking what does not fill a whole parent at either end.
    for (std::size_t level = 0; first < last; ++level) {
        const std::size_t firstWhole = (first + childrenOfPeak - 1) / childrenOfPeak;
        const std::size_t lastWhole = last / childrenOfPeak;
        if (level + 1 == levelCount || firstWhole >= lastWhole) {
            take(m_levels[level], first, last);
            break;
        }
        take(m_levels[level], first, firstWhole * childrenOfPeak);
        take(m_levels[level], lastWhole * childrenOfPeak, last);
        first = firstWhole;
        last = lastWhole;
    }
    return loudest;
}

}
