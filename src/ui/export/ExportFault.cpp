#include "ui/export/ExportFault.h"

#include "ui/export/ExportTexts.h"

#include <optional>
#include <QFileInfo>
#include <QStorageInfo>

namespace pointloom {

namespace {

constexpr std::int64_t hardlyAnything = 4'000'000; // bytes; a disk with less counts as full

std::optional<QString> faultOfFolder(const QString& outputPath, Language language) {
    const QFileInfo folder(QFileInfo(outputPath).absolutePath());
    if (!folder.isDir())
        return t(language, ExportTexts::folderMissing).arg(folder.filePath());
    if (!folder.isWritable())
        return t(language, ExportTexts::folderUnwritable).arg(folder.filePath());
    const QStorageInfo disk(folder.filePath());
    if (disk.isValid() && disk.bytesAvailable() < hardlyAnything)
        return t(language, ExportTexts::diskFull);
    return std::nullopt;
}

// Screens have said already that it failed.
QString withoutPrefix(const QString& message) {
    const QString prefix = QString::fromUtf8(ExportError::exportFailed({}).what());
    return message.startsWith(prefix) ? message.mid(prefix.size()) : message;
}

}

QString reasonOf(const std::exception& error, const ExportJob& job, bool writes, Language language) {
    const QFileInfo video(job.videoPath);
    if (!video.exists())
        return t(language, ExportTexts::videoMissing).arg(video.fileName());
    const auto fault = writes ? faultOfFolder(job.outputPath, language) : std::nullopt;
    return fault.value_or(withoutPrefix(QString::fromUtf8(error.what())));
}

}
