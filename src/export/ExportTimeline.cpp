#include "export/ExportTimeline.h"

#include "export/Chapters.h"
#include "media/FrameTimes.h"
#include "model/ScoringEngine.h"

#include <algorithm>
#include <limits>

namespace pointloom {

namespace {

constexpr double untilTheEnd = std::numeric_limits<double>::max(); // of a video of unknown length

TimeSpan wholeRange(const ExportJob& job, const media::MediaInfo& info) {
    const double end = endOfRange(job.trimEnd, info.duration);
    return {job.trimStart, end > 0 ? end : untilTheEnd};
}

// The first frame at or after a time; empty after the last one.
std::optional<std::int64_t> firstFrameFrom(media::FrameTimes& times, double seconds) {
    times.seek(seconds);
    while (const auto time = times.next()) {
        if (static_cast<double>(*time) * times.timeBase().value() >=
            seconds - ScoringEngine::frameTimeTolerance)
            return time;
    }
    return std::nullopt;
}

std::vector<FrameWindow> windowsOf(const std::vector<TimeSpan>& parts, const TimeSpan& range,
                                   media::FrameTimes& times) {
    std::vector<FrameWindow> windows;
    for (const TimeSpan& part : parts) {
        FrameWindow window;
        if (part.start > range.start) {
            window.from = firstFrameFrom(times, part.start);
            if (!window.from)
                break;
        }
        if (part.end < range.end)
            window.until = firstFrameFrom(times, part.end);
        if (window.from && window.from == window.until)
            continue; // shorter than a frame
        if (!windows.empty() && windows.back().until == window.from)
            windows.back().until = window.until;
        else
            windows.push_back(window);
    }
    return windows;
}

// The frames of the windows that are in `segment` too.
std::vector<FrameWindow> clipped(const std::vector<FrameWindow>& windows, const FrameWindow& segment) {
    std::vector<FrameWindow> inside;
    for (const FrameWindow& window : windows) {
        FrameWindow both = window;
        if (segment.from)
            both.from = std::max(*segment.from, window.from.value_or(*segment.from));
        if (segment.until)
            both.until = std::min(*segment.until, window.until.value_or(*segment.until));
        if (!both.from || !both.until || *both.from < *both.until)
            inside.push_back(both);
    }
    return inside;
}

// Distance of a frame from the start of the job's range, ticks.
std::int64_t ticksInRange(std::int64_t timestamp, const ExportJob& job, media::Rational timeBase) {
    return TrimRange(job.trimStart, job.trimEnd, {timestamp, std::nullopt}).windowStart(timeBase);
}

}

std::vector<FrameWindow> frameWindows(const ExportJob& job, const media::MediaInfo& info) {
    std::vector<FrameWindow> windows = job.windows;
    if (windows.empty() && !job.settings.rallies && job.leftOut.empty())
        windows.emplace_back();
    if (windows.empty()) {
        const TimeSpan range = wholeRange(job, info);
        const auto parts = keptParts(range, job.overlay.markers, job.settings.rallies, job.leftOut);
        windows = withExportErrors("Reader error: ", [&] {
            auto times = media::FrameTimes::open(job.recording(), job.trimStart);
            return windowsOf(parts, range, times);
        });
    }
    if (job.segment)
        windows = clipped(windows, job.segment->window);
    if (windows.empty())
        throw ExportError::exportFailed(job.settings.rallies
                                            ? QStringLiteral("there is no marker in what would be exported")
                                            : QStringLiteral("everything in the range is left out"),
                                        media::MediaFault::nothingInRange);
    return windows;
}

ExportTimeline exportTimeline(const ExportJob& job, const media::MediaInfo& info) {
    const media::Rational timeBase = info.video->timeBase;
    const auto windows = frameWindows(job, info);
    std::vector<ExportPart> parts;
    std::vector<TimeSpan> spans;
    for (const FrameWindow& window : windows) {
        const TrimRange range(job.trimStart, job.trimEnd, window);
        const double start =
            window.from ? static_cast<double>(*window.from) * timeBase.value() : job.trimStart;
        const double end = window.until ? static_cast<double>(*window.until) * timeBase.value()
                                        : endOfRange(job.trimEnd, info.duration);
        parts.push_back({range, window.from ? newTicksBefore(*window.from, job, windows, timeBase) : 0});
        spans.push_back({start, end});
    }
    TimeMap map(std::move(spans));
    const double frameRate = info.video->frameRate.value() > 0 ? info.video->frameRate.value() : 30;
    const auto expectedFrames = static_cast<std::int64_t>(map.length() * frameRate);
    return {std::move(parts), std::move(map), expectedFrames};
}

std::int64_t newTicksBefore(std::int64_t timestamp, const ExportJob& job,
                            const std::vector<FrameWindow>& windows, media::Rational timeBase) {
    std::int64_t ticks = 0;
    for (const FrameWindow& window : windows) {
        if (window.from.value_or(timestamp) > timestamp)
            break;
        const std::int64_t until = std::min(timestamp, window.until.value_or(timestamp));
        ticks += ticksInRange(until, job, timeBase) -
                 (window.from ? ticksInRange(*window.from, job, timeBase) : 0);
    }
    return ticks;
}

std::vector<media::Chapter> chaptersOf(const ExportJob& job, const TimeMap& map) {
    if (!job.settings.withChapters || job.segment)
        return {};
    return chaptersOf(job.overlay.markers, job.overlay.config, map);
}

}
