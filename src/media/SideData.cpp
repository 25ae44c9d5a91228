#include "media/SideData.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>

namespace pointloom::media {

namespace {

/// Adds zeros for the caller to fill; they belong to the stream. Throws MediaError when memory is short.
std::uint8_t* addSideData(AVStream& stream, AVPacketSideDataType type, std::size_t size) {
    std::uint8_t* data = allocated(newSideData(stream, type, size));
    std::fill_n(data, size, std::uint8_t{0});
    return data;
}

constexpr std::int32_t one = 1 << 16;              // 1.0 in 16.16
constexpr std::int32_t oneInThirdColumn = 1 << 30; // 1.0 in 2.30

// Nine numbers, row by row, in 16.16 fixed point, the third column in 2.30 (ISO/IEC 14496-12, 8.3.2).
using DisplayMatrix = std::array<std::int32_t, 9>;

// With y downwards, mirroring and then turning clockwise by t maps (x, y) to
// (+-x cos t - y sin t, +-x sin t + y cos t); x takes the minus when mirrored.
// The matrix holds the factors of x in its first row and those of y in its second.

Orientation orientationOf(const DisplayMatrix& matrix) {
    const double a = matrix[0];
    const double b = matrix[1];
    const double c = matrix[3];
    const double d = matrix[4];
    const double determinant = a * d - b * c;
    if (determinant == 0)
        return {};
    const double quarters = std::atan2(-c, d) / (std::numbers::pi / 2);
    return {determinant < 0, (static_cast<int>(std::lround(quarters)) + 4) % 4};
}

DisplayMatrix matrixFor(Orientation orientation, QSize size) {
    constexpr std::array<int, 4> cosines = {1, 0, -1, 0};
    constexpr std::array<int, 4> sines = {0, 1, 0, -1};
    const auto turn = static_cast<std::size_t>(orientation.quarterTurns & 3);
    const int signX = orientation.mirrored ? -1 : 1;
    const int a = signX * cosines[turn];
    const int b = signX * sines[turn];
    const int c = -sines[turn];
    const int d = cosines[turn];
    // Moves the turned frame from negative coordinates back to the origin.
    const int x = (a < 0 || c < 0) ? (a != 0 ? size.width() : size.height()) : 0;
    const int y = (b < 0 || d < 0) ? (b != 0 ? size.width() : size.height()) : 0;
    return {a * one, b * one, 0, c * one, d * one, 0, x * one, y * one, oneInThirdColumn};
}

constexpr int chromaticityUnits = 50'000;
constexpr int lightUnits = 10'000;

/// `value` in units of 1 / `units`; 0 when it does not fit into the file's field.
int inUnits(AVRational value, int units, int highest) {
    const double number = value.den == 0 ? 0 : av_q2d(value) * units;
    return number >= 0 && number <= highest ? static_cast<int>(std::lround(number)) : 0;
}

int lightInUnits(AVRational value) {
    return inUnits(value, lightUnits, std::numeric_limits<int>::max());
}

Chromaticity chromaticityOf(const AVRational (&point)[2]) {
    constexpr int highest = std::numeric_limits<std::uint16_t>::max();
    return {inUnits(point[0], chromaticityUnits, highest), inUnits(point[1], chromaticityUnits, highest)};
}

std::optional<MasteringDisplay> displayOf(const std::uint8_t* data) {
    if (data == nullptr)
        return std::nullopt;
    const auto& stored = *reinterpret_cast<const AVMasteringDisplayMetadata*>(data);
    if (stored.has_primaries == 0 || stored.has_luminance == 0)
        return std::nullopt; // x265 and the file need both
    MasteringDisplay display;
    for (std::size_t i = 0; i < display.primaries.size(); ++i)
        display.primaries[i] = chromaticityOf(stored.display_primaries[i]);
    display.white = chromaticityOf(stored.white_point);
    display.darkest = lightInUnits(stored.min_luminance);
    display.brightest = lightInUnits(stored.max_luminance);
    return display;
}

std::optional<ContentLight> lightOf(const std::uint8_t* data) {
    if (data == nullptr)
        return std::nullopt;
    const auto& stored = *reinterpret_cast<const AVContentLightMetadata*>(data);
    constexpr unsigned highest = std::numeric_limits<std::uint16_t>::max();
    if (stored.MaxCLL > highest || stored.MaxFALL > highest || (stored.MaxCLL == 0 && stored.MaxFALL == 0))
        return std::nullopt;
    return ContentLight{static_cast<int>(stored.MaxCLL), static_cast<int>(stored.MaxFALL)};
}

const std::uint8_t* dataOf(const AVFrame& frame, AVFrameSideDataType type) {
    const AVFrameSideData* found = av_frame_get_side_data(&frame, type);
    return found == nullptr ? nullptr : found->data;
}

/// Copies the container's data of a type that a frame lacks; both hold the same structure of `size` bytes.
void complete(AVFrame& frame, AVFrameSideDataType type, const AVStream& stream,
              AVPacketSideDataType streamType, std::size_t size) {
    if (av_frame_get_side_data(&frame, type) != nullptr)
        return;
    const std::uint8_t* known = findSideData(stream, streamType, size);
    if (known == nullptr)
        return;
    std::copy_n(known, size, allocated(av_frame_new_side_data(&frame, type, size))->data);
}

void store(AVMasteringDisplayMetadata& stored, const MasteringDisplay& display) {
    for (std::size_t i = 0; i < display.primaries.size(); ++i) {
        stored.display_primaries[i][0] = {display.primaries[i].x, chromaticityUnits};
        stored.display_primaries[i][1] = {display.primaries[i].y, chromaticityUnits};
    }
    stored.white_point[0] = {display.white.x, chromaticityUnits};
    stored.white_point[1] = {display.white.y, chromaticityUnits};
    stored.min_luminance = {display.darkest, lightUnits};
    stored.max_luminance = {display.brightest, lightUnits};
    stored.has_primaries = 1;
    stored.has_luminance = 1;
}

std::string pairText(const char* name, int first, int second) {
    return std::string(name) + "(" + std::to_string(first) + "," + std::to_string(second) + ")";
}

}

Orientation readOrientation(const AVStream& stream) {
    const std::uint8_t* data = findSideData(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof(DisplayMatrix));
    if (data == nullptr)
        return {};
    DisplayMatrix matrix{};
    std::memcpy(matrix.data(), data, sizeof(matrix));
    return orientationOf(matrix);
}

void writeOrientation(AVStream& stream, Orientation orientation, QSize size) {
    if (orientation.isIdentity())
        return;
    std::uint8_t* data = addSideData(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof(DisplayMatrix));
    const DisplayMatrix matrix = matrixFor(orientation, size);
    std::memcpy(data, matrix.data(), sizeof(matrix));
}

HdrMetadata readHdrMetadata(const AVFrame& frame) {
    return {displayOf(dataOf(frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA)),
            lightOf(dataOf(frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL))};
}

void completeHdrMetadata(AVFrame& frame, const AVStream& stream) {
    complete(frame, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, stream, AV_PKT_DATA_MASTERING_DISPLAY_METADATA,
             sizeof(AVMasteringDisplayMetadata));
    complete(frame, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL, stream, AV_PKT_DATA_CONTENT_LIGHT_LEVEL,
             sizeof(AVContentLightMetadata));
}

void writeHdrMetadata(AVStream& stream, const HdrMetadata& metadata) {
    if (metadata.display) {
        std::uint8_t* data =
            addSideData(stream, AV_PKT_DATA_MASTERING_DISPLAY_METADATA, sizeof(AVMasteringDisplayMetadata));
        store(*reinterpret_cast<AVMasteringDisplayMetadata*>(data), *metadata.display);
    }
    if (metadata.light) {
        std::uint8_t* data =
            addSideData(stream, AV_PKT_DATA_CONTENT_LIGHT_LEVEL, sizeof(AVContentLightMetadata));
        auto& stored = *reinterpret_cast<AVContentLightMetadata*>(data);
        stored.MaxCLL = static_cast<unsigned>(metadata.light->brightestPixel);
        stored.MaxFALL = static_cast<unsigned>(metadata.light->brightestAverage);
    }
}

std::string x265HdrParameters(const HdrMetadata& metadata) {
    std::string text;
    if (const auto& display = metadata.display)
        text += ":master-display=" + pairText("G", display->primaries[1].x, display->primaries[1].y) +
                pairText("B", display->primaries[2].x, display->primaries[2].y) +
                pairText("R", display->primaries[0].x, display->primaries[0].y) +
                pairText("WP", display->white.x, display->white.y) +
                pairText("L", display->brightest, display->darkest);
    if (const auto& light = metadata.light)
        text += ":max-cll=" + std::to_string(light->brightestPixel) + "," +
                std::to_string(light->brightestAverage);
    return text;
}

void dropStaleMetadata(AVFrame& frame) {
    for (const AVFrameSideDataType type : {AV_FRAME_DATA_DYNAMIC_HDR_PLUS, AV_FRAME_DATA_DYNAMIC_HDR_VIVID,
                                           AV_FRAME_DATA_DOVI_RPU_BUFFER, AV_FRAME_DATA_DOVI_METADATA})
        av_frame_remove_side_data(&frame, type);
    if (frame.color_trc == AVCOL_TRC_SMPTE2084 || frame.color_trc == AVCOL_TRC_ARIB_STD_B67)
        return;
    for (const AVFrameSideDataType type :
         {AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL})
        av_frame_remove_side_data(&frame, type);
}

}
