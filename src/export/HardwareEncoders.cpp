#include "export/HardwareEncoders.h"

#include "export/ExportPlan.h"
#include "export/ExportSource.h"
#include "media/EncoderProbe.h"

namespace pointloom {

namespace {

using media::EncoderKind;

media::VideoSettings settingsFor(const ExportJob& job) {
    const media::MediaInfo info = ExportSource::open(job.videoPath).info();
    ExportSource::requireOverlaySize(*info.video);
    return videoSettings(job, makePlan(job, info), *info.video);
}

}

std::vector<EncoderKind> workingHardwareEncoders(const ExportJob& job) {
    media::VideoSettings settings = settingsFor(job);
    std::vector<EncoderKind> working;
    for (const auto& [kind, word] : RawValues<EncoderKind>::table) {
        settings.encoder = kind;
        if (kind != EncoderKind::software && !media::encoderFault(settings))
            working.push_back(kind);
    }
    return working;
}

std::optional<EncoderFallback> settleEncoder(ExportJob& job) {
    if (job.encoder == EncoderKind::software)
        return std::nullopt;
    const auto fault = media::encoderFault(settingsFor(job));
    if (!fault)
        return std::nullopt;
    return EncoderFallback{std::exchange(job.encoder, EncoderKind::software), *fault};
}

}
