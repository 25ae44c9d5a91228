#include "export/ExportOptions.h"

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

QString displayName(WatermarkCorner corner) {
    switch (corner) {
    case WatermarkCorner::topLeft:
        return QStringLiteral("Top Left");
    case WatermarkCorner::topRight:
        return QStringLiteral("Top Right");
    case WatermarkCorner::bottomLeft:
        return QStringLiteral("Bottom Left");
    case WatermarkCorner::bottomRight:
        return QStringLiteral("Bottom Right");
    }
    Q_UNREACHABLE();
}

ExportError ExportError::noVideoTrack() {
    return {"The video file has no video track.", media::MediaFault::noPicture};
}

ExportError ExportError::exportFailed(const QString& message, media::MediaFault fault) {
    return {"Export failed: " + message.toStdString(), fault};
}

QString defaultOutputPath(ExportFormat format, const QDateTime& now) {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    return QStringLiteral("%1/scoreboard_%2.%3")
        .arg(folder, now.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")), fileExtension(format));
}

}
