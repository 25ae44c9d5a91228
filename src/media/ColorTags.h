// Converts between FFmpeg's colour tags and ColorDescription, with defaults for missing tags.
#pragma once

#include "media/FFmpeg.h"
#include "media/FrameFormat.h"

#include <optional>
#include <QSize>

namespace pointloom::media {

/// The tags as FFmpeg spells them (ITU-T H.273).
struct ColorTags {
    AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVChromaLocation chromaLocation = AVCHROMA_LOC_UNSPECIFIED;
};

ColorTags tagsOf(const AVFrame& frame);
ColorTags tagsOf(const AVCodecParameters& parameters);
void setTags(AVFrame& frame, const ColorTags& tags);

/// `tags`, the unspecified ones replaced by those of `fallback`.
ColorTags filledFrom(const ColorTags& tags, const ColorTags& fallback);

/// The meaning of a frame's tags. Unspecified ones are filled in as players do: BT.709 from 1280 pixels of
/// width or more than 576 of height, BT.601 below; limited range unless the layout is one of the full-range
/// "yuvj" ones.
ColorDescription describeColor(const ColorTags& tags, QSize size, AVPixelFormat layout);

/// The tags for `color`.
ColorTags tagsFor(const ColorDescription& color);

/// Planar Y'CbCr of 8, 10 or 12 bits; empty for all other layouts.
struct SampleLayout {
    Subsampling subsampling = Subsampling::s420;
    int bitDepth = 8;
};
std::optional<SampleLayout> sampleLayout(AVPixelFormat layout);
AVPixelFormat pixelFormat(Subsampling subsampling, int bitDepth);

/// True for the old names of the full-range layouts.
bool isFullRangeAlias(AVPixelFormat layout);
/// The plain layout for an old full-range name; any other layout unchanged.
AVPixelFormat withoutFullRangeAlias(AVPixelFormat layout);

}
