#include "ui/export/ExportWords.h"

#include "files/FreeSpace.h"
#include "l10n/Format.h"
#include "l10n/L10nKey.h"
#include "ui/common/FaultText.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <QDir>
#include <QFileInfo>

namespace pointloom::ExportWords {

QString progress(const ExportProgress& progress, double elapsedSeconds, Language language) {
    constexpr double tooEarly = 0.8; // seconds; the first frames say nothing of the rest
    const QLocale locale = localeOf(language);
    QString line =
        format(t(language, L10nKey::exportProgressFrames), locale.toString(qlonglong{progress.frames}),
               locale.toString(qlonglong{std::max(progress.expectedFrames, progress.frames)}));
    const auto pace = paceOf(progress, elapsedSeconds);
    if (!pace || elapsedSeconds < tooEarly)
        return line;
    line += QStringLiteral(", ") + format(t(language, L10nKey::exportFramesPerSecond),
                                          locale.toString(std::llround(pace->framesPerSecond)));
    return line + QStringLiteral(", ") +
           format(t(language, L10nKey::exportTimeLeft), span(pace->secondsLeft));
}

QString queue(const QueueStatus& status, const QDateTime& now, Language language) {
    const QLocale locale = localeOf(language);
    const auto failed = [&] {
        return format(t(language, L10nKey::queueFailed), locale.toString(status.failed));
    };
    if (status.left == 0 && status.failed > 0)
        return failed();
    if (status.left == 0)
        return status.done > 0        ? t(language, L10nKey::queueAllDone)
               : status.cancelled > 0 ? t(language, L10nKey::queueCancelled)
                                      : QString();
    if (status.lowSpace)
        return format(t(language, L10nKey::queueLowSpace), bytes(*status.lowSpace, language));
    QStringList parts{format(t(language, L10nKey::queueLeft), locale.toString(status.left))};
    if (status.isPaused) {
        parts += t(language, L10nKey::queuePaused);
    } else if (constexpr double tooEarly = 15; status.secondsLeft && status.elapsed >= tooEarly) {
        const QDateTime end = now.addSecs(std::llround(*status.secondsLeft));
        parts += format(t(language, L10nKey::queueDoneAt), locale.toString(end.time(), QLocale::ShortFormat));
    }
    if (status.failed > 0)
        parts += failed();
    return parts.join(QStringLiteral(", "));
}

QStringList damage(const media::Damage& damage, Language language) {
    constexpr double shortest = 0.1; // seconds; that one decimal can say
    QStringList lines;
    const QLocale locale = localeOf(language);
    if (const std::int64_t pictures = damage.lostFrames + damage.faultyFrames; pictures > 0)
        lines += format(t(language, L10nKey::exportDamagedPictures), locale.toString(qlonglong{pictures}));
    if (damage.secondsMissing > 0)
        lines += format(t(language, L10nKey::exportEndMissing),
                        locale.toString(std::max(damage.secondsMissing, shortest), 'f', 1));
    return lines;
}

QStringList flaws(const ExportReport& report, Language language) {
    QStringList lines = damage(report.damage, language);
    if (report.captionsFault)
        lines += format(t(language, L10nKey::exportCaptionsMissing), *report.captionsFault);
    return lines;
}

QString span(double seconds) {
    const auto whole = static_cast<qint64>(std::ceil(std::max(seconds, 0.0)));
    if (whole >= 3600)
        return QStringLiteral("%1 h %2 min").arg(whole / 3600).arg(whole / 60 % 60);
    if (whole >= 60)
        return QStringLiteral("%1 min %2 s").arg(whole / 60).arg(whole % 60);
    return QStringLiteral("%1 s").arg(whole);
}

QString place(double seconds) {
    const qint64 hundredths = std::llround(std::max(seconds, 0.0) * 100);
    const QLatin1Char zero('0');
    const QString rest =
        QStringLiteral("%1.%2").arg(hundredths / 100 % 60, 2, 10, zero).arg(hundredths % 100, 2, 10, zero);
    const qint64 minutes = hundredths / 6000;
    if (minutes >= 60)
        return QStringLiteral("%1:%2:%3").arg(minutes / 60).arg(minutes % 60, 2, 10, zero).arg(rest);
    return QStringLiteral("%1:%2").arg(minutes).arg(rest);
}

QString path(const QString& path) {
    const QString home = QDir::homePath() + u'/';
    return path.startsWith(home) ? QStringLiteral("~/") + path.mid(home.size()) : path;
}

QString bytes(std::int64_t bytes, Language language) {
    return localeOf(language).formattedDataSize(bytes, bytes < 1'000'000'000 ? 0 : 1,
                                                QLocale::DataSizeSIFormat);
}

namespace {

constexpr std::int64_t hardlyAnything = 4'000'000; // bytes; a disk with less free space counts as full

std::optional<QString> faultOfOutput(const ExportJob& job, Language language) {
    const QFileInfo output(job.outputPath);
    for (const QString& video : job.recording().files()) {
        if (replacedInput(job.outputPath, {{video, {}}})) // by a hard link, too
            return t(language, L10nKey::exportReplacesVideo);
    }
    const QFileInfo folder(output.absolutePath());
    if (!folder.isDir())
        return format(t(language, L10nKey::exportFolderMissing), folder.filePath());
    if (!folder.isWritable())
        return format(t(language, L10nKey::exportFolderUnwritable), folder.filePath());
    if (const auto free = freeBytes(folder.filePath()); free && *free < hardlyAnything)
        return faultText(media::MediaFault::diskFull, {}, {}, language).sentence;
    return std::nullopt;
}

// A missing file or permission can be that of the video or of the new file; it is the latter's when the video
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

// The screen says already that the export failed.
QString withoutPrefix(const QString& message) {
    const QString prefix = QString::fromUtf8(ExportError::exportFailed({}).what());
    return message.startsWith(prefix) ? message.mid(prefix.size()) : message;
}

}

QString fault(const std::exception& error, const ExportJob& job, bool writes, Language language) {
    for (const QString& video : job.recording().files()) {
        if (!QFileInfo::exists(video))
            return format(t(language, L10nKey::exportVideoMissing), QFileInfo(video).fileName());
    }
    if (const auto fault = writes ? faultOfOutput(job, language) : std::nullopt)
        return *fault;
    const QString reason = withoutPrefix(QString::fromUtf8(error.what()));
    const auto* exportError = dynamic_cast<const ExportError*>(&error);
    return exportError ? wordsFor(exportError->fault(), job, reason, language) : reason;
}

}
