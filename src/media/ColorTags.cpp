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

// ITU-T H.273 gives each tag a number, which FFmpeg's enumerations keep. The first row of each kind is
// written.

struct PrimariesRow {
    AVColorPrimaries tag; // H.273, Table 2
    Primaries primaries;
    AVColorTransferCharacteristic sdrTransfer; // H.273, Table 3
};

constexpr std::array primariesRows = {
    PrimariesRow{AVCOL_PRI_BT709, Primaries::bt709, AVCOL_TRC_BT709},             // 1, 1
    PrimariesRow{AVCOL_PRI_BT470BG, Primaries::bt601_625, AVCOL_TRC_SMPTE170M},   // 5, 6
    PrimariesRow{AVCOL_PRI_SMPTE170M, Primaries::bt601_525, AVCOL_TRC_SMPTE170M}, // 6, 6
    PrimariesRow{AVCOL_PRI_SMPTE240M, Primaries::bt601_525, AVCOL_TRC_SMPTE170M}, // 7, 6
    PrimariesRow{AVCOL_PRI_BT2020, Primaries::bt2020, AVCOL_TRC_BT2020_10},       // 9, 14
    PrimariesRow{AVCOL_PRI_SMPTE432, Primaries::displayP3, AVCOL_TRC_BT709},      // 12, 1
    PrimariesRow{AVCOL_PRI_SMPTE431, Primaries::displayP3, AVCOL_TRC_BT709},      // 11, 1
};

struct MatrixRow {
    AVColorSpace tag; // H.273, Table 4
    Matrix matrix;
};

constexpr std::array matrixRows = {
    MatrixRow{AVCOL_SPC_BT709, Matrix::bt709},       // 1
    MatrixRow{AVCOL_SPC_SMPTE240M, Matrix::bt709},   // 7, nearly BT.709
    MatrixRow{AVCOL_SPC_SMPTE170M, Matrix::bt601},   // 6
    MatrixRow{AVCOL_SPC_BT470BG, Matrix::bt601},     // 5
    MatrixRow{AVCOL_SPC_FCC, Matrix::bt601},         // 4, nearly BT.601
    MatrixRow{AVCOL_SPC_BT2020_NCL, Matrix::bt2020}, // 9
    MatrixRow{AVCOL_SPC_BT2020_CL, Matrix::bt2020},  // 10
};

struct ChromaRow {
    AVChromaLocation tag; // FFmpeg's numbers are H.273's plus 1
    ChromaLocation location;
};

constexpr std::array chromaRows = {
    ChromaRow{AVCHROMA_LOC_LEFT, ChromaLocation::left},
    ChromaRow{AVCHROMA_LOC_CENTER, ChromaLocation::center},
    ChromaRow{AVCHROMA_LOC_TOPLEFT, ChromaLocation::topLeft},
};

bool isHighDefinition(QSize size) {
    return size.width() >= 1280 || size.height() > 576;
}

Matrix describeMatrix(const ColorTags& tags, QSize size) {
    if (const auto row = std::ranges::find(matrixRows, tags.matrix, &MatrixRow::tag); row != matrixRows.end())
        return row->matrix;
    if (tags.transfer == AVCOL_TRC_SMPTE2084 || tags.transfer == AVCOL_TRC_ARIB_STD_B67)
        return Matrix::bt2020;
    return isHighDefinition(size) ? Matrix::bt709 : Matrix::bt601;
}

// H.273, Table 3: 16 and 18.
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
    if (const auto row = std::ranges::find(primariesRows, tags.primaries, &PrimariesRow::tag);
        row != primariesRows.end())
        return row->primaries;
    switch (matrix) {
    case Matrix::bt2020:
        return Primaries::bt2020;
    case Matrix::bt709:
        break;
    case Matrix::bt601:
        return tags.matrix == AVCOL_SPC_BT470BG || size.height() > 486 ? Primaries::bt601_625
                                                                       : Primaries::bt601_525;
    }
    return Primaries::bt709;
}

ChromaLocation describeChromaLocation(AVChromaLocation tag) {
    const auto row = std::ranges::find(chromaRows, tag, &ChromaRow::tag);
    return row == chromaRows.end() ? ChromaLocation::left : row->location;
}

// Decoders store the stream's number even when the enumeration lacks it; such a number means unspecified.
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
    const auto& primaries = *std::ranges::find(primariesRows, color.primaries, &PrimariesRow::primaries);
    ColorTags tags;
    tags.primaries = primaries.tag;
    tags.transfer = primaries.sdrTransfer;
    if (color.transfer == Transfer::pq)
        tags.transfer = AVCOL_TRC_SMPTE2084;
    if (color.transfer == Transfer::hlg)
        tags.transfer = AVCOL_TRC_ARIB_STD_B67;
    tags.matrix = std::ranges::find(matrixRows, color.matrix, &MatrixRow::matrix)->tag;
    if (color.matrix == Matrix::bt601 && color.primaries == Primaries::bt601_625)
        tags.matrix = AVCOL_SPC_BT470BG;
    tags.range = color.range == Range::full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    tags.chromaLocation = std::ranges::find(chromaRows, color.chromaLocation, &ChromaRow::location)->tag;
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
