#include "export/SizeEstimate.h"

#include "export/ExportSource.h"
#include "export/FrameOverlay.h"
#include "export/FrameSource.h"
#include "media/AudioReader.h"
#include "media/TrialEncoding.h"

#include <cmath>
#include <numeric>
#include <QFileInfo>
#include <QTemporaryDir>

namespace pointloom {

namespace {

constexpr double indexBytesPerFrame = 16;
constexpr int trialCount = 8;

// A stretch of the source that is encoded; seconds.
struct Trial {
    double start = 0;
    double length = 0;
};

// Stretches from the middles of equal parts of the new file; all of a short file.
std::vector<Trial> trialsOf(const ExportTimeline& timeline, double length) {
    const double part = timeline.map.length() / trialCount;
    if (part <= length)
        return {{timeline.map.sourceTime(0), timeline.map.length()}};
    std::vector<Trial> trials;
    for (int i = 0; i < trialCount; ++i)
        trials.push_back({timeline.map.sourceTime((i + 0.5) * part), length});
    return trials;
}

double lengthOfTrials(const ResolvedExport& resolved) {
    constexpr double pixels = 16 * 1920.0 * 1080.0; // of a trial: large frames take long
    const QSize size = resolved.target.size;
    const double frames = std::clamp(pixels / size.width() / size.height(), 8.0, 24.0);
    return frames / resolved.encoder.frameRate.value();
}

media::EncodedSizes encodeTrial(const ExportJob& job, const ResolvedExport& resolved, const Trial& trial,
                                const ExportControl& control) {
    ConvertedFrames frames(openSource(job.recording()), resolved.target);
    frames.seek(trial.start, control.isCancelled);
    FrameOverlay overlay(job, resolved.layout, resolved.encoder.format);
    return media::encodedSizes(resolved.encoder, [&]() -> std::optional<media::VideoFrame> {
        control.throwIfCancelled();
        auto frame = frames.next();
        if (!frame || frame->time() >= trial.start + trial.length)
            return std::nullopt;
        frame->makeWritable();
        overlay.drawInto(*frame, frame->time());
        return frame;
    });
}

// Key frames are much larger than others and come much more often in a trial than in the file.
class MeanSizes {
public:
    void add(const media::EncodedSizes& sizes, double seconds) {
        m_seconds += seconds;
        if (sizes.bytes.empty())
            return; // the pictures begin later
        m_keyFrameDistance = sizes.keyFrameDistance;
        const auto others = sizes.bytes.begin() + (m_keyFrameDistance > 1 ? 1 : 0);
        m_keyBytes += std::accumulate(sizes.bytes.begin(), others, 0.0);
        m_keyFrames += others - sizes.bytes.begin();
        m_otherBytes += std::accumulate(others, sizes.bytes.end(), 0.0);
        m_otherFrames += sizes.bytes.end() - others;
    }

    double bytesOf(double seconds) const {
        const double frames = seconds * static_cast<double>(m_keyFrames + m_otherFrames) / m_seconds;
        const double keyFrames = m_keyFrames > 0 ? std::ceil(frames / m_keyFrameDistance) : 0;
        return keyFrames * mean(m_keyBytes, m_keyFrames) +
               (frames - keyFrames) * mean(m_otherBytes, m_otherFrames) + frames * indexBytesPerFrame;
    }

private:
    static double mean(double sum, std::ptrdiff_t count) {
        return count > 0 ? sum / static_cast<double>(count) : 0;
    }

    int m_keyFrameDistance = 1;
    double m_seconds = 0;
    double m_keyBytes = 0;
    double m_otherBytes = 0;
    std::ptrdiff_t m_keyFrames = 0;
    std::ptrdiff_t m_otherFrames = 0;
};

// Silence takes a tenth of what a match does.
double soundBytesPerSecond(const media::Recording& recording, const std::vector<Trial>& trials,
                           const ExportControl& control) {
    constexpr int headerBytes = 1000;
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("sound.mp4"));
    media::SoundWriter writer(file, {});
    double seconds = 0;
    for (const Trial& trial : trials) {
        const auto first = std::llround(seconds * media::audioSampleRate);
        auto sound = media::AudioReader::open(recording, trial.start, trial.start + trial.length);
        while (auto run = sound ? sound->read() : std::nullopt) {
            control.throwIfCancelled();
            run->place(first + run->firstSample, run->sampleCount);
            writer.write(*run);
        }
        seconds += trial.length;
    }
    writer.finish();
    return std::max(0.0, static_cast<double>(QFileInfo(file).size()) - headerBytes) / seconds;
}

}

std::optional<std::int64_t> estimatedBytes(const ExportJob& job, const std::function<bool()>& isStopped) {
    const ExportControl control{.isCancelled = isStopped};
    try {
        const media::MediaInfo info = openSource(job.recording()).info();
        requireRange(job, info.duration);
        const ResolvedExport resolved = resolveExport(job, info);
        const ExportTimeline timeline = exportTimeline(job, info);
        const double seconds = timeline.map.length();
        MeanSizes sizes;
        for (const Trial& trial : trialsOf(timeline, lengthOfTrials(resolved)))
            sizes.add(encodeTrial(job, resolved, trial, control), trial.length);
        constexpr double soundTrial = 2; // seconds
        const double sound =
            info.audioTracks > 0
                ? soundBytesPerSecond(job.recording(), trialsOf(timeline, soundTrial), control)
                : 0;
        return std::llround(sizes.bytesOf(seconds) + sound * seconds);
    } catch (const std::exception&) {
        return std::nullopt; // also when it was stopped
    }
}

}
