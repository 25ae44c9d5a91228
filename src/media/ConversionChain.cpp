#include "media/ConversionChain.h"

#include "media/ColorTags.h"
#include "media/LightMapping.h"
#include "media/SideData.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pointloom::media {

namespace {

using ToneLevels::referenceWhite;
using ToneLevels::usualPeak;

constexpr double displayUnit = 0.0001; // cd/m2, of MasteringDisplay

bool isRgb(AVPixelFormat layout) {
    return (av_pix_fmt_desc_get(layout)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// BT.601's and BT.709's primaries differ too little to be converted between.
bool isWideGamut(Primaries primaries) {
    return primaries == Primaries::bt2020 || primaries == Primaries::displayP3;
}

bool changesLight(const Conversion& conversion) {
    if (conversion.sourceColor.transfer != conversion.color.transfer)
        return true;
    return conversion.sourceColor.primaries != conversion.color.primaries &&
           (isWideGamut(conversion.sourceColor.primaries) || isWideGamut(conversion.color.primaries));
}

std::string turn(Orientation orientation) {
    // The filter's "flip" mirrors top to bottom after the turn: for a quarter turn the same as mirroring
    // left to right before it.
    static constexpr std::array<const char*, 4> turns{"", "transpose=clock,", "vflip,hflip,",
                                                      "transpose=cclock,"};
    static constexpr std::array<const char*, 4> mirroredTurns{"hflip,", "transpose=clock_flip,", "vflip,",
                                                              "transpose=cclock_flip,"};
    return (orientation.mirrored ? mirroredTurns : turns)
        .at(static_cast<std::size_t>(orientation.quarterTurns));
}

std::string sizeText(QSize size) {
    return "w=" + std::to_string(size.width()) + ":h=" + std::to_string(size.height());
}

std::string crop(QRect part) {
    if (part.isNull())
        return {};
    return "crop=" + sizeText(part.size()) + ":x=" + std::to_string(part.x()) +
           ":y=" + std::to_string(part.y()) + ",";
}

std::string layoutText(AVPixelFormat layout) {
    return std::string("format=") + av_get_pix_fmt_name(layout);
}

/// The name of the filter "scale".
const char* scaleMatrix(Matrix matrix) {
    static constexpr std::array names{"smpte170m", "bt709", "bt2020"}; // by Matrix
    return names[static_cast<std::size_t>(matrix)];
}

const char* rangeText(Range range) {
    return range == Range::full ? "full" : "limited";
}

/// Position of a chroma sample among its luma samples, in luma samples from the first of them.
struct ChromaPlace {
    double x = 0;
    double y = 0;
};

ChromaPlace chromaPlace(ChromaLocation location) {
    static constexpr std::array<ChromaPlace, 3> places{{{0, 0.5}, {0.5, 0.5}, {0, 0}}}; // by ChromaLocation
    return places[static_cast<std::size_t>(location)];
}

ChromaPlace turned(ChromaPlace place, Orientation orientation) {
    if (orientation.mirrored)
        place.x = 1 - place.x;
    for (int turn = 0; turn < orientation.quarterTurns; ++turn)
        place = {1 - place.y, place.x};
    return place;
}

/// Options of the filter "scale", which by default assumes centred chroma.
std::string chromaPositions(const char* direction, AVPixelFormat layout, ChromaPlace place) {
    const AVPixFmtDescriptor& descriptor = *av_pix_fmt_desc_get(layout);
    constexpr int lumaSample = 256; // the filter's unit
    const auto option = [&](const char* axis, bool isSubsampled, double position) {
        return std::string(":") + direction + axis +
               std::to_string(isSubsampled ? std::lround(position * lumaSample) : 0);
    };
    return option("_h_chr_pos=", descriptor.log2_chroma_w > 0, place.x) +
           option("_v_chr_pos=", descriptor.log2_chroma_h > 0, place.y);
}

std::string scale(QSize size) {
    return "scale=" + sizeText(size) + ":flags=bicubic+accurate_rnd+full_chroma_int";
}

/// True for a quarter turn of samples that are subsampled in one direction alone: the filter that turns would
/// have them converted as if chroma were centred.
bool needsFullChroma(const Conversion& conversion) {
    const auto samples = sampleLayout(conversion.sourceLayout);
    return conversion.orientation.swapsSides() && samples && samples->subsampling == Subsampling::s422;
}

/// Conversion without a change of light: orientation, size, matrix, range and layout.
std::string convertLevels(const Conversion& conversion) {
    std::string text;
    AVPixelFormat sourceLayout = conversion.sourceLayout;
    const ChromaPlace sourceChroma = chromaPlace(conversion.sourceColor.chromaLocation);
    if (needsFullChroma(conversion)) {
        text = "scale=flags=bicubic+accurate_rnd" + chromaPositions("in", sourceLayout, sourceChroma);
        sourceLayout = pixelFormat(Subsampling::s444, sampleLayout(sourceLayout)->bitDepth);
        text += "," + layoutText(sourceLayout) + ",";
    }
    text += turn(conversion.orientation) + scale(conversion.size);
    if (!isRgb(sourceLayout))
        text += std::string(":in_color_matrix=") + scaleMatrix(conversion.sourceColor.matrix) +
                ":in_range=" + rangeText(conversion.sourceColor.range) +
                chromaPositions("in", sourceLayout, turned(sourceChroma, conversion.orientation));
    if (!isRgb(conversion.layout))
        text += std::string(":out_color_matrix=") + scaleMatrix(conversion.color.matrix) +
                ":out_range=" + rangeText(conversion.color.range) +
                chromaPositions("out", conversion.layout, chromaPlace(conversion.color.chromaLocation));
    return text + "," + layoutText(conversion.layout);
}

/// The name of the filter "zscale".
const char* chromaText(ChromaLocation location) {
    static constexpr std::array names{"left", "center", "topleft"}; // by ChromaLocation
    return names[static_cast<std::size_t>(location)];
}

std::string zscaleTags(const ColorDescription& color, bool rgb, const char* suffix) {
    const ColorTags tags = tagsFor(color);
    const auto option = [&](const char* name, int value) {
        return std::string(":") + name + suffix + "=" + std::to_string(value);
    };
    std::string text = option("transfer", tags.transfer) + option("primaries", tags.primaries);
    text += option("matrix", rgb ? AVCOL_SPC_RGB : tags.matrix);
    if (!rgb)
        text += std::string(":chromal") + suffix + "=" + chromaText(color.chromaLocation);
    return text + option("range", rgb || color.range == Range::full ? 1 : 0);
}

/// Conversion to linear light in the source's primaries at the new size, 1 being SDR white. The 16-bit RGB in
/// between cuts off the values below black and above white that a matrix makes of some Y'CbCr, for which
/// transfer functions are not defined. The turn comes after it, where chroma is no longer subsampled.
std::string toLinearLight(const Conversion& conversion) {
    const QSize stored = conversion.orientation.swapsSides() ? conversion.size.transposed() : conversion.size;
    ColorDescription rgb = conversion.sourceColor;
    rgb.range = Range::full;
    return "zscale=" + sizeText(stored) + ":filter=bicubic" +
           zscaleTags(conversion.sourceColor, isRgb(conversion.sourceLayout), "in") +
           zscaleTags(rgb, true, "") + "," + layoutText(AV_PIX_FMT_GBRP16) + "," +
           turn(conversion.orientation) + "zscale=transfer=linear:npl=" + std::to_string(referenceWhite) +
           zscaleTags(rgb, true, "in") + ",format=gbrpf32le";
}

std::string fromLinearLight(const Conversion& conversion) {
    const bool rgb = isRgb(conversion.layout);
    const bool deep = av_pix_fmt_desc_get(conversion.layout)->comp[0].depth > 8;
    const std::string primaries = std::to_string(tagsFor(conversion.color).primaries);
    return "zscale=npl=" + std::to_string(referenceWhite) + ":primariesin=" + primaries +
           zscaleTags(conversion.color, rgb, "") + "," +
           (rgb ? layoutText(deep ? AV_PIX_FMT_GBRP16 : AV_PIX_FMT_GBRP) + "," : "") +
           layoutText(conversion.layout);
}

bool mapsTones(const Conversion& conversion) {
    return conversion.sourceColor.transfer != Transfer::sdr && conversion.color.transfer == Transfer::sdr;
}

}

ConversionChain conversionChain(const Conversion& conversion) {
    const std::string start =
        (conversion.deinterlace ? "yadif=deint=interlaced," : "") + crop(conversion.crop);
    if (!changesLight(conversion))
        return {start + convertLevels(conversion), {}, {}};
    const auto peak =
        mapsTones(conversion) ? std::optional(conversion.sourcePeak / referenceWhite) : std::nullopt;
    return {start + toLinearLight(conversion),
            LightMapping(conversion.sourceColor.primaries, conversion.color.primaries, peak),
            fromLinearLight(conversion)};
}

double peakLight(const AVFrame& frame) {
    if (frame.color_trc != AVCOL_TRC_SMPTE2084)
        return usualPeak;
    const HdrMetadata metadata = readHdrMetadata(frame);
    if (metadata.light && metadata.light->brightestPixel > 0)
        return metadata.light->brightestPixel;
    if (metadata.display)
        return std::clamp(metadata.display->brightest * displayUnit, referenceWhite, 10000.0);
    return usualPeak;
}

}
