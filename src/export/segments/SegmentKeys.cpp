#include "export/segments/SegmentKeys.h"

#include "export/ExportSource.h"
#include "export/ExportTimeline.h"
#include "export/FrameOverlay.h"
#include "media/EncoderProbe.h"
#include "model/ScoringEngine.h"
#include "json/JsonDocument.h"

#include <cmath>
#include <QCryptographicHash>

namespace pointloom {

namespace {

using json::OrderedValue;

// A scoreboard and the first tick from which it can be drawn.
struct DrawnScore {
    std::int64_t from = 0;
    QByteArray digest;
};

QString keyOf(const OrderedValue& value) {
    return QString::fromLatin1(
        QCryptographicHash::hash(json::compact(value), QCryptographicHash::Sha256).toHex());
}

// The path is left out: a video that was moved is the same.
OrderedValue common(const SegmentPlan& plan) {
    OrderedValue value{{"program", plan.program.toStdString()},
                       {"libraries", media::encodingLibraries().toStdString()},
                       {"size", plan.video.size},
                       {"modified", plan.video.modified},
                       {"hash", plan.video.hash.toStdString()}};
    for (const FileFingerprint& file : plan.furtherFiles.value_or(std::vector<FileFingerprint>()))
        value["further"].push_back({file.size, file.modified, file.hash.toStdString()});
    return value;
}

// The settings without those that do not reach the pictures, or reach them by what is drawn.
OrderedValue settingsOf(const ExportJob& job) {
    ExportSettings settings = job.settings;
    settings.withChapters = true;
    settings.watermarkCorner = {};
    settings.rallies.reset();
    settings.captions.reset();
    OrderedValue value = json::encode(settings);
    value["lossless"] = job.lossless;
    return value;
}

// Where a window has no bound, that of the range takes its place.
OrderedValue boundsOf(const FrameWindow& window, const ExportJob& job) {
    OrderedValue value = json::encode(window);
    if (!window.from)
        value["start"] = job.trimStart;
    if (!window.until && job.trimEnd)
        value["end"] = *job.trimEnd;
    return value;
}

// The first tick at which the marker holds.
std::int64_t firstTick(double startTime, double tick) {
    auto first = static_cast<std::int64_t>(std::floor(startTime / tick)) - 1;
    while (static_cast<double>(first) * tick + ScoringEngine::frameTimeTolerance < startTime)
        ++first;
    return first;
}

class DrawnScores {
public:
    DrawnScores(const SegmentPlan& plan, const FrameOverlay& overlay)
        : m_job(plan.job)
        , m_overlay(overlay)
        , m_tick(media::Rational{1, static_cast<int>(plan.ticksPerSecond)}.value()) {
        constexpr double farthest = 1e9; // seconds
        std::vector<std::int64_t> ticks;
        for (const Marker& marker : m_job.overlay.markers) {
            if (std::abs(marker.startTime) < farthest) // false for what is not a number
                ticks.push_back(firstTick(marker.startTime, m_tick));
        }
        std::ranges::sort(ticks);
        ticks.erase(std::unique(ticks.begin(), ticks.end()), ticks.end());
        for (const std::int64_t tick : ticks)
            m_changes.push_back({tick, digestAt(static_cast<double>(tick) * m_tick)});
    }

    /// What is drawn in the window: at its start, and where it changes.
    OrderedValue in(const FrameWindow& window) const {
        const double start = window.from ? static_cast<double>(*window.from) * m_tick : m_job.trimStart;
        QByteArray shown = digestAt(start);
        OrderedValue list = OrderedValue::array({shown.toHex().toStdString()});
        for (const DrawnScore& change : m_changes) {
            const double time = static_cast<double>(change.from) * m_tick;
            const bool isInside = time > start && (!window.until || change.from < *window.until) &&
                                  (window.until || time <= m_job.trimEnd.value_or(time));
            if (!isInside || change.digest == shown)
                continue;
            shown = change.digest;
            list.push_back(OrderedValue::array({change.from, shown.toHex().toStdString()}));
        }
        return list;
    }

private:
    QByteArray digestAt(double time) const {
        return m_overlay.scoreboardDigest(*ScoreCursor(m_job.overlay).changedAt(time));
    }

    const ExportJob& m_job;
    const FrameOverlay& m_overlay;
    double m_tick; // seconds
    std::vector<DrawnScore> m_changes;
};

}

std::vector<QString> segmentKeys(const SegmentPlan& plan) {
    const media::MediaInfo info = openSource(plan.job.recording()).info();
    const ResolvedExport resolved = resolveExport(plan.job, info);
    const FrameOverlay overlay(plan.job, resolved.layout, resolved.encoder.format);
    const DrawnScores scores(plan, overlay);
    OrderedValue value = common(plan);
    value["settings"] = settingsOf(plan.job);
    value["marks"] = overlay.marksDigest().toHex().toStdString();
    std::vector<QString> keys;
    for (int number = 1; number <= plan.count(); ++number) {
        ExportJob job = plan.job;
        job.segment = ExportSegment{plan.window(number), {}};
        OrderedValue windows = OrderedValue::array();
        for (const FrameWindow& window : frameWindows(job, info))
            windows.push_back({{"window", boundsOf(window, job)}, {"scores", scores.in(window)}});
        value["windows"] = windows;
        keys.push_back(keyOf(value));
    }
    return keys;
}

QString soundKey(const SegmentPlan& plan) {
    OrderedValue value = common(plan);
    value["sound"] = OrderedValue::array();
    for (const FrameWindow& window : plan.job.windows)
        value["sound"].push_back(boundsOf(window, plan.job));
    return keyOf(value);
}

}
