#include "export/ExportSource.h"

#include "media/EncoderProbe.h"

#include <new>

namespace pointloom {

namespace {

using media::EncoderKind;

media::VideoReader openReader(const media::Recording& recording) {
    try {
        return media::VideoReader::open(recording);
    } catch (const media::NoVideoTrackError&) {
        throw ExportError::noVideoTrack();
    } catch (const media::MediaError& error) {
        if (error.fault() == media::MediaFault::unsupportedCodec)
            throw ExportError::refusal("Cannot add video output.", error);
        throw ExportError::from("Reader failed: ", error);
    } catch (const std::bad_alloc&) {
        throw ExportError::refusal("Could not create AVAssetReader.",
                                   media::MediaError("there is not enough memory"));
    }
}

}

media::VideoReader openSource(const media::Recording& recording) {
    media::VideoReader reader = openReader(recording);
    const QSize size = reader.track().storedSize;
    if (size.width() < 2 || size.height() < 2)
        throw ExportError::exportFailed(QStringLiteral("Cannot add video output."));
    return reader;
}

ResolvedExport resolveExport(const ExportJob& job, const media::MediaInfo& info) {
    const media::VideoTrackInfo& track = *info.video;
    const ExportSettings& settings = job.settings;
    const PictureLayout layout = planPicture(track, settings.preset, settings.fill);
    const media::FrameFormat format = media::encodableFormat(
        codecOf(settings.format),
        track.format.value_or(media::FrameFormat{media::Subsampling::s420, track.bitDepth, track.color}));
    return {
        .layout = layout,
        .target =
            {
                .size = layout.frameSize,
                .seen = layout.seen,
                .picture = layout.picture,
                .orientation = layout.keepsStoredPicture ? media::Orientation{} : track.orientation,
                .sampleAspectRatio = layout.sampleAspectRatio,
                .format = format,
            },
        .encoder =
            {
                .codec = codecOf(settings.format),
                .encoder = settings.encoder,
                .quality = settings.quality,
                .size = layout.frameSize,
                .format = format,
                .hdr = track.hdr,
                .orientation = layout.orientation,
                .sampleAspectRatio = layout.sampleAspectRatio,
                .timeBase = track.timeBase,
                .frameRate = track.frameRate,
                .encoderPreset = settings.encoderPreset.toStdString(),
                .encodersAtOnce = job.exportsAtOnce,
                .joinable = job.segment.has_value(),
                .lossless = job.lossless,
            },
    };
}

namespace {

media::VideoSettings encoderSettings(const ExportJob& job) {
    return resolveExport(job, openSource(job.recording()).info()).encoder;
}

}

std::vector<EncoderKind> workingHardwareEncoders(const ExportJob& job) {
    media::VideoSettings settings = encoderSettings(job);
    std::vector<EncoderKind> working;
    for (const EncoderKind kind : allCases<EncoderKind>()) {
        settings.encoder = kind;
        if (kind != EncoderKind::software && !media::encoderFault(settings))
            working.push_back(kind);
    }
    return working;
}

std::optional<EncoderFallback> settleEncoder(ExportJob& job) {
    EncoderKind& encoder = job.settings.encoder;
    if (encoder == EncoderKind::software)
        return std::nullopt;
    const auto fault = media::encoderFault(encoderSettings(job));
    if (!fault)
        return std::nullopt;
    return EncoderFallback{std::exchange(encoder, EncoderKind::software), *fault};
}

}
