// The table of colours against the conversion that fills it.
#include "media/ColorCube.h"

#include "media/ColorTags.h"
#include "media/FFmpeg.h"
#include "media/FrameConverter.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace pointloom::test {

using namespace media;

namespace {

using Pixel = std::array<std::uint16_t, 4>;

/// All greys from black to the highest, then random colours.
std::vector<Pixel> colors(std::size_t greys, std::size_t others) {
    std::vector<Pixel> pixels;
    for (std::size_t i = 0; i < greys; ++i) {
        const auto level = static_cast<std::uint16_t>(i * 65535 / (greys - 1));
        pixels.push_back({level, level, level, 0});
    }
    std::mt19937 random(3);
    const auto any = [&] { return static_cast<std::uint16_t>(random() >> 16); };
    for (std::size_t i = 0; i < others; ++i)
        pixels.push_back({any(), any(), any(), any()});
    return pixels;
}

VideoFrame frameOf(const std::vector<Pixel>& pixels, const ColorDescription& color) {
    AVFramePtr frame = makeFrame();
    frame->format = AV_PIX_FMT_GBRP16;
    frame->width = static_cast<int>(pixels.size());
    frame->height = 1;
    ColorTags tags = tagsFor(color);
    tags.matrix = AVCOL_SPC_RGB;
    tags.range = AVCOL_RANGE_JPEG;
    setTags(*frame, tags);
    check(av_frame_get_buffer(frame.get(), 0), "no memory");
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        constexpr std::array channels{1, 2, 0}; // of the planes green, blue, red
        for (std::size_t plane = 0; plane < channels.size(); ++plane)
            reinterpret_cast<std::uint16_t*>(frame->data[plane])[i] =
                pixels[i][static_cast<std::size_t>(channels[plane])];
    }
    return {std::move(frame), {1, 25}};
}

}

TEST(ColorCube, IsNearTheConversionItStandsFor) {
    constexpr std::size_t greys = 300;
    constexpr std::size_t others = 3000;
    const std::vector<Pixel> pixels = colors(greys, others);
    for (const Transfer transfer : {Transfer::sdr, Transfer::pq, Transfer::hlg}) {
        ColorDescription color;
        color.transfer = transfer;
        color.primaries = Primaries::bt2020;
        const RgbaImage expected = toRgb(frameOf(pixels, color));
        std::vector<std::uint32_t> converted(pixels.size());
        ColorCube::toScreen(transfer, color.primaries, 1000)
            .convertRow(pixels.front().data(), converted.data(), static_cast<int>(pixels.size()));

        int worstGrey = 0;
        int sum = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            EXPECT_EQ(converted[i] >> 24, 255U);
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const int level = static_cast<int>(converted[i] >> (16 - 8 * channel)) & 255;
                const int difference = std::abs(level - expected.pixels[i * 4 + channel]);
                sum += difference;
                if (i < greys)
                    worstGrey = std::max(worstGrey, difference);
            }
        }
        EXPECT_LE(worstGrey, 2);
        EXPECT_LT(static_cast<double>(sum) / static_cast<double>(3 * pixels.size()), 0.5); // levels
    }
}

}
