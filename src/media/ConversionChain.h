// Writes the chains of filters by which pictures are converted.
#pragma once

#include "media/FFmpeg.h"

#include <optional>
#include <QSize>
#include <string>

namespace pointloom::media {

struct Conversion {
    AVPixelFormat sourceLayout = AV_PIX_FMT_NONE;
    ColorDescription sourceColor;
    double sourcePeak = 1000; // cd/m2, brightest light of an HDR source

    bool deinterlace = false; // frames that are marked as interlaced
    Orientation orientation;  // applied before scaling

    QSize size; // after turning
    AVPixelFormat layout = AV_PIX_FMT_NONE;
    ColorDescription color; // for RGB layouts the matrix and range do not matter
};

/// What `FilterGraph` is given. With a peak, the first chain ends in linear light of 32-bit floats, whose
/// tones are then mapped for that peak before the second chain takes them on; without one, the first chain
/// does it all.
struct ConversionChain {
    std::string first;
    std::optional<double> tonePeak; // of `ToneCurve`
    std::string second;
};

ConversionChain conversionChain(const Conversion& conversion);

/// The brightest light that an HDR picture says it holds, cd/m2; 1000 when it does not say.
double peakLight(const AVFrame& picture);

}
