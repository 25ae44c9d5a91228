#include "media/ColorCube.h"

#include "media/ColorTags.h"
#include "media/ConversionGraph.h"
#include "media/FFmpeg.h"

#include <algorithm>
#include <cstddef>

namespace pointloom::media {

namespace {

constexpr int highest = 65535;
constexpr int partBits = 10;
constexpr int wholePart = 1 << partBits; // of the way from an entry to the next

// Entries a side. With half of them the knee of the tone curve and the edge of the gamut are wrong by levels.
constexpr int side = ((highest + 1) >> partBits) + 1;
constexpr int redStep = 1;
constexpr int greenStep = side;
constexpr int blueStep = side * side;
constexpr int beyond = redStep + greenStep + blueStep; // entries past the last, read with a weight of zero

constexpr int stepBits = 13;
static_assert(blueStep < 1 << stepBits);

enum Plane { greenPlane, bluePlane, redPlane }; // of AV_PIX_FMT_GBRP16

std::uint16_t* rowOf(AVFrame& frame, Plane plane, int y) {
    return reinterpret_cast<std::uint16_t*>(frame.data[plane] +
                                            static_cast<std::ptrdiff_t>(y) * frame.linesize[plane]);
}

std::uint16_t levelOf(int entry) {
    return static_cast<std::uint16_t>(std::min(entry * wholePart, highest));
}

/// Every colour of the table: slices of one level of blue each, below each other.
AVFramePtr lattice(const ColorDescription& color) {
    AVFramePtr frame = makeFrame();
    frame->format = AV_PIX_FMT_GBRP16;
    frame->width = side;
    frame->height = side * side;
    ColorTags tags = tagsFor(color);
    tags.matrix = AVCOL_SPC_RGB;
    tags.range = AVCOL_RANGE_JPEG;
    setTags(*frame, tags);
    check(av_frame_get_buffer(frame.get(), 0), "a table of colours could not be made");
    for (int y = 0; y < frame->height; ++y) {
        std::fill_n(rowOf(*frame, bluePlane, y), side, levelOf(y / side));
        std::fill_n(rowOf(*frame, greenPlane, y), side, levelOf(y % side));
        for (int x = 0; x < side; ++x)
            rowOf(*frame, redPlane, y)[x] = levelOf(x);
    }
    return frame;
}

}

ColorCube ColorCube::toScreen(Transfer transfer, Primaries primaries, double peak) {
    prepareFFmpeg();
    Conversion conversion;
    conversion.sourceLayout = conversion.layout = AV_PIX_FMT_GBRP16;
    conversion.sourceColor.transfer = transfer;
    conversion.sourceColor.primaries = primaries;
    conversion.sourcePeak = peak;
    conversion.size = QSize(side, side * side);
    const AVFramePtr colors = convertFrame(lattice(conversion.sourceColor), conversion);

    // Levels of 255 per unit of weight.
    constexpr float unit = 255.0F / static_cast<float>(highest) / wholePart;
    ColorCube cube;
    cube.m_colors.reserve(static_cast<std::size_t>(side) * side * side + beyond);
    for (int y = 0; y < colors->height; ++y) {
        const std::uint16_t* red = rowOf(*colors, redPlane, y);
        const std::uint16_t* green = rowOf(*colors, greenPlane, y);
        const std::uint16_t* blue = rowOf(*colors, bluePlane, y);
        for (int x = 0; x < side; ++x)
            cube.m_colors.push_back({static_cast<float>(blue[x]) * unit, static_cast<float>(green[x]) * unit,
                                     static_cast<float>(red[x]) * unit, static_cast<float>(highest) * unit});
    }
    cube.m_colors.resize(cube.m_colors.size() + beyond);
    return cube;
}

// Interpolates between four of the entries around, the corners of a tetrahedron along the diagonal: greys are
// made of greys alone. With all eight corners the edge of the gamut would darken them.
void ColorCube::convertRow(const std::uint16_t* rgba, std::uint32_t* argb, int width) const {
    constexpr std::array steps{redStep, greenStep, blueStep};
    for (int x = 0; x < width; ++x, rgba += 4) {
        int entry = 0;
        std::array<int, 3> ways{}; // the fraction of each way to the next entry, and in the low bits its step
        for (std::size_t i = 0; i < steps.size(); ++i) {
            const int level = rgba[i] + (rgba[i] >> 15); // up to 65536
            entry += (level >> partBits) * steps[i];
            ways[i] = (level & (wholePart - 1)) << stepBits | steps[i];
        }
        // Sorted without branches, which would often be predicted wrongly.
        const int longest = std::max({ways[0], ways[1], ways[2]});
        const int shortest = std::min({ways[0], ways[1], ways[2]});
        const int middle = ways[0] ^ ways[1] ^ ways[2] ^ longest ^ shortest;

        Color color{0.5F, 0.5F, 0.5F, 0.5F};
        int rest = wholePart;
        const auto add = [&](int weight) {
            for (std::size_t i = 0; i < color.size(); ++i)
                color[i] += static_cast<float>(weight) * m_colors[static_cast<std::size_t>(entry)][i];
        };
        for (const int way : {longest, middle, shortest}) {
            const int part = way >> stepBits;
            add(rest - part);
            rest = part;
            entry += way & ((1 << stepBits) - 1);
        }
        add(rest);

        std::uint32_t bytes = 0;
        for (std::size_t i = 0; i < color.size(); ++i)
            bytes |= static_cast<std::uint32_t>(static_cast<int>(color[i])) << (8 * i);
        argb[x] = bytes;
    }
}

}
