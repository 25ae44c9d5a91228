#include "export/ExportPlan.h"

#include "export/Chapters.h"
#include "export/ExportSource.h"

namespace pointloom {

namespace {

// Seconds of pictures.
double lengthOf(const ExportJob& job, const media::MediaInfo& info) {
    const FrameWindow window = job.segment ? job.segment->window : FrameWindow{};
    const double tick = info.video->timeBase.value();
    const double from = window.from ? static_cast<double>(*window.from) * tick : job.trimStart;
    return (window.until ? static_cast<double>(*window.until) * tick
                         : ExportSource::endOfRange(job.trimEnd, info.duration)) -
           from;
}

}

ExportPlan makePlan(const ExportJob& job, const media::MediaInfo& info) {
    const media::VideoTrackInfo& track = *info.video;
    ExportPlan plan{
        .layout = planPicture(track, job.preset),
        .frameFormat = media::encodableFormat(
            ExportSource::codecOf(job.format),
            track.format.value_or(media::FrameFormat{media::Subsampling::s420, track.bitDepth, track.color})),
        .range = TrimRange(job.trimStart, job.trimEnd, job.segment ? job.segment->window : FrameWindow{}),
        .chapters = {},
    };
    if (track.frameRate.value() > 0)
        plan.frameRate = track.frameRate.value();
    const double length = lengthOf(job, info);
    if (job.withChapters && !job.segment)
        plan.chapters =
            chaptersOf(job.overlay.markers, job.overlay.config, job.trimStart, job.trimStart + length);
    plan.expectedFrames = static_cast<std::int64_t>(length * plan.frameRate);
    return plan;
}

media::FrameTarget pictureTarget(const ExportPlan& plan, const media::VideoTrackInfo& track) {
    return {
        .size = plan.layout.frameSize,
        .picture = plan.layout.picture,
        .orientation = plan.layout.keepsStoredPicture ? media::Orientation{} : track.orientation,
        .sampleAspectRatio = plan.layout.sampleAspectRatio,
        .format = plan.frameFormat,
    };
}

media::VideoSettings videoSettings(const ExportJob& job, const ExportPlan& plan,
                                   const media::VideoTrackInfo& track) {
    return {
        .codec = ExportSource::codecOf(job.format),
        .encoder = job.encoder,
        .quality = job.quality,
        .size = plan.layout.frameSize,
        .format = plan.frameFormat,
        .hdr = track.hdr,
        .orientation = plan.layout.orientation,
        .sampleAspectRatio = plan.layout.sampleAspectRatio,
        .timeBase = track.timeBase,
        .frameRate = track.frameRate,
        .encoderPreset = job.encoderPreset,
        .encodersAtOnce = job.exportsAtOnce,
        .joinable = job.segment.has_value(),
        .lossless = job.lossless,
    };
}

}
