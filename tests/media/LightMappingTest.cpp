// Light between two transfer functions: tones against the filter whose work they do, the gamut against
// numbers of the standards.
#include "media/LightMapping.h"

#include "media/ColorTags.h"
#include "media/ConversionChain.h"
#include "media/ConversionGraph.h"
#include "media/FFmpeg.h"
#include "TestFrames.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace pointloom::test {

using namespace media;
using testing::ElementsAre;
using testing::FloatNear;

namespace {

// An odd width, so that the last pixels of a row are worked on alone.
constexpr int width = 61;
constexpr int height = 40;

template <typename Change>
void forEachSample(AVFrame& frame, Change change) {
    for (int plane = 0; plane < 3; ++plane) {
        for (int y = 0; y < height; ++y) {
            std::uint8_t* row = frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane];
            for (int x = 0; x < width; ++x)
                change(reinterpret_cast<float*>(row)[x]);
        }
    }
}

template <typename Work>
void forEachRow(AVFrame& frame, Work work) {
    const auto rowOf = [&](int plane, int y) {
        return reinterpret_cast<float*>(frame.data[plane] +
                                        static_cast<std::ptrdiff_t>(y) * frame.linesize[plane]);
    };
    for (int y = 0; y < frame.height; ++y)
        work(LightRow{rowOf(2, y), rowOf(0, y), rowOf(1, y), frame.width});
}

/// Dark, usual and bright colours, and some beyond the peak and below black, as conversions leave them.
AVFramePtr linearLight(double peak) {
    AVFramePtr frame = makeFrame();
    frame->format = AV_PIX_FMT_GBRPF32LE;
    frame->width = width;
    frame->height = height;
    frame->color_trc = AVCOL_TRC_LINEAR;
    frame->colorspace =
        AVCOL_SPC_BT2020_NCL; // zscale leaves the source's tag, by which the filter weighs colours
    check(av_frame_get_buffer(frame.get(), 0), "no memory");
    std::mt19937 random(7);
    std::lognormal_distribution<float> light(-1.0F, 1.5F);
    forEachSample(*frame, [&](float& sample) {
        sample = std::min(light(random), static_cast<float>(1.2 * peak)) - 0.01F;
    });
    return frame;
}

std::vector<float> samplesOf(AVFrame& frame) {
    std::vector<float> samples;
    forEachSample(frame, [&](float& sample) { samples.push_back(sample); });
    return samples;
}

/// Red, green and blue of one colour after the mapping.
std::array<float, 3> mapped(const LightMapping& mapping, std::array<float, 3> color) {
    const AVFramePtr frame = linearLight(1);
    forEachRow(*frame, [&](const LightRow& row) {
        std::fill_n(row.red, row.width, color[0]);
        std::fill_n(row.green, row.width, color[1]);
        std::fill_n(row.blue, row.width, color[2]);
    });
    mapping.apply(*frame);
    forEachRow(*frame, [&](const LightRow& row) {
        color = {row.red[width - 1], row.green[width - 1], row.blue[width - 1]};
    });
    return color;
}

auto isColor(float red, float green, float blue) {
    constexpr float tolerance = 3e-4F; // the standards print four digits
    return ElementsAre(FloatNear(red, tolerance), FloatNear(green, tolerance), FloatNear(blue, tolerance));
}

/// Light for a PQ code value in 0..1 (SMPTE ST 2084, equation 4.1), in units of 203 cd/m2.
double pqLight(double code) {
    const double power = std::pow(code, 32.0 / 2523);
    const double base = std::max(power - 107.0 / 128, 0.0) / (2413.0 / 128 - 2392.0 / 128 * power);
    return 10000.0 / 203 * std::pow(base, 8192.0 / 1305);
}

/// R'G'B' for full-scale Y'CbCr of BT.2020 in 10 bits of limited range (its tables 4 and 5), cut off at black
/// and white.
std::array<double, 3> legalRgb(const Sample& sample) {
    const double y = (sample.y - 64) / 876.0;
    const double cb = (sample.cb - 512) / 896.0;
    const double cr = (sample.cr - 512) / 896.0;
    const double red = y + 1.4746 * cr;
    const double blue = y + 1.8814 * cb;
    const double green = (y - 0.2627 * red - 0.0593 * blue) / 0.6780;
    return {std::clamp(red, 0.0, 1.0), std::clamp(green, 0.0, 1.0), std::clamp(blue, 0.0, 1.0)};
}

}

TEST(ToneCurve, IsThatOfTheFilter) {
    for (const double peak : {1.0, 1000.0 / 203, 10000.0 / 203}) {
        AVFramePtr theirs = linearLight(peak);
        FilterGraph filter(FilterInput::of(*theirs),
                           "tonemap=tonemap=mobius:param=0.5:desat=2:peak=" + std::to_string(peak));
        filter.push(std::move(theirs));
        theirs = filter.pull();
        ASSERT_NE(theirs, nullptr);
        const AVFramePtr ours = linearLight(peak);
        forEachRow(*ours, [curve = ToneCurve(peak)](const LightRow& row) { curve.apply(row); });
        const auto expected = samplesOf(*theirs);
        const auto mapped = samplesOf(*ours);
        float worst = 0;
        for (std::size_t i = 0; i < mapped.size(); ++i)
            worst = std::max(worst, std::abs(mapped[i] - expected[i]));
        EXPECT_LT(worst, 1e-4F) << "peak " << peak; // of white; 8 bits tell 4e-3 apart
    }
}

// The matrix of BT.2087, and that of Display P3 by the chromaticities of SMPTE EG 432-1.
TEST(LightMapping, ColoursInsideTheGamutAreThoseOfTheStandards) {
    const LightMapping fromBt2020(Primaries::bt2020, Primaries::bt709, {});
    EXPECT_THAT(mapped(fromBt2020, {0.5F, 0.4F, 0.3F}), isColor(0.5733F, 0.3883F, 0.2863F));
    EXPECT_THAT(mapped(fromBt2020, {0.37F, 0.37F, 0.37F}), isColor(0.37F, 0.37F, 0.37F));
    const LightMapping fromP3(Primaries::displayP3, Primaries::bt709, {});
    EXPECT_THAT(mapped(fromP3, {0.5F, 0.4F, 0.3F}), isColor(0.5225F, 0.3958F, 0.2882F));
}

// BT.2020's red is (1.6605, -0.1246, -0.0182) of BT.709 and has 0.2627 of white's luminance; its green
// (-0.5876, 1.1329, -0.1006) and 0.6780.
TEST(LightMapping, ColoursOutsideTheGamutKeepHueAndLuminance) {
    const LightMapping mapping(Primaries::bt2020, Primaries::bt709, {});
    EXPECT_THAT(mapped(mapping, {1, 0, 0}), isColor(1, 0.0584F, 0.1145F));
    EXPECT_THAT(mapped(mapping, {0, 1, 0}), isColor(0, 0.9217F, 0.2609F));
    EXPECT_THAT(mapped(mapping, {0.1F, 0, 0}), isColor(0.1210F, 0, 0.0072F));
    EXPECT_THAT(mapped(mapping, {3, 3, 3}), isColor(1, 1, 1));
    EXPECT_THAT(mapped(mapping, {-0.2F, -0.2F, -0.2F}), isColor(0, 0, 0));
}

TEST(LightMapping, NoLightIsLeftOutsideOfBlackAndWhite) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr std::array odd{-infinity, infinity, std::numeric_limits<float>::quiet_NaN(),
                             -1e30F,    1e30F,    -0.0F};
    std::mt19937 random(11);
    std::uniform_real_distribution<float> light(-2, 60);
    for (const Primaries source : {Primaries::bt601_525, Primaries::bt601_625, Primaries::bt709,
                                   Primaries::bt2020, Primaries::displayP3}) {
        for (const std::optional<double> peak :
             {std::optional<double>(), std::optional(4.9), std::optional(49.3)}) {
            const AVFramePtr frame = linearLight(1);
            forEachSample(*frame, [&](float& sample) {
                sample = random() % 16 == 0 ? odd[random() % odd.size()]
                                            : light(random) * (random() % 3 == 0 ? 1 : 0.02F);
            });
            LightMapping(source, Primaries::bt709, peak).apply(*frame);
            forEachSample(*frame, [&](float& sample) {
                EXPECT_TRUE(sample >= 0 && sample <= 1) << sample << ", primaries " << int(source);
            });
        }
    }
}

// Some Y'CbCr is below black or above white in R'G'B'; transfer functions differ by processor there.
TEST(LightMapping, LevelsThatAreNoColourAreCutOffBeforeTheyBecomeLight) {
    const ColorDescription hdr{Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020,
                               ChromaLocation::left};
    const FrameFormat format{Subsampling::s444, 10, hdr};
    for (const Sample& sample : {Sample{500, 512, 900}, Sample{700, 120, 512}, Sample{400, 930, 300},
                                 Sample{1000, 600, 480}, Sample{20, 470, 560}, Sample{550, 480, 540}}) {
        Conversion conversion;
        conversion.sourceLayout = AV_PIX_FMT_YUV444P10;
        conversion.sourceColor = hdr;
        conversion.size = QSize(32, 16);
        conversion.layout = AV_PIX_FMT_YUV420P;
        const ConversionChain chain = conversionChain(conversion);
        const VideoFrame frame = solidFrame(conversion.size, format, sample);
        AVFramePtr entering(av_frame_clone(frame.handle()));
        FilterGraph graph(FilterInput::of(*entering), chain.first);
        graph.push(std::move(entering));
        graph.push(nullptr);
        const AVFramePtr light = graph.pull();
        ASSERT_NE(light, nullptr);
        ASSERT_EQ(light->format, AV_PIX_FMT_GBRPF32);
        std::array<double, 3> expected{};
        std::ranges::transform(legalRgb(sample), expected.begin(), pqLight);
        forEachRow(*light, [&](const LightRow& row) {
            const auto near = [](double value) {
                return FloatNear(float(value), float(0.001 + 0.01 * value));
            };
            EXPECT_THAT((std::array{row.red[9], row.green[9], row.blue[9]}),
                        ElementsAre(near(expected[0]), near(expected[1]), near(expected[2])));
        });
    }
}

}
