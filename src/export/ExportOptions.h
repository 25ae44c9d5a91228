// The choices of one export: size, codec, watermark corner; its errors; the name of its file.
#pragma once

#include "media/MediaError.h"
#include "json/RawValues.h"

#include <functional>
#include <optional>
#include <QDateTime>
#include <QSize>
#include <QString>
#include <stdexcept>

namespace pointloom {

enum class ExportPreset : unsigned char { original, youtube4k, twitter1080p, instagram916 };

// The raw values are the labels that people see; the two blanks in the third are meant.
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

enum class WatermarkCorner : unsigned char { topLeft, topRight, bottomLeft, bottomRight };

template <>
struct RawValues<WatermarkCorner> {
    static constexpr auto table = std::to_array<std::pair<WatermarkCorner, std::string_view>>({
        {WatermarkCorner::topLeft, "topLeft"},
        {WatermarkCorner::topRight, "topRight"},
        {WatermarkCorner::bottomLeft, "bottomLeft"},
        {WatermarkCorner::bottomRight, "bottomRight"},
    });
};

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

/// An export that could not be done. `what()` is fit for a person.
class ExportError : public std::runtime_error {
public:
    static ExportError noVideoTrack();
    /// "Export failed: " and the message.
    static ExportError exportFailed(const QString& message,
                                    media::MediaFault fault = media::MediaFault::other);

    media::MediaFault fault() const { return m_fault; }

private:
    ExportError(const std::string& message, media::MediaFault fault)
        : std::runtime_error(message)
        , m_fault(fault) {}

    media::MediaFault m_fault;
};

/// Thrown by an export that was cancelled; not an error of the export.
class ExportCancelled : public std::exception {
public:
    const char* what() const noexcept override { return "The export was cancelled."; }
};

/// `isCancelled` may be empty.
inline void throwIfCancelled(const std::function<bool()>& isCancelled) {
    if (isCancelled && isCancelled())
        throw ExportCancelled();
}

/// Where a new export is written by default: the Downloads folder, or the temporary one for a user without a
/// home; "scoreboard_" and the local time. Two exports in one second name the same file: IfExists::addNumber
/// gives each its own.
QString defaultOutputPath(ExportFormat format, const QDateTime& now = QDateTime::currentDateTime());

/// The same for an export that starts: the folder is made, and where it cannot be the temporary one serves.
QString newDefaultOutputPath(ExportFormat format, const QDateTime& now = QDateTime::currentDateTime());

}
