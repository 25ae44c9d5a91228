#include "ui/timeline/PeakCounter.h"

#include "ui/timeline/WaveformPyramid.h"

#include <algorithm>
#include <cmath>

namespace pointloom {

namespace {

constexpr int samplesOfPeak = media::audioSampleRate / WaveformPyramid::peaksPerSecond;
static_assert(samplesOfPeak * WaveformPyramid::peaksPerSecond == media::audioSampleRate,
              "peaks must not drift");

}

void PeakCounter::add(const media::AudioFrame& sound, QByteArray& peaks) {
    const auto left = sound.channel(0);
    const auto right = sound.channel(1);
    for (std::size_t i = 0; i < left.size(); ++i) {
        m_loudest = std::max({m_loudest, std::abs(left[i]), std::abs(right[i])});
        if (++m_samples < samplesOfPeak)
            continue;
        peaks.append(
            static_cast<char>(static_cast<unsigned char>(std::lround(std::min(m_loudest, 1.0F) * 255))));
        m_loudest = 0;
        m_samples = 0;
    }
}

}
