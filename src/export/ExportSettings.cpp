#include "export/ExportSettings.h"

#include <algorithm>
#include <cmath>
#include <QDir>
#include <QStandardPaths>

namespace pointloom {

std::optional<QSize> targetSize(ExportPreset preset) {
    switch (preset) {
    case ExportPreset::original:
        return std::nullopt;
    case ExportPreset::youtube4k:
        return QSize(3840, 2160);
    case ExportPreset::twitter1080p:
        return QSize(1920, 1080);
    case ExportPreset::instagram916:
        return QSize(1080, 1920);
    }
    Q_UNREACHABLE();
}

QString fileExtension(ExportFormat format) {
    return format == ExportFormat::prores ? QStringLiteral("mov") : QStringLiteral("mp4");
}

media::VideoCodec codecOf(ExportFormat format) {
    switch (format) {
    case ExportFormat::h264:
        return media::VideoCodec::h264;
    case ExportFormat::hevc:
        return media::VideoCodec::hevc;
    case ExportFormat::prores:
        return media::VideoCodec::prores;
    }
    Q_UNREACHABLE();
}

namespace {

QString downloadsFolder() {
    // Without a home there are none: Qt names a folder at the root then.
    const bool isHomeless = QDir::homePath() == QDir::rootPath();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return folder.isEmpty() || isHomeless ? QDir::tempPath() : folder;
}

QString nameIn(const QString& folder, ExportFormat format, const QDateTime& now) {
    return QStringLiteral("%1/scoreboard_%2.%3")
        .arg(folder, now.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")), fileExtension(format));
}

}

QString defaultOutputPath(ExportFormat format, const QDateTime& now) {
    return nameIn(downloadsFolder(), format, now);
}

QString newDefaultOutputPath(ExportFormat format, const QDateTime& now) {
    const QString folder = downloadsFolder();
    return nameIn(QDir().mkpath(folder) ? folder : QDir::tempPath(), format, now);
}

namespace {

double pixels(QSize size) {
    return static_cast<double>(size.width()) * size.height();
}

// Bits a second at 1920x1080 and 29.97 Hz.
double nominalProresRate(media::EncodingQuality quality) {
    switch (quality) {
    case media::EncodingQuality::smaller:
        return 102e6;
    case media::EncodingQuality::standard:
        return 147e6;
    case media::EncodingQuality::better:
        break;
    }
    return 220e6;
}

double proresBytesPerSecond(QSize size, double frameRate, media::EncodingQuality quality) {
    constexpr double nominalPixels = 1920.0 * 1080.0 * 29.97; // a second
    return pixels(size) * frameRate * nominalProresRate(quality) / nominalPixels / 8;
}

// Encoders spend less than twice the data on twice the pixels of the same picture.
double compressedBytesPerSecond(const SourceRate& source, QSize size, const ExportSettings& settings) {
    constexpr double hevcSaving = 0.65;
    const bool isHevc = settings.format == ExportFormat::hevc;
    const double ratio = media::dataRatio(codecOf(settings.format), settings.quality);
    const double scaled = source.bytesPerSecond * std::pow(pixels(size) / pixels(source.size), 0.75);
    return ratio * (isHevc ? scaled * hevcSaving : scaled);
}

}

std::int64_t estimatedBytes(const SourceRate& source, const ExportSettings& settings, double seconds) {
    if (source.size.isEmpty() || seconds <= 0)
        return 0;
    const QSize size = targetSize(settings.preset).value_or(source.size);
    const double rate = settings.format == ExportFormat::prores
                            ? proresBytesPerSecond(size, std::max(source.frameRate, 1.0), settings.quality)
                            : compressedBytesPerSecond(source, size, settings);
    return static_cast<std::int64_t>(rate * seconds);
}

}
