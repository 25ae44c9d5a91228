#include "media/ConversionChain.h"

#include "media/ColorTags.h"
#include "media/HdrSideData.h"
#include "media/ToneLevels.h"

#include <algorithm>
#include <vector>

namespace pointloom::media {

namespace {

using ToneLevels::referenceWhite;
using ToneLevels::usualPeak;

constexpr double displayUnit = 0.0001; // cd/m2, of MasteringDisplay

bool isRgb(AVPixelFormat layout) {
    return (av_pix_fmt_desc_get(layout)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// BT.601's and BT.709's primaries differ too little for anybody to convert between them.
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
    switch (orientation.quarterTurns) {
    case 1:
        return orientation.mirrored ? "transpose=clock_flip" : "transpose=clock";
    case 2:
        return orientation.mirrored ? "vflip" : "vflip,hflip";
    case 3:
        return orientation.mirrored ? "transpose=cclock_flip" : "transpose=cclock";
    default:
        return orientation.mirrored ? "hflip" : "";
    }
}

std::string sizeText(QSize size) {
    return "w=" + std::to_string(size.width()) + ":h=" + std::to_string(size.height());
}

std::string layoutText(AVPixelFormat layout) {
    return std::string("format=") + av_get_pix_fmt_name(layout);
}

const char* scaleMatrix(Matrix matrix) {
    switch (matrix) {
    case Matrix::bt601:
        return "smpte170m";
    case Matrix::bt709:
        return "bt709";
    case Matrix::bt2020:
        return "bt2020";
    }
    return "bt709";
}

const char* rangeText(Range range) {
    return range == Range::full ? "full" : "limited";
}

/// Same light, other numbers: size, matrix, range and layout.
std::string scale(const Conversion& conversion) {
    std::string text = "scale=" + sizeText(conversion.size) + ":flags=bicubic+accurate_rnd+full_chroma_int";
    if (!isRgb(conversion.sourceLayout))
        text += std::string(":in_color_matrix=") + scaleMatrix(conversion.sourceColor.matrix) +
                ":in_range=" + rangeText(conversion.sourceColor.range);
    if (!isRgb(conversion.layout))
        text += std::string(":out_color_matrix=") + scaleMatrix(conversion.color.matrix) +
                ":out_range=" + rangeText(conversion.color.range);
    return text + "," + layoutText(conversion.layout);
}

std::string zscaleTags(const ColorDescription& color, bool rgb, const char* suffix) {
    const ColorTags tags = tagsFor(color);
    const auto option = [&](const char* name, int value) {
        return std::string(":") + name + suffix + "=" + std::to_string(value);
    };
    std::string text = option("transfer", tags.transfer) + option("primaries", tags.primaries);
    text += option("matrix", rgb ? AVCOL_SPC_RGB : tags.matrix);
    return text + option("range", rgb || color.range == Range::full ? 1 : 0);
}

/// The source at its new size as linear light in the target's primaries, 1 being SDR white.
std::string toLinearLight(const Conversion& conversion) {
    return "zscale=" + sizeText(conversion.size) + ":filter=bicubic" +
           zscaleTags(conversion.sourceColor, isRgb(conversion.sourceLayout), "in") +
           ":transfer=linear:npl=" + std::to_string(referenceWhite) +
           ",format=gbrpf32le,zscale=primaries=" + std::to_string(tagsFor(conversion.color).primaries);
}

std::string fromLinearLight(const Conversion& conversion) {
    const bool rgb = isRgb(conversion.layout);
    const bool deep = av_pix_fmt_desc_get(conversion.layout)->comp[0].depth > 8;
    return "zscale=npl=" + std::to_string(referenceWhite) + zscaleTags(conversion.color, rgb, "") + "," +
           (rgb ? layoutText(deep ? AV_PIX_FMT_GBRP16 : AV_PIX_FMT_GBRP) + "," : "") +
           layoutText(conversion.layout);
}

bool mapsTones(const Conversion& conversion) {
    return conversion.sourceColor.transfer != Transfer::sdr && conversion.color.transfer == Transfer::sdr;
}

}

ConversionChain conversionChain(const Conversion& conversion) {
    std::string start;
    if (conversion.deinterlace)
        start += "yadif=deint=interlaced,";
    if (const std::string turned = turn(conversion.orientation); !turned.empty())
        start += turned + ",";
    if (!changesLight(conversion))
        return {start + scale(conversion), {}, {}};
    start += toLinearLight(conversion);
    const std::string end = fromLinearLight(conversion);
    if (mapsTones(conversion))
        return {start, conversion.sourcePeak / referenceWhite, end};
    return {start + "," + end, {}, {}};
}

double peakLight(const AVFrame& picture) {
    if (picture.color_trc != AVCOL_TRC_SMPTE2084)
        return usualPeak;
    const HdrMetadata metadata = readHdrMetadata(picture);
    if (metadata.light && metadata.light->brightestPixel > 0)
        return metadata.light->brightestPixel;
    if (metadata.display)
        return std::clamp(metadata.display->brightest * displayUnit, referenceWhite, 10000.0);
    return usualPeak;
}

}
