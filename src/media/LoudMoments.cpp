#include "media/LoudMoments.h"

#include "media/AudioReader.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <utility>

namespace pointloom::media {

namespace {

constexpr int blocksPerSecond = 100;
constexpr int samplesOfBlock = audioSampleRate / blocksPerSecond;
static_assert(samplesOfBlock * blocksPerSecond == audioSampleRate, "blocks must not drift");

constexpr double secondsOf(std::size_t blocks) {
    return static_cast<double>(blocks) / blocksPerSecond;
}

constexpr std::size_t halfWindow = 10 * blocksPerSecond; // of the median, to either side
constexpr double longestGap = 0.12;                      // seconds, within a moment
constexpr double quietAfterRally = 3;                    // seconds; strokes follow each other sooner
constexpr double shortestApplause = 0.4;                 // seconds
constexpr double shortestRally = 2;                      // seconds from one end to the next
constexpr double stepsPerDecibel = 2;
constexpr double silence = -90; // dB; quieter sound is as quiet

// Butterworth of the second order: the cookbook formulae by R. Bristow-Johnson.
struct Coefficients {
    explicit Coefficients(double cutoff) {
        const double w = 2 * std::numbers::pi * cutoff / audioSampleRate;
        const double alpha = std::sin(w) / std::numbers::sqrt2;
        const double norm = 1 + alpha;
        b0 = (1 + std::cos(w)) / 2 / norm;
        a1 = -2 * std::cos(w) / norm;
        a2 = (1 - alpha) / norm;
    }

    double b0; // that of the last sample but one too; that of the last sample is -2 b0
    double a1;
    double a2;
};

}

double HighPass::filter(double sample) {
    static const Coefficients c(1500); // Hz
    const double result = c.b0 * sample + m_state[0];
    m_state[0] = -2 * c.b0 * sample - c.a1 * result + m_state[1];
    m_state[1] = c.b0 * sample - c.a2 * result;
    return result;
}

LoudMomentFinder::LoudMomentFinder(double factor)
    : m_rise(static_cast<int>(std::lround(20 * std::log10(factor) * stepsPerDecibel))) {}

void LoudMomentFinder::add(std::span<const float> left, std::span<const float> right) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double first = m_filters[0].filter(left[i]);
        const double second = m_filters[1].filter(right[i]);
        m_energy += first * first + second * second;
        if (++m_samples == samplesOfBlock)
            endBlock();
    }
}

void LoudMomentFinder::endBlock() {
    const double power = std::exchange(m_energy, 0) / (2 * std::exchange(m_samples, 0));
    const double decibels = power > 0 ? 10 * std::log10(power) : silence;
    const double step = std::clamp((decibels - silence) * stepsPerDecibel, 0.0, levelCount - 1.0);
    m_levels.push_back(static_cast<std::uint8_t>(std::lround(step)));
    ++m_histogram[m_levels.back()];
    if (m_levels.size() > m_judged + halfWindow)
        judge();
}

void LoudMomentFinder::finish() {
    while (m_judged < m_levels.size())
        judge();
    m_isOpen = false;
}

void LoudMomentFinder::judge() {
    const std::size_t block = m_judged++;
    const double start = secondsOf(block);
    const bool isNear = m_isOpen && start - m_found.back().end < longestGap;
    if (m_levels[block] >= background() + m_rise) {
        if (!isNear)
            m_found.push_back({start, start});
        m_found.back().end = secondsOf(block + 1);
        m_isOpen = true;
    } else if (!isNear) {
        m_isOpen = false;
    }
    if (block >= halfWindow)
        --m_histogram[m_levels[block - halfWindow]];
}

// The median of the histogram.
int LoudMomentFinder::background() const {
    const std::size_t half =
        (std::accumulate(m_histogram.begin(), m_histogram.end(), std::size_t{0}) + 1) / 2;
    std::size_t below = 0;
    int level = 0;
    while ((below += m_histogram[static_cast<std::size_t>(level)]) < half)
        ++level;
    return level;
}

std::vector<LoudMoment> LoudMomentFinder::take() {
    std::vector<LoudMoment> taken = std::exchange(m_found, {});
    if (m_isOpen) {
        m_found.push_back(taken.back());
        taken.pop_back();
    }
    return taken;
}

std::vector<double> rallyEnds(std::span<const LoudMoment> moments, bool isWhole) {
    std::vector<double> ends;
    for (std::size_t i = 0; i < moments.size(); ++i) {
        const LoudMoment& moment = moments[i];
        const bool isApplause = moment.end - moment.start >= shortestApplause;
        const bool isFollowed = i + 1 < moments.size();
        const bool isLast = isFollowed ? moments[i + 1].start - moment.end >= quietAfterRally : isWhole;
        const bool isNew = ends.empty() || moment.start - ends.back() >= shortestRally;
        if (isNew && (isApplause || isLast))
            ends.push_back(moment.start);
    }
    return ends;
}

}
