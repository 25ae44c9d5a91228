#include "export/ExportSettings.h"

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

}
