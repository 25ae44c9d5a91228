// Writes the chains of FFmpeg's filters that convert frames.
#pragma once

#include "media/FFmpeg.h"
#include "media/LightMapping.h"

#include <optional>
#include <QRect>
#include <QSize>
#include <string>

namespace pointloom::media {

struct Conversion {
    AVPixelFormat sourceLayout = AV_PIX_FMT_NONE;
    ColorDescription sourceColor;
    double sourcePeak = 1000; // cd/m2, brightest light of an HDR source

    bool deinterlace = false; // frames that are marked as interlaced
    QRect crop;               // of the stored picture, before turning; null: all of it
    Orientation orientation;  // applied before scaling

    QSize size; // after turning
    AVPixelFormat layout = AV_PIX_FMT_NONE;
    ColorDescription color; // for RGB layouts the matrix and range do not matter
};

/// Arguments for `FilterGraph`. Where the transfer or the primaries change, the first chain ends in linear
/// light of 32-bit floats, `light` is applied to it and the second chain does the rest; otherwise the first
/// chain does it all.
struct ConversionChain {
    std::string first;
    std::optional<LightMapping> light;
    std::string second;
};

/// The target is SDR when its transfer or primaries differ from the source's.
ConversionChain conversionChain(const Conversion& conversion);

/// The brightest light by an HDR frame's own metadata, cd/m2; 1000 when it has none.
double peakLight(const AVFrame& frame);

}
