#include "ui/export/ExportFault.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"
#include "ui/common/FaultText.h"

#include <optional>
#include <QFileInfo>
#include <QStorageInfo>

namespace pointloom {

namespace {

constexpr std::int64_t hardlyAnything = 4'000'000; // bytes; a disk with less counts as full

std::optional<QString> faultOfOutput(const ExportJob& job, Language language) {
    const QFileInfo output(job.outputPath);
    if (replacedInput(job.outputPath, {{job.videoPath, {}}})) // by a hard link, too
        return t(language, L10nKey::exportReplacesVideo);
    const QFileInfo folder(output.absolutePath());
    if (!folder.isDir())
        return format(t(language, L10nKey::exportFolderMissing), folder.filePath());
    if (!folder.isWritable())
        return format(t(language, L10nKey::exportFolderUnwritable), folder.filePath());
    const QStorageInfo disk(folder.filePath());
    if (disk.isValid() && disk.bytesAvailable() < hardlyAnything)
        return faultText(media::MediaFault::diskFull, {}, {}, language).sentence;
    return std::nullopt;
}

// Reading and writing fail for want of a file or a permission alike: of the new file, then, when the video
// can be read.
QString wordsFor(media::MediaFault fault, const ExportJob& job, const QString& reason, Language language) {
    using media::MediaFault;
    if (fault == MediaFault::other)
        return reason;
    const QFileInfo video(job.videoPath);
    const bool mayBeOutput = fault == MediaFault::missing || fault == MediaFault::noPermission;
    const QFileInfo file = mayBeOutput && video.isReadable() ? QFileInfo(job.outputPath) : video;
    return faultText(fault, file.fileName(), reason, language).lines();
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
        return format(t(language, L10nKey::exportVideoMissing), video.fileName());
    if (const auto fault = writes ? faultOfOutput(job, language) : std::nullopt)
        return *fault;
    const QString reason = withoutPrefix(QString::fromUtf8(error.what()));
    const auto* exportError = dynamic_cast<const ExportError*>(&error);
    return exportError ? wordsFor(exportError->fault(), job, reason, language) : reason;
}

}
