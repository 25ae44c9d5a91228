#include "export/SizeEstimate.h"

#include "export/ExportSource.h"
#include "export/FrameOverlay.h"
#include "export/FrameSource.h"
#include "media/TrialEncoding.h"

#include <cmath>
#include <numeric>

namespace pointloom {

namespace {

constexpr double soundBytesPerSecond = 192'000 / 8.0;
constexpr double indexBytesPerFrame = 16;

struct Trial {
    double start = 0; // seconds of the source
    int frames = 0;
};

// Trials of one length from the middles of equal parts of the new file; a short file is one trial.
std::vector<Trial> trialsOf(const ExportTimeline& timeline, QSize size) {
    constexpr int count = 8;
    constexpr double pixels = 16 * 1920.0 * 1080.0; // of a trial: large frames take long
    const int frames = std::clamp(static_cast<int>(pixels / (size.width() * size.height())), 8, 16);
    if (timeline.expectedFrames <= count * frames)
        return {{timeline.map.sourceTime(0), std::max(1, static_cast<int>(timeline.expectedFrames))}};
    const double part = timeline.map.length() / count;
    std::vector<Trial> trials;
    for (int i = 0; i < count; ++i)
        trials.push_back({timeline.map.sourceTime((i + 0.5) * part), frames});
    return trials;
}

media::EncodedSizes encodeTrial(const ExportJob& job, const ResolvedExport& resolved, const Trial& trial,
                                const ExportControl& control) {
    ConvertedFrames frames(openSource(job.videoPath), resolved.target);
    frames.seek(trial.start, control.isCancelled);
    FrameOverlay overlay(job, resolved.layout, resolved.encoder.format);
    int left = trial.frames;
    return media::encodedSizes(resolved.encoder, [&]() -> std::optional<media::VideoFrame> {
        control.throwIfCancelled();
        auto frame = left-- > 0 ? frames.next() : std::nullopt;
        if (frame) {
            frame->makeWritable();
            overlay.drawInto(*frame, frame->time());
        }
        return frame;
    });
}

// Key frames are much larger than others and come much more often in a trial than in the file.
class MeanSizes {
public:
    void add(const media::EncodedSizes& sizes) {
        if (sizes.bytes.empty())
            return;
        m_keyFrameDistance = sizes.keyFrameDistance;
        const auto others = sizes.bytes.begin() + (m_keyFrameDistance > 1 ? 1 : 0);
        m_keyBytes += std::accumulate(sizes.bytes.begin(), others, 0.0);
        m_keyFrames += others - sizes.bytes.begin();
        m_otherBytes += std::accumulate(others, sizes.bytes.end(), 0.0);
        m_otherFrames += sizes.bytes.end() - others;
    }

    double bytesOf(double frames) const {
        const double keyFrames = m_keyFrames > 0 ? std::ceil(frames / m_keyFrameDistance) : 0;
        return keyFrames * mean(m_keyBytes, m_keyFrames) +
               (frames - keyFrames) * mean(m_otherBytes, m_otherFrames);
    }

private:
    static double mean(double sum, std::ptrdiff_t count) {
        return count > 0 ? sum / static_cast<double>(count) : 0;
    }

    int m_keyFrameDistance = 1;
    double m_keyBytes = 0;
    double m_otherBytes = 0;
    std::ptrdiff_t m_keyFrames = 0;
    std::ptrdiff_t m_otherFrames = 0;
};

}

std::optional<std::int64_t> estimatedBytes(const ExportJob& job, const std::function<bool()>& isStopped) {
    const ExportControl control{.isCancelled = isStopped};
    try {
        const media::MediaInfo info = openSource(job.videoPath).info();
        requireRange(job, info.duration);
        const ResolvedExport resolved = resolveExport(job, info);
        const ExportTimeline timeline = exportTimeline(job, info);
        MeanSizes sizes;
        for (const Trial& trial : trialsOf(timeline, resolved.target.size))
            sizes.add(encodeTrial(job, resolved, trial, control));
        const auto frames = static_cast<double>(std::max<std::int64_t>(1, timeline.expectedFrames));
        const double sound = info.audioTracks > 0 ? timeline.map.length() * soundBytesPerSecond : 0;
        return std::llround(sizes.bytesOf(frames) + frames * indexBytesPerFrame + sound);
    } catch (const std::exception&) {
        return std::nullopt; // also when it was stopped
    }
}

}
