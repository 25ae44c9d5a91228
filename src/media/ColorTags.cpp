#include "media/ColorTags.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

namespace pointloom::media {

namespace {

struct LayoutRow {
    AVPixelFormat layout;
    Subsampling subsampling;
    int bitDepth;
};

constexpr std::array layouts = {
    LayoutRow{AV_PIX_FMT_YUV420P, Subsampling::s420, 8},
    LayoutRow{AV_PIX_FMT_YUV422P, Subsampling::s422, 8},
    LayoutRow{AV_PIX_FMT_YUV444P, Subsampling::s444, 8},
    LayoutRow{AV_PIX_FMT_YUV420P10LE, Subsampling::s420, 10},
    LayoutRow{AV_PIX_FMT_YUV422P10LE, Subsampling::s422, 10},
    LayoutRow{AV_PIX_FMT_YUV444P10LE, Subsampling::s444, 10},
    LayoutRow{AV_PIX_FMT_YUV420P12LE, Subsampling::s420, 12},
    LayoutRow{AV_PIX_FMT_YUV422P12LE, Subsampling::s422, 12},
    LayoutRow{AV_PIX_FMT_YUV444P12LE, Subsampling::s444, 12},
};

bool isHighDefinition(QSize size) {
    return size.width() >= 1280 || size.height() > 576;
}

Matrix describeMatrix(const ColorTags& tags, QSize size) {
    switch (tags.matrix) {
    case AVCOL_SPC_BT709:
    case AVCOL_SPC_SMPTE240M: // nearly BT.709
        return Matrix::bt709;
    case AVCOL_SPC_FCC: // nearly BT.601
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return Matrix::bt601;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return Matrix::bt2020;
    default:
        if (tags.transfer == AVCOL_TRC_SMPTE2084 || tags.transfer == AVCOL_TRC_ARIB_STD_B67)
            return Matrix::bt2020;
        return isHighDefinition(size) ? Matrix::bt709 : Matrix::bt601;
    }
}

Transfer describeTransfer(const ColorTags& tags) {
    switch (tags.transfer) {
    case AVCOL_TRC_SMPTE2084:
        return Transfer::pq;
    case AVCOL_TRC_ARIB_STD_B67:
        return Transfer::hlg;
    default:
        return Transfer::sdr;
    }
}

Primaries describePrimaries(const ColorTags& tags, Matrix matrix, QSize size) {
    switch (tags.primaries) {
    case AVCOL_PRI_BT709:
        return Primaries::bt709;
    case AVCOL_PRI_BT470BG:
        return Primaries::bt601_625;
    case AVCOL_PRI_SMPTE170M:
    case AVCOL_PRI_SMPTE240M:
        return Primaries::bt601_525;
    case AVCOL_PRI_BT2020:
        return Primaries::bt2020;
    case AVCOL_PRI_SMPTE431:
    case AVCOL_PRI_SMPTE432:
        return Primaries::displayP3;
    default:
        break;
    }
    switch (matrix) {
    case Matrix::bt2020:
        return Primaries::bt2020;
    case Matrix::bt709:
        return Primaries::bt709;
    case Matrix::bt601:
        return tags.matrix == AVCOL_SPC_BT470BG || size.height() > 486 ? Primaries::bt601_625
                                                                       : Primaries::bt601_525;
    }
    return Primaries::bt709;
}

ChromaLocation describeChromaLocation(AVChromaLocation location) {
    switch (location) {
    case AVCHROMA_LOC_CENTER:
        return ChromaLocation::center;
    case AVCHROMA_LOC_TOPLEFT:
        return ChromaLocation::topLeft;
    default:
        return ChromaLocation::left;
    }
}

// Decoders store what the stream says, a number that their enumeration lacks as well; that says nothing.
template <class Tag>
Tag knownOr(const Tag& stored, Tag unspecified, Tag count) {
    std::underlying_type_t<Tag> number;
    std::memcpy(&number, &stored, sizeof(number));
    return number < static_cast<decltype(number)>(count) ? stored : unspecified;
}

ColorTags knownTags(const AVColorPrimaries& primaries, const AVColorTransferCharacteristic& transfer,
                    const AVColorSpace& matrix, const AVColorRange& range,
                    const AVChromaLocation& chromaLocation) {
    return {knownOr(primaries, AVCOL_PRI_UNSPECIFIED, AVCOL_PRI_NB),
            knownOr(transfer, AVCOL_TRC_UNSPECIFIED, AVCOL_TRC_NB),
            knownOr(matrix, AVCOL_SPC_UNSPECIFIED, AVCOL_SPC_NB),
            knownOr(range, AVCOL_RANGE_UNSPECIFIED, AVCOL_RANGE_NB),
            knownOr(chromaLocation, AVCHROMA_LOC_UNSPECIFIED, AVCHROMA_LOC_NB)};
}

}

ColorTags tagsOf(const AVFrame& frame) {
    return knownTags(frame.color_primaries, frame.color_trc, frame.colorspace, frame.color_range,
                     frame.chroma_location);
}

ColorTags tagsOf(const AVCodecParameters& parameters) {
    return knownTags(parameters.color_primaries, parameters.color_trc, parameters.color_space,
                     parameters.color_range, parameters.chroma_location);
}

void setTags(AVFrame& frame, const ColorTags& tags) {
    frame.color_primaries = tags.primaries;
    frame.color_trc = tags.transfer;
    frame.colorspace = tags.matrix;
    frame.color_range = tags.range;
    frame.chroma_location = tags.chromaLocation;
}

ColorTags filledFrom(const ColorTags& tags, const ColorTags& fallback) {
    ColorTags filled = tags;
    if (filled.primaries == AVCOL_PRI_UNSPECIFIED || filled.primaries == AVCOL_PRI_RESERVED0)
        filled.primaries = fallback.primaries;
    if (filled.transfer == AVCOL_TRC_UNSPECIFIED || filled.transfer == AVCOL_TRC_RESERVED0)
        filled.transfer = fallback.transfer;
    if (filled.matrix == AVCOL_SPC_UNSPECIFIED)
        filled.matrix = fallback.matrix;
    if (filled.range == AVCOL_RANGE_UNSPECIFIED)
        filled.range = fallback.range;
    if (filled.chromaLocation == AVCHROMA_LOC_UNSPECIFIED)
        filled.chromaLocation = fallback.chromaLocation;
    return filled;
}

ColorDescription describeColor(const ColorTags& tags, QSize size, AVPixelFormat layout) {
    ColorDescription color;
    color.matrix = describeMatrix(tags, size);
    color.range = tags.range == AVCOL_RANGE_JPEG || isFullRangeAlias(layout) ? Range::full : Range::limited;
    color.transfer = describeTransfer(tags);
    color.primaries = describePrimaries(tags, color.matrix, size);
    color.chromaLocation = describeChromaLocation(tags.chromaLocation);
    return color;
}

ColorTags tagsFor(const ColorDescription& color) {
    ColorTags tags;
    switch (color.primaries) {
    case Primaries::bt601_525:
        tags.primaries = AVCOL_PRI_SMPTE170M;
        tags.transfer = AVCOL_TRC_SMPTE170M;
        break;
    case Primaries::bt601_625:
        tags.primaries = AVCOL_PRI_BT470BG;
        tags.transfer = AVCOL_TRC_SMPTE170M; // BT.601 has one transfer curve for both
        break;
    case Primaries::bt709:
        tags.primaries = AVCOL_PRI_BT709;
        tags.transfer = AVCOL_TRC_BT709;
        break;
    case Primaries::bt2020:
        tags.primaries = AVCOL_PRI_BT2020;
        tags.transfer = AVCOL_TRC_BT2020_10;
        break;
    case Primaries::displayP3:
        tags.primaries = AVCOL_PRI_SMPTE432;
        tags.transfer = AVCOL_TRC_BT709;
        break;
    }
    if (color.transfer == Transfer::pq)
        tags.transfer = AVCOL_TRC_SMPTE2084;
    if (color.transfer == Transfer::hlg)
        tags.transfer = AVCOL_TRC_ARIB_STD_B67;

    switch (color.matrix) {
    case Matrix::bt601:
        tags.matrix = color.primaries == Primaries::bt601_625 ? AVCOL_SPC_BT470BG : AVCOL_SPC_SMPTE170M;
        break;
    case Matrix::bt709:
        tags.matrix = AVCOL_SPC_BT709;
        break;
    case Matrix::bt2020:
        tags.matrix = AVCOL_SPC_BT2020_NCL;
        break;
    }
    tags.range = color.range == Range::full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;

    switch (color.chromaLocation) {
    case ChromaLocation::left:
        tags.chromaLocation = AVCHROMA_LOC_LEFT;
        break;
    case ChromaLocation::center:
        tags.chromaLocation = AVCHROMA_LOC_CENTER;
        break;
    case ChromaLocation::topLeft:
        tags.chromaLocation = AVCHROMA_LOC_TOPLEFT;
        break;
    }
    return tags;
}

std::optional<SampleLayout> sampleLayout(AVPixelFormat layout) {
    const auto row = std::ranges::find(layouts, withoutFullRangeAlias(layout), &LayoutRow::layout);
    if (row == layouts.end())
        return std::nullopt;
    return SampleLayout{row->subsampling, row->bitDepth};
}

AVPixelFormat pixelFormat(Subsampling subsampling, int bitDepth) {
    const auto row = std::ranges::find_if(layouts, [&](const LayoutRow& candidate) {
        return candidate.subsampling == subsampling && candidate.bitDepth == bitDepth;
    });
    return row == layouts.end() ? AV_PIX_FMT_NONE : row->layout;
}

bool isFullRangeAlias(AVPixelFormat layout) {
    return withoutFullRangeAlias(layout) != layout;
}

AVPixelFormat withoutFullRangeAlias(AVPixelFormat layout) {
    switch (layout) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    default:
        return layout;
    }
}

}
