#include "media/HdrSideData.h"

#include "media/MediaError.h"
#include "media/StreamSideData.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pointloom::media {

namespace {

constexpr int chromaticityUnits = 50'000;
constexpr int lightUnits = 10'000;

/// 0 for what does not fit into the file's field.
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
        return std::nullopt; // x265 and the file take all or nothing
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

const std::uint8_t* dataOf(const AVFrame& picture, AVFrameSideDataType type) {
    const AVFrameSideData* found = av_frame_get_side_data(&picture, type);
    return found == nullptr ? nullptr : found->data;
}

/// Both hold the same structure.
void complete(AVFrame& picture, AVFrameSideDataType type, const AVStream& stream,
              AVPacketSideDataType streamType, std::size_t size) {
    if (av_frame_get_side_data(&picture, type) != nullptr)
        return;
    const std::uint8_t* known = findSideData(stream, streamType, size);
    if (known == nullptr)
        return;
    const AVFrameSideData* added = av_frame_new_side_data(&picture, type, size);
    if (added == nullptr)
        throw MediaError("out of memory");
    std::copy_n(known, size, added->data);
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

HdrMetadata readHdrMetadata(const AVFrame& picture) {
    return {displayOf(dataOf(picture, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA)),
            lightOf(dataOf(picture, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL))};
}

void completeHdrMetadata(AVFrame& picture, const AVStream& stream) {
    complete(picture, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, stream,
             AV_PKT_DATA_MASTERING_DISPLAY_METADATA, sizeof(AVMasteringDisplayMetadata));
    complete(picture, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL, stream, AV_PKT_DATA_CONTENT_LIGHT_LEVEL,
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

void dropStaleMetadata(AVFrame& picture) {
    for (const AVFrameSideDataType type : {AV_FRAME_DATA_DYNAMIC_HDR_PLUS, AV_FRAME_DATA_DYNAMIC_HDR_VIVID,
                                           AV_FRAME_DATA_DOVI_RPU_BUFFER, AV_FRAME_DATA_DOVI_METADATA})
        av_frame_remove_side_data(&picture, type);
    if (picture.color_trc == AVCOL_TRC_SMPTE2084 || picture.color_trc == AVCOL_TRC_ARIB_STD_B67)
        return;
    for (const AVFrameSideDataType type :
         {AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL})
        av_frame_remove_side_data(&picture, type);
}

}
