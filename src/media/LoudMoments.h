// Loud moments of a sound: strokes, and applause from where it begins.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace pointloom::media {

/// From the rise of the sound until it is quiet again, in seconds from the start of the sound.
struct LoudMoment {
    double start = 0;
    double end = 0;

    bool operator==(const LoudMoment&) const = default;
};

/// Keeps frequencies above 1.5 kHz, where strokes are and hum, wind and engines are not.
class HighPass {
public:
    double filter(double sample);

private:
    std::array<double, 2> m_state{};
};

/// Finds loud moments in sound that arrives piece by piece. Only what is above 1.5 kHz counts. Ten
/// milliseconds of it are loud when they are `factor` times as strong as the background, which is the median
/// of the ten seconds before and after. Loud parts with less than 0.12 s between them are one moment.
class LoudMomentFinder {
public:
    static constexpr double usualFactor = 2; // of amplitudes

    explicit LoudMomentFinder(double factor = usualFactor);

    /// Samples of both channels, of one length, at `audioSampleRate`.
    void add(std::span<const float> left, std::span<const float> right);

    /// Ends the sound.
    void finish();

    /// Those found since the last call, in order: all that end ten seconds or more before the end of what was
    /// added, and after `finish` the others.
    std::vector<LoudMoment> take();

private:
    static constexpr std::size_t levelCount = 181; // steps of half a decibel from -90 dB to full level

    void endBlock();
    void judge();
    int background() const;

    int m_rise; // steps from the background to what is loud
    std::array<HighPass, 2> m_filters;
    double m_energy = 0; // of the unfinished block
    int m_samples = 0;
    std::vector<std::uint8_t> m_levels;                // of all blocks
    std::array<std::size_t, levelCount> m_histogram{}; // of the levels around the block that is judged
    std::size_t m_judged = 0;                          // blocks
    std::vector<LoudMoment> m_found;
    bool m_isOpen = false; // whether the last moment found may go on
};

/// Where rallies end: the starts of moments after which it stays quiet for three seconds, and of those that
/// last longer than a stroke does: applause. While the sound is not `isWhole`, nothing is known of what
/// follows the last moment.
std::vector<double> rallyEnds(std::span<const LoudMoment> moments, bool isWhole);

}
