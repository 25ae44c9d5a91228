// The settings of one export: size, format, quality, encoder, watermark corner, filling, captions; the name
// of its file.
#pragma once

#include "export/TimeMap.h"
#include "media/EncodingChoices.h"
#include "json/JsonFields.h"

#include <optional>
#include <QDateTime>
#include <QSize>
#include <QString>
#include <tuple>

namespace pointloom {

enum class ExportPreset : unsigned char { original, youtube4k, twitter1080p, instagram916 };

// The raw values are the labels that users see; the two spaces in the third are intended.
template <>
struct RawValues<ExportPreset> {
    static constexpr auto table = std::to_array<std::pair<ExportPreset, std::string_view>>({
        {ExportPreset::original, "Original"},
        {ExportPreset::youtube4k, "YouTube 4K"},
        {ExportPreset::twitter1080p, "Twitter / X  1080p"},
        {ExportPreset::instagram916, "Instagram 9:16"},
    });
};

/// Output size in pixels; empty when the output keeps the source's upright size.
std::optional<QSize> targetSize(ExportPreset preset);

enum class ExportFormat : unsigned char { h264, hevc, prores };

template <>
struct RawValues<ExportFormat> {
    static constexpr auto table = std::to_array<std::pair<ExportFormat, std::string_view>>({
        {ExportFormat::h264, "H.264 (MP4)"},
        {ExportFormat::hevc, "H.265 HEVC (MP4)"},
        {ExportFormat::prores, "ProRes 422 (MOV)"},
    });
};

/// Without the dot.
QString fileExtension(ExportFormat format);

media::VideoCodec codecOf(ExportFormat format);

POINTLOOM_NAMED_ENUM(WatermarkCorner, topLeft, topRight, bottomLeft, bottomRight);

constexpr bool isLeft(WatermarkCorner corner) {
    return corner == WatermarkCorner::topLeft || corner == WatermarkCorner::bottomLeft;
}

constexpr bool isTop(WatermarkCorner corner) {
    return corner == WatermarkCorner::topLeft || corner == WatermarkCorner::topRight;
}

/// The label of the corner picker, in English.
constexpr const char* displayName(WatermarkCorner corner) {
    switch (corner) {
    case WatermarkCorner::topLeft:
        return "Top Left";
    case WatermarkCorner::topRight:
        return "Top Right";
    case WatermarkCorner::bottomLeft:
        return "Bottom Left";
    case WatermarkCorner::bottomRight:
        return "Bottom Right";
    }
    Q_UNREACHABLE();
}

template <>
struct RawValues<media::EncodingQuality> {
    using Quality = media::EncodingQuality;
    static constexpr auto table = std::to_array<std::pair<Quality, std::string_view>>({
        {Quality::standard, "default"},
        {Quality::fast, "fast"},
        {Quality::smaller, "smaller"},
        {Quality::better, "better"},
    });
};

template <>
struct RawValues<media::EncoderKind> {
    using Kind = media::EncoderKind;
    static constexpr auto table = std::to_array<std::pair<Kind, std::string_view>>({
        {Kind::software, "software"},
        {Kind::vaapi, "vaapi"},
        {Kind::nvenc, "nvenc"},
        {Kind::qsv, "qsv"},
        {Kind::videotoolbox, "videotoolbox"},
    });
};

/// Where the score goes as text.
enum class CaptionsPlace : unsigned char { subRip, webVtt, track };

template <>
struct RawValues<CaptionsPlace> {
    static constexpr auto table = std::to_array<std::pair<CaptionsPlace, std::string_view>>({
        {CaptionsPlace::subRip, "srt"}, // a file beside the video
        {CaptionsPlace::webVtt, "vtt"}, // a file beside the video
        {CaptionsPlace::track, "track"},
    });
};

/// Everything that the user chooses for an export besides its files and its range.
struct ExportSettings {
    ExportPreset preset = ExportPreset::original;
    ExportFormat format = ExportFormat::h264;
    media::EncodingQuality quality = media::EncodingQuality::standard;
    media::EncoderKind encoder = media::EncoderKind::software; // see settleEncoder for those in hardware
    QString encoderPreset = {}; // of x264 or x265; empty for the encoder's default
    WatermarkCorner watermarkCorner = WatermarkCorner::bottomRight;
    bool withChapters = true;                 // labelled markers become chapters
    std::optional<RallyMargins> rallies = {}; // absent: the whole range
    // Crops the picture where its shape is not the frame's, in place of black bars: the part that is left out
    // at the left or the top, [0, 1] of all that is left out; 0.5 keeps the middle. None: bars.
    std::optional<double> fill = {};
    std::optional<CaptionsPlace> captions = {}; // absent: no captions

    bool operator==(const ExportSettings&) const = default;

    static constexpr auto jsonFields() {
        using Self = ExportSettings;
        return std::tuple{json::field("preset", &Self::preset),
                          json::field("format", &Self::format),
                          json::field("quality", &Self::quality),
                          json::field("encoder", &Self::encoder),
                          json::field("encoderPreset", &Self::encoderPreset),
                          json::field("watermarkCorner", &Self::watermarkCorner),
                          json::field("withChapters", &Self::withChapters),
                          json::field("rallies", &Self::rallies),
                          json::field("fill", &Self::fill),
                          json::field("captions", &Self::captions)};
    }
};

/// Where a new export is written by default: the Downloads folder, or the temporary one for a user without a
/// home; "scoreboard_" and the local time. Two exports in one second name the same file: IfExists::addNumber
/// gives each its own.
QString defaultOutputPath(ExportFormat format, const QDateTime& now = QDateTime::currentDateTime());

/// The same for an export that starts: makes the folder, and takes the temporary one when that fails.
QString newDefaultOutputPath(ExportFormat format, const QDateTime& now = QDateTime::currentDateTime());

}
