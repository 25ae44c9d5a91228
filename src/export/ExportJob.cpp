#include "export/ExportJob.h"

#include "media/MediaWriter.h"
#include "json/JsonCoding.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <new>

namespace pointloom {

using media::MediaFault;

ExportError ExportError::noVideoTrack() {
    return {"The video file has no video track.", MediaFault::noPicture};
}

ExportError ExportError::exportFailed(const QString& message, MediaFault fault) {
    return {"Export failed: " + message.toStdString(), fault};
}

ExportError ExportError::from(const char* what, const media::MediaError& reason) {
    return exportFailed(QString::fromUtf8(what) + QString::fromUtf8(reason.what()), reason.fault());
}

ExportError ExportError::from(const char* what, const FileError& reason) {
    const int error = reason.error();
    const bool isFull = error == ENOSPC || error == EDQUOT;
    const bool isForbidden = error == EACCES || error == EPERM || error == EROFS;
    return exportFailed(QString::fromUtf8(what) + QString::fromUtf8(reason.what()),
                        isFull        ? MediaFault::diskFull
                        : isForbidden ? MediaFault::noPermission
                                      : MediaFault::other);
}

ExportError ExportError::refusal(const char* sentence, const media::MediaError& reason) {
    return exportFailed(
        QStringLiteral("%1 (%2)").arg(QString::fromUtf8(sentence), QString::fromUtf8(reason.what())),
        reason.fault());
}

ExportError ExportError::fromWriter() {
    try {
        throw;
    } catch (const media::EncoderError& error) {
        return refusal("Cannot add video input.", error);
    } catch (const media::MediaError& error) {
        return from("Writer failed: ", error);
    } catch (const FileError& error) {
        return from("Writer failed: ", error);
    } catch (const std::bad_alloc&) {
        return refusal("Could not create AVAssetWriter.", media::MediaError("there is not enough memory"));
    }
}

json::OrderedValue json::Codec<QPointF>::encode(QPointF point) {
    return {{"x", point.x()}, {"y", point.y()}};
}

QPointF json::Codec<QPointF>::decode(const Value& value, const Path& path) {
    if (!value.is_object())
        throw DecodingError(path, "expected an object");
    const auto number = [&](std::string_view key) {
        return Codec<double>::decode(requiredMember(value, key, path), path.key(key));
    };
    return {number("x"), number("y")};
}

std::vector<InputFile> inputFiles(const ExportJob& job) {
    std::vector<InputFile> files;
    for (const QString& video : job.recording().files())
        files.push_back({video, QStringLiteral("the source video")});
    if (!job.projectPath.isEmpty())
        files.push_back({job.projectPath, QStringLiteral("the project itself")});
    if (job.overlay.watermarkPath)
        files.push_back({*job.overlay.watermarkPath, QStringLiteral("the watermark")});
    if (job.overlay.config.logoURL)
        files.push_back({job.overlay.config.logoURL->toLocalFile(), QStringLiteral("the logo")});
    return files;
}

void requireOtherFile(const ExportJob& job, const QString& path) {
    const auto inputs = inputFiles(job);
    if (const InputFile* replaced = replacedInput(path, inputs))
        throw ExportError::exportFailed(QStringLiteral("the new file would replace ") + replaced->role);
}

void requireRange(const ExportJob& job, double videoDuration) {
    const auto text = [](double seconds) { return QString::number(seconds, 'f', 2); };
    if (!std::isfinite(job.trimStart) || job.trimStart < 0 || (job.trimEnd && !std::isfinite(*job.trimEnd)))
        throw ExportError::exportFailed(QStringLiteral("the trim range is not a time"));
    if (job.trimEnd && *job.trimEnd <= job.trimStart) {
        throw ExportError::exportFailed(QStringLiteral("the trim range ends (%1 s) before it starts (%2 s)")
                                            .arg(text(*job.trimEnd), text(job.trimStart)));
    }
    if (job.trimStart > 0 && videoDuration > 0 && job.trimStart >= videoDuration) {
        throw ExportError::exportFailed(
            QStringLiteral("the trim range starts (%1 s) after the end of the video (%2 s)")
                .arg(text(job.trimStart), text(videoDuration)),
            media::MediaFault::nothingInRange);
    }
}

double endOfRange(std::optional<double> trimEnd, double videoDuration) {
    return trimEnd && videoDuration > 0 ? std::min(*trimEnd, videoDuration) : trimEnd.value_or(videoDuration);
}

std::optional<ExportPace> paceOf(const ExportProgress& progress, double elapsedSeconds) {
    const auto reused = static_cast<double>(progress.reusedFrames);
    const double encoded = progress.fraction - reused / static_cast<double>(progress.expectedFrames);
    if (elapsedSeconds <= 0 || encoded <= 0)
        return std::nullopt;
    return ExportPace{(static_cast<double>(progress.frames) - reused) / elapsedSeconds,
                      elapsedSeconds * (1 - progress.fraction) / encoded};
}

}
