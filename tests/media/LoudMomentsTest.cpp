// Loud moments in sounds whose truth is known because they are made here.
#include "media/LoudMoments.h"

#include "media/AudioReader.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace pointloom::test {

using media::LoudMoment;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double tolerance = 0.02; // seconds

/// A place in noise, as a microphone in the open has it.
class Recording {
public:
    explicit Recording(double seconds)
        : m_samples(static_cast<std::size_t>(seconds * media::audioSampleRate)) {
        add(0, seconds, 0.003, [](double) { return 1.0; });
    }

    /// A burst that dies within some milliseconds.
    void stroke(double at) {
        add(at, 0.05, 0.3, [](double t) { return std::exp(-t / 0.004); });
    }

    void applause(double from, double to) {
        add(from, to - from, 0.05, [](double) { return 1.0; });
    }

    void tone(double frequency, double level) {
        for (std::size_t i = 0; i < m_samples.size(); ++i) {
            const double t = static_cast<double>(i) / media::audioSampleRate;
            const double tremolo = 1 + 0.2 * std::sin(2 * std::numbers::pi * 5.3 * t);
            m_samples[i] +=
                static_cast<float>(level * tremolo * std::sin(2 * std::numbers::pi * frequency * t));
        }
    }

    std::vector<LoudMoment> moments(float volume = 1) const {
        std::vector<float> left = m_samples;
        for (float& sample : left)
            sample *= volume;
        const std::vector<float> right(left.size(), 0); // all of it at one side
        media::LoudMomentFinder finder;
        std::vector<LoudMoment> found;
        const auto take = [&] {
            const auto more = finder.take();
            found.insert(found.end(), more.begin(), more.end());
        };
        constexpr std::size_t piece = 1023;
        for (std::size_t at = 0; at < left.size(); at += piece) {
            const std::size_t count = std::min(piece, left.size() - at);
            finder.add({&left[at], count}, {&right[at], count});
            take();
        }
        finder.finish();
        take();
        return found;
    }

    std::vector<double> starts() const {
        std::vector<double> times;
        for (const LoudMoment& moment : moments())
            times.push_back(moment.start);
        return times;
    }

private:
    void add(double from, double length, double level, const std::function<double(double)>& envelope) {
        std::normal_distribution<double> noise(0, level);
        const auto first = static_cast<std::size_t>(from * media::audioSampleRate);
        const auto count = static_cast<std::size_t>(length * media::audioSampleRate);
        for (std::size_t i = 0; i < count && first + i < m_samples.size(); ++i) {
            const double t = static_cast<double>(i) / media::audioSampleRate;
            m_samples[first + i] += static_cast<float>(envelope(t) * noise(m_random));
        }
    }

    std::vector<float> m_samples;
    std::mt19937 m_random{7};
};

}

TEST(LoudMoments, StrokesInNoiseAreFoundWhereTheyAre) {
    Recording match(41.3);
    for (const double time : {0.731, 3.7, 3.95, 17.0049, 40.0 + 1 / 3.0})
        match.stroke(time);
    EXPECT_THAT(match.starts(), ElementsAre(DoubleNear(0.731, tolerance), DoubleNear(3.7, tolerance),
                                            DoubleNear(3.95, tolerance), DoubleNear(17.0049, tolerance),
                                            DoubleNear(40 + 1 / 3.0, tolerance)));
}

TEST(LoudMoments, ATenthOfTheVolumeGivesTheSame) {
    Recording match(30);
    for (const double time : {2.2, 3.6, 5.1, 19.77})
        match.stroke(time);
    match.applause(6, 8.5);
    const auto loud = match.moments();
    ASSERT_EQ(loud.size(), 5U);
    EXPECT_EQ(match.moments(0.1F), loud);
}

TEST(LoudMoments, SteadySoundsHaveNone) {
    EXPECT_THAT(Recording(60).moments(), IsEmpty()) << "noise";
    Recording hum(60);
    for (const double frequency : {50.0, 100.0, 150.0, 300.0})
        hum.tone(frequency, 0.15);
    EXPECT_THAT(hum.moments(), IsEmpty());
    Recording music(60);
    for (const double frequency : {440.0, 554.4, 659.3, 1760.0, 2637.0, 5274.0})
        music.tone(frequency, 0.08);
    EXPECT_THAT(music.moments(), IsEmpty());
}

TEST(LoudMoments, ARallyEndsBeforeQuietAndWithApplause) {
    Recording match(60);
    for (const double time : {4.0, 5.3, 6.4, 8.9}) // far apart, but one rally
        match.stroke(time);
    for (const double time : {20.1, 21.2})
        match.stroke(time);
    match.applause(22.5, 25);
    match.stroke(27.3); // the next serve
    match.stroke(28.4);
    const auto moments = match.moments();
    EXPECT_THAT(
        media::rallyEnds(moments, true),
        ElementsAre(DoubleNear(8.9, tolerance), DoubleNear(22.5, tolerance), DoubleNear(28.4, tolerance)));
    EXPECT_THAT(media::rallyEnds(moments, false), SizeIs(2)) << "more may follow";
    EXPECT_THAT(media::rallyEnds({}, true), IsEmpty());
}

}
