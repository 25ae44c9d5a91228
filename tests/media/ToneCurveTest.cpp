// The mapping of tones against the filter whose work it does.
#include "media/ToneCurve.h"

#include "media/FFmpegError.h"
#include "media/FilterGraph.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace pointloom::test {

using namespace media;

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
        ToneCurve(peak).apply(*ours);
        const auto expected = samplesOf(*theirs);
        const auto mapped = samplesOf(*ours);
        float worst = 0;
        for (std::size_t i = 0; i < mapped.size(); ++i)
            worst = std::max(worst, std::abs(mapped[i] - expected[i]));
        EXPECT_LT(worst, 1e-4F) << "peak " << peak; // of white; 8 bits tell 4e-3 apart
    }
}

}
