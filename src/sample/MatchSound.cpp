#include "sample/MatchSound.h"

#include "media/AudioReader.h"

#include <algorithm>
#include <numbers>
#include <random>

namespace pointloom::sample {
namespace {

constexpr int sampleRate = media::audioSampleRate;
constexpr double pi = std::numbers::pi;

struct Track {
    std::vector<double> left;
    std::vector<double> right;

    /// Adds `value` at sample `at`, `pan` from -1 (left) to 1 (right); nothing outside of the track.
    void add(std::ptrdiff_t at, double value, double pan) {
        if (at < 0 || at >= std::ssize(left))
            return;
        const auto index = static_cast<std::size_t>(at);
        left[index] += value * std::sqrt((1 - pan) / 2);
        right[index] += value * std::sqrt((1 + pan) / 2);
    }
};

class Noise {
public:
    explicit Noise(unsigned seed)
        : m_dice(seed) {}

    /// In [0, 1).
    double fraction() { return static_cast<double>(m_dice()) / 4294967296.0; }

    /// In [-1, 1).
    double sample() { return fraction() * 2 - 1; }

private:
    std::mt19937 m_dice;
};

/// One pole each; good enough to shape noise.
class BandPass {
public:
    BandPass(double low, double high)
        : m_low(1 - std::exp(-2 * pi * low / sampleRate))
        , m_high(1 - std::exp(-2 * pi * high / sampleRate)) {}

    double filter(double sample) {
        m_smooth += m_high * (sample - m_smooth);
        m_slow += m_low * (m_smooth - m_slow);
        return m_smooth - m_slow;
    }

private:
    double m_low;
    double m_high;
    double m_smooth = 0;
    double m_slow = 0;
};

double panOf(Point3 place) {
    return std::clamp(place.x / 9, -0.8, 0.8);
}

/// Farther strokes are softer.
double loudnessOf(Point3 place) {
    return place.y > 0 ? 0.6 : 1.0;
}

/// Strings and ball: a click, then two tones that die within a twentieth of a second.
void addHit(Track& track, Noise& noise, double time, Point3 place, double strength) {
    const auto start = static_cast<std::ptrdiff_t>(time * sampleRate);
    const double tone = 520 + 60 * noise.sample();
    for (std::ptrdiff_t i = 0; i < sampleRate / 4; ++i) {
        const double t = static_cast<double>(i) / sampleRate;
        const double click = noise.sample() * std::exp(-t / 0.0035);
        const double body = std::sin(2 * pi * tone * t) * std::exp(-t / 0.028) +
                            0.5 * std::sin(2 * pi * tone * 2.3 * t) * std::exp(-t / 0.014);
        const double thump = 0.7 * std::sin(2 * pi * 170 * t) * std::exp(-t / 0.05);
        track.add(start + i, strength * (0.45 * click + 0.6 * body + thump), panOf(place));
    }
}

void addBounce(Track& track, Noise& noise, double time, Point3 place, double strength) {
    const auto start = static_cast<std::ptrdiff_t>(time * sampleRate);
    for (std::ptrdiff_t i = 0; i < sampleRate / 6; ++i) {
        const double t = static_cast<double>(i) / sampleRate;
        const double body = std::sin(2 * pi * (260 - 400 * t) * t) * std::exp(-t / 0.022);
        const double scuff = 0.3 * noise.sample() * std::exp(-t / 0.008);
        track.add(start + i, strength * (body + scuff), panOf(place));
    }
}

void addRallies(Track& track, const Match& match) {
    Noise noise(11);
    for (const Rally& rally : match.rallies()) {
        for (const Stroke& stroke : rally.strokes) {
            const double loud = loudnessOf(stroke.contact);
            const double strength = stroke.kind == Stroke::Kind::serve ? 0.62 : 0.5;
            addHit(track, noise, stroke.time, stroke.contact, strength * loud);
            addBounce(track, noise, stroke.bounceTime, stroke.bounce, 0.22 * loudnessOf(stroke.bounce));
        }
    }
}

/// Many voices far away, hushed while the ball is in play.
void addMurmur(Track& track, const Match& match) {
    for (const double pan : {-0.7, 0.7}) {
        Noise noise(pan < 0 ? 21 : 22);
        BandPass voices(160, 700);
        BandPass breath(30, 60);
        double level = 0;
        for (std::ptrdiff_t i = 0; i < std::ssize(track.left); ++i) {
            constexpr std::ptrdiff_t samplesPerLevel = 480;
            if (i % samplesPerLevel == 0) {
                const double time = static_cast<double>(i) / sampleRate;
                const double swell = 0.75 + 0.25 * std::sin(2 * pi * (0.37 * time + pan));
                level = 0.42 * swell * (0.6 + 1.2 * match.applause(time));
            }
            track.add(i, level * voices.filter(noise.sample()) + 0.08 * breath.filter(noise.sample()), pan);
        }
    }
}

/// Thousands of single claps, as dense as the applause is strong.
void addApplause(Track& track, const Match& match, double seconds) {
    Noise noise(31);
    constexpr double clapsPerSecond = 420;
    const int claps = static_cast<int>(seconds * clapsPerSecond);
    for (int clap = 0; clap < claps; ++clap) {
        const double time = seconds * noise.fraction();
        const double distance = 0.25 + 0.75 * noise.fraction();
        const double pan = 0.9 * noise.sample();
        const double length = 0.004 + 0.005 * noise.fraction();
        BandPass palm(500 + 500 * noise.fraction(), 2600);
        if (match.applause(time) < noise.fraction())
            continue;
        const auto start = static_cast<std::ptrdiff_t>(time * sampleRate);
        for (std::ptrdiff_t i = 0; i < sampleRate / 25; ++i) {
            const double t = static_cast<double>(i) / sampleRate;
            track.add(start + i, 0.42 * distance * palm.filter(noise.sample()) * std::exp(-t / length), pan);
        }
    }
}

// Bounded by -1 and 1, without hard clipping.
std::vector<float> softened(const std::vector<double>& samples) {
    std::vector<float> result(samples.size());
    std::ranges::transform(samples, result.begin(),
                           [](double sample) { return static_cast<float>(std::tanh(sample * 1.2) * 0.98); });
    return result;
}

}

MatchSound matchSound(const Match& match, double seconds) {
    const auto samples = static_cast<std::size_t>(seconds * sampleRate);
    Track track{std::vector<double>(samples), std::vector<double>(samples)};
    addMurmur(track, match);
    addApplause(track, match, seconds);
    addRallies(track, match);
    return {softened(track.left), softened(track.right)};
}

}
