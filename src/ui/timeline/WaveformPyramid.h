// The loudness of a clip at every zoom.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace pointloom {

/// Peaks, 0 for silence to 255 for full level, in levels that each halve the one below several times over.
/// Two hours take about two megabytes.
class WaveformPyramid {
public:
    static constexpr int peaksPerSecond = 210; // which divides the rate that sound is read at

    void append(std::span<const std::uint8_t> peaks);
    void clear();

    std::size_t size() const { return m_levels[0].size(); }

    /// The loudest peak of all.
    std::uint8_t loudest() const { return m_loudest; }

    /// The loudest peak between two times in seconds, of what is there.
    std::uint8_t loudest(double from, double to) const;

private:
    static constexpr std::size_t childrenOfPeak = 8;
    static constexpr std::size_t levelCount = 6;

    std::array<std::vector<std::uint8_t>, levelCount> m_levels;
    std::uint8_t m_loudest = 0;
};

}
