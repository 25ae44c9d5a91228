// Times of frames against times of markers and trims that were set on them, for every usual rate and clock.
#include "export/TrimRange.h"
#include "media/VideoFrame.h"
#include "model/ScoringEngine.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <vector>

namespace pointloom {

namespace {

struct Rate {
    std::int64_t frames;
    std::int64_t seconds; // in which so many frames are shown
};

constexpr std::array rates = {
    Rate{24000, 1001}, Rate{24, 1}, Rate{25, 1},  Rate{30000, 1001},  Rate{30, 1},  Rate{48, 1}, Rate{50, 1},
    Rate{60000, 1001}, Rate{60, 1}, Rate{100, 1}, Rate{120000, 1001}, Rate{120, 1}, Rate{240, 1}};
constexpr std::array<int, 15> clocks = {600,   1000,  12288, 12800,  15360,     24000,      30000, 48000,
                                        60000, 90000, 96000, 120000, 1'000'000, 10'000'000, 44100};

media::VideoFrame frameOf(int clock) {
    return media::makeBlackFrame(2, 2, {}, {1, clock});
}

// The tick nearest to the time of the frame of that number, as muxers write it.
std::int64_t tickOf(std::int64_t number, Rate rate, int clock) {
    return (2 * number * rate.seconds * clock + rate.frames) / (2 * rate.frames);
}

bool isExact(std::int64_t number, Rate rate, int clock) {
    return number * rate.seconds * clock % rate.frames == 0;
}

double below(double value) {
    return std::nextafter(value, -1);
}

double above(double value) {
    return std::nextafter(value, std::numeric_limits<double>::infinity());
}

// As the player comes to it: it refines clocks that count less than a thousand ticks a second.
double playersTime(std::int64_t tick, int clock) {
    const int refined = clock < 1000 ? clock * ((1000 + clock - 1) / clock + 1) : clock;
    const double seconds = static_cast<double>(tick) * (1.0 / clock);
    return static_cast<double>(std::llround(seconds / (1.0 / refined))) * (1.0 / refined);
}

bool holds(double markerTime, double frameTime) {
    const std::array markers{Marker{QUuid(), markerTime, {}, {}}};
    return ScoringEngine::markerAtTime(markers, frameTime) != nullptr;
}

std::string described(Rate rate, int clock, std::int64_t number) {
    return "frame " + std::to_string(number) + " at " + std::to_string(rate.frames) + "/" +
           std::to_string(rate.seconds) + " on 1/" + std::to_string(clock);
}

// Calls `visit` with every frame of a minute, and of another one after two hours, on every clock.
template <class Visit>
void forEachFrame(const Visit& visit) {
    for (const Rate& rate : rates) {
        std::vector<int> all(clocks.begin(), clocks.end());
        if (rate.seconds == 1)
            all.push_back(static_cast<int>(rate.frames)); // a tick as long as a frame
        for (const int clock : all) {
            for (const std::int64_t start : {0, 7200}) {
                const std::int64_t first = start * rate.frames / rate.seconds;
                for (std::int64_t k = first; k <= first + 60 * rate.frames / rate.seconds; ++k)
                    visit(rate, clock, k);
            }
        }
    }
}

}

TEST(FrameTime, AMarkerSetOnAFrameHoldsFromThatFrameOn) {
    std::int64_t failures = 0;
    const auto require = [&](bool condition, const std::string& what) {
        if (!condition && ++failures <= 5)
            ADD_FAILURE() << what;
    };
    int clockOfFrame = 0;
    std::optional<media::VideoFrame> frame;
    forEachFrame([&](Rate rate, int clock, std::int64_t k) {
        if (clock != clockOfFrame)
            frame.emplace(frameOf(clockOfFrame = clock));
        const auto timeOf = [&](std::int64_t tick) {
            frame->setTimestamp(tick, 0);
            return frame->time();
        };
        const std::int64_t tick = tickOf(k, rate, clock);
        const double quotient = static_cast<double>(tick) / clock;
        const double player = playersTime(tick, clock);
        std::vector<double> markers{quotient, below(quotient), above(quotient),
                                    player,   below(player),   above(player)};
        if (isExact(k, rate, clock)) { // the timeline's own arithmetic
            const double framesPerSecond =
                static_cast<double>(rate.frames) / static_cast<double>(rate.seconds);
            markers.push_back(static_cast<double>(k) / framesPerSecond);
            markers.push_back(static_cast<double>(k) / (1 / (1 / framesPerSecond)));
            markers.push_back(static_cast<double>(k * rate.seconds) / static_cast<double>(rate.frames));
        }
        for (const double marker : markers) {
            require(holds(marker, timeOf(tick)), "late: " + described(rate, clock, k));
            require(!holds(marker, timeOf(tick - 1)), "a tick early: " + described(rate, clock, k));
        }
    });
    EXPECT_EQ(failures, 0);
}

TEST(FrameTime, ATrimSetOnAFrameBeginsWithThatFrame) {
    std::int64_t failures = 0;
    forEachFrame([&](Rate rate, int clock, std::int64_t k) {
        if (k == 0 || clock < 600 || 2 * rate.frames > clock * rate.seconds)
            return; // coarser clocks are refined before
        const auto tick = [&](std::int64_t number) { return tickOf(number, rate, clock); };
        const double start = static_cast<double>(tick(k)) / clock;
        const TrimRange range(start, std::nullopt);
        const media::Rational timeBase{1, clock};
        const auto first = range.place(tick(k), 0, tick(k + 1), timeBase);
        const auto second = range.place(tick(k + 1), 0, tick(k + 2), timeBase);
        const bool isRight =
            !range.place(tick(k - 1), 0, tick(k), timeBase) && first && first->timestamp == 0 && second &&
            std::abs(static_cast<double>(second->timestamp - (tick(k + 1) - tick(k)))) <= clock / 1200.0 + 1;
        const double shown = range.shownFrom(static_cast<double>(tick(k)) * timeBase.value());
        if ((!isRight || !holds(start, shown)) && ++failures <= 5)
            ADD_FAILURE() << described(rate, clock, k);
    });
    EXPECT_EQ(failures, 0);
}

}
