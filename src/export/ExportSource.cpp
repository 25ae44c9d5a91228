#include "export/ExportSource.h"

#include "media/MediaError.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pointloom {

namespace {

media::MediaError noMemory() {
    return media::MediaError("there is not enough memory");
}

}

ExportError ExportSource::failure(const char* what, const media::MediaError& reason) {
    return ExportError::exportFailed(QString::fromUtf8(what) + QString::fromUtf8(reason.what()),
                                     reason.fault());
}

ExportError ExportSource::refusal(const char* text, const media::MediaError& reason) {
    return ExportError::exportFailed(
        QStringLiteral("%1 (%2)").arg(QString::fromUtf8(text), QString::fromUtf8(reason.what())),
        reason.fault());
}

ExportError ExportSource::failure(const char* what, const FileError& reason) {
    using media::MediaFault;
    const int error = reason.error();
    const bool isFull = error == ENOSPC || error == EDQUOT;
    const bool isForbidden = error == EACCES || error == EPERM || error == EROFS;
    return ExportError::exportFailed(QString::fromUtf8(what) + QString::fromUtf8(reason.what()),
                                     isFull        ? MediaFault::diskFull
                                     : isForbidden ? MediaFault::noPermission
                                                   : MediaFault::other);
}

media::VideoReader ExportSource::open(const QString& path) {
    try {
        return media::VideoReader::open(path);
    } catch (const media::NoVideoTrackError&) {
        throw ExportError::noVideoTrack();
    } catch (const media::MediaError& error) {
        if (error.fault() == media::MediaFault::unsupportedCodec)
            throw refusal("Cannot add video output.", error);
        throw failure("Reader failed: ", error);
    } catch (const std::bad_alloc&) {
        throw refusal("Could not create AVAssetReader.", noMemory());
    }
}

ExportError ExportSource::writerError() {
    try {
        throw;
    } catch (const media::EncoderError& error) {
        return refusal("Cannot add video input.", error);
    } catch (const media::MediaError& error) {
        return failure("Writer failed: ", error);
    } catch (const FileError& error) {
        return failure("Writer failed: ", error);
    } catch (const std::bad_alloc&) {
        return refusal("Could not create AVAssetWriter.", noMemory());
    }
}

void ExportSource::requireOverlaySize(const media::VideoTrackInfo& track) {
    if (track.storedSize.width() < 2 || track.storedSize.height() < 2)
        throw ExportError::exportFailed(QStringLiteral("Cannot add video output."));
}

std::vector<InputFile> inputFiles(const ExportJob& job) {
    std::vector<InputFile> files{{job.videoPath, QStringLiteral("the source video")}};
    if (!job.projectPath.isEmpty())
        files.push_back({job.projectPath, QStringLiteral("the project itself")});
    if (job.overlay.watermarkPath)
        files.push_back({*job.overlay.watermarkPath, QStringLiteral("the watermark")});
    if (job.overlay.config.logoURL)
        files.push_back({job.overlay.config.logoURL->toLocalFile(), QStringLiteral("the logo")});
    return files;
}

void ExportSource::requireOtherFile(const ExportJob& job, const QString& path) {
    const auto inputs = inputFiles(job);
    if (const InputFile* replaced = replacedInput(path, inputs))
        throw ExportError::exportFailed(QStringLiteral("the new file would replace ") + replaced->role);
}

void ExportSource::requireRange(const ExportJob& job, double videoDuration) {
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

double ExportSource::endOfRange(std::optional<double> trimEnd, double videoDuration) {
    return trimEnd && videoDuration > 0 ? std::min(*trimEnd, videoDuration) : trimEnd.value_or(videoDuration);
}

media::VideoCodec ExportSource::codecOf(ExportFormat format) {
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

}
