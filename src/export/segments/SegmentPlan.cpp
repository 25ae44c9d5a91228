#include "export/segments/SegmentPlan.h"

#include "export/ExportSound.h"
#include "export/ExportSource.h"
#include "media/FrameTimes.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <cmath>
#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <ranges>

namespace pointloom {

namespace {

constexpr qint64 endLength = 1024 * 1024; // bytes hashed at each end: videos are too long to be read whole

[[noreturn]] void failFor(const QString& path, const QString& reason) {
    throw ExportError::exportFailed(path + QStringLiteral(": ") + reason);
}

QString hashOfEnds(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        failFor(path, QStringLiteral("cannot be read: ") + file.errorString());
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(file.read(endLength));
    if (file.size() > endLength) {
        file.seek(std::max(endLength, file.size() - endLength));
        hash.addData(file.read(endLength));
    }
    if (file.error() != QFileDevice::NoError)
        failFor(path, QStringLiteral("cannot be read: ") + file.errorString());
    return QString::fromLatin1(hash.result().toHex());
}

}

FileFingerprint FileFingerprint::of(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile()) // pipes and devices would never end
        failFor(path,
                info.exists() ? QStringLiteral("is not a file") : QStringLiteral("there is no such file"));
    return {info.absoluteFilePath(), info.size(), info.lastModified().toSecsSinceEpoch(), hashOfEnds(path)};
}

void FileFingerprint::requireUnchanged() const {
    const FileFingerprint now = of(path);
    if (now.size != size)
        failFor(path,
                QStringLiteral("the file has changed since the plan was made: it had %1 bytes, now it has %2")
                    .arg(size)
                    .arg(now.size));
    if (now.hash != hash)
        failFor(path, QStringLiteral("the file has changed since the plan was made: its content is another"));
    if (now.modified != modified)
        failFor(path,
                QStringLiteral("the file was written to after the plan was made; make a new plan, or copy "
                               "it with its time"));
}

namespace {

constexpr std::int64_t formVersion = 4;

[[noreturn]] void fail(const QString& path, const std::string& reason) {
    throw PlanError(path.toStdString() + ": " + reason);
}

QString checksumOf(SegmentPlan plan) {
    plan.checksum.clear();
    const QByteArray text = json::compact(json::encode(plan));
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

bool soundCanBeRead(const ExportJob& job, const ExportTimeline& timeline, media::Rational timeBase) {
    try {
        return ExportSound::open(job.recording(), timeline.parts, timeBase).has_value();
    } catch (const media::MediaError&) {
        return false; // as in an export that is not cut
    }
}

// Each segment begins with a costly key picture and tells the encoder nothing of what came before.
double shortestSegment(const media::VideoTrackInfo& track) {
    constexpr double shortest = 1; // second
    constexpr double frames = 8;
    return std::max(shortest, frames / track.frameRate.value());
}

// Times of key frames, in ticks and rising.
using Cuts = std::vector<std::int64_t>;

// Key frames that cut the new file into at most `count` segments of about the same length. Throws MediaError.
Cuts evenCuts(media::VideoReader& reader, const TimeMap& map, int count) {
    Cuts cuts;
    for (int i = 1; i < count; ++i) {
        reader.seekToKeyFrame(map.sourceTime(i * map.length() / count));
        if (const auto frame = reader.read())
            cuts.push_back(frame->timestamp());
    }
    return cuts;
}

// None when they would make fewer than `fewest` segments. Throws MediaError.
Cuts gridCuts(const media::Recording& recording, double duration, const TimeMap& map, double spacing,
              int fewest) {
    while (duration / spacing >= SegmentPlan::mostSegments)
        spacing *= 2;
    constexpr double ahead = 0.25; // seconds by which frames may be decoded before they are shown
    const double end = std::min(map.parts().back().end, duration);
    std::vector<double> times;
    for (double place = std::floor(map.parts().front().start / spacing) + 1; place * spacing < end; ++place)
        times.push_back(place * spacing - ahead);
    if (std::ssize(times) + 1 < fewest)
        return {};
    return media::FrameTimes::open(recording, 0).keyFramesFrom(times);
}

// The cuts without those that would make a segment too short.
Cuts farApart(const Cuts& cuts, const TimeMap& map, const media::VideoTrackInfo& track) {
    const double shortest = shortestSegment(track);
    Cuts kept;
    double last = 0;
    for (const std::int64_t cut : cuts) {
        const double time = map.newTime(static_cast<double>(cut) * track.timeBase.value());
        if (time < last + shortest || time > map.length() - shortest)
            continue;
        kept.push_back(cut);
        last = time;
    }
    return kept;
}

std::vector<PlannedSegment> segmentsBetween(const Cuts& cuts, const TimeMap& map, media::Rational timeBase) {
    const auto newTime = [&](std::int64_t cut) {
        return map.newTime(static_cast<double>(cut) * timeBase.value());
    };
    std::vector<PlannedSegment> segments(cuts.size() + 1);
    for (std::size_t i = 0; i < segments.size(); ++i) {
        PlannedSegment& segment = segments[i];
        if (i > 0)
            segment.from = cuts[i - 1];
        if (i < cuts.size())
            segment.until = cuts[i];
        segment.seconds = (segment.until ? newTime(*segment.until) : map.length()) -
                          (segment.from ? newTime(*segment.from) : 0);
    }
    return segments;
}

std::optional<std::vector<FileFingerprint>> furtherFilesOf(const media::Recording& recording) {
    if (!recording.isSplit())
        return std::nullopt;
    std::vector<FileFingerprint> further;
    for (const QString& path : recording.files() | std::views::drop(1))
        further.push_back(FileFingerprint::of(path));
    return further;
}

std::vector<FileFingerprint> picturesOf(const OverlayDescription& overlay) {
    std::vector<FileFingerprint> pictures;
    if (overlay.config.logoURL)
        pictures.push_back(FileFingerprint::of(overlay.config.logoURL->toLocalFile()));
    if (overlay.watermarkPath)
        pictures.push_back(FileFingerprint::of(*overlay.watermarkPath));
    return pictures;
}

// The job as every machine sees it.
ExportJob withAbsolutePaths(ExportJob job) {
    const auto settle = [](QString& path) { path = QFileInfo(path).absoluteFilePath(); };
    settle(job.videoPath);
    settle(job.outputPath);
    if (job.videoFiles)
        std::ranges::for_each(*job.videoFiles, settle);
    if (auto& watermark = job.overlay.watermarkPath)
        watermark = QFileInfo(*watermark).absoluteFilePath();
    job.projectPath.clear();
    job.ifExists = IfExists::replace;
    return job;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile()) // a pipe or a device would never end
        fail(path, QFileInfo::exists(path) ? "is not a file" : "no such file");
    constexpr qint64 largest = 64 * 1024 * 1024; // bytes
    if (file.size() > largest)
        fail(path, "is too large for a plan");
    if (!file.open(QIODevice::ReadOnly))
        fail(path, "cannot be read: " + file.errorString().toStdString());
    return file.readAll();
}

SegmentPlan parse(const QByteArray& bytes, const QString& path) {
    try {
        const json::Value value = json::parse(bytes);
        const auto version = json::decode<std::int64_t>(json::requiredMember(value, "version", {}));
        if (version != formVersion)
            fail(path, "the plan has the form " + std::to_string(version) + ", this program reads form " +
                           std::to_string(formVersion));
        return json::decode<SegmentPlan>(value);
    } catch (const json::DecodingError& error) {
        fail(path, error.what());
    }
}

void requireWindowsInOrder(const std::vector<FrameWindow>& windows, const QString& path) {
    constexpr std::int64_t farthest = std::int64_t{1} << 53; // ticks
    if (windows.empty())
        fail(path, "job.windows: expected at least one");
    std::int64_t last = -farthest;
    for (const FrameWindow& window : windows) {
        const std::int64_t from = window.from.value_or(last);
        const std::int64_t until = window.until.value_or(farthest);
        if (from < last || until <= from || until > farthest)
            fail(path, "job.windows: not in order");
        last = until;
    }
}

void requireWholeChain(const SegmentPlan& plan, const QString& path) {
    if (plan.segments.empty() || plan.count() > SegmentPlan::mostSegments)
        fail(path, "segments: expected 1 to " + std::to_string(SegmentPlan::mostSegments));
    if (plan.ticksPerSecond < 1 || plan.ticksPerSecond > std::numeric_limits<int>::max())
        fail(path, "ticksPerSecond: out of range");
    for (std::size_t i = 0; i < plan.segments.size(); ++i) {
        const PlannedSegment& segment = plan.segments[i];
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == plan.segments.size();
        const bool fits = segment.from.has_value() != isFirst && segment.until.has_value() != isLast &&
                          (isFirst || segment.from == plan.segments[i - 1].until) &&
                          (isFirst || isLast || *segment.from < *segment.until);
        if (!fits)
            fail(path, "segments[" + std::to_string(i) + "]: does not follow on the one before");
    }
}

// `cutsOf` chooses cuts for a map. Empty when they make fewer than `fewest` segments.
template <class CutsOf>
std::optional<SegmentPlan> makePlan(const ExportJob& job, const media::MediaInfo& info, int fewest,
                                    const QString& program, const CutsOf& cutsOf) {
    requireRange(job, info.duration);
    if (info.video->timeBase.numerator != 1)
        throw ExportError::exportFailed(
            QStringLiteral("the video's clock does not count in parts of a second"));
    SegmentPlan plan;
    plan.version = formVersion;
    plan.program = program;
    plan.job = withAbsolutePaths(job);
    plan.job.windows = frameWindows(job, info);
    const ExportTimeline timeline = exportTimeline(plan.job, info);
    plan.segments = withExportErrors("Reader error: ", [&] {
        const Cuts cuts = farApart(cutsOf(timeline.map), timeline.map, *info.video);
        return segmentsBetween(cuts, timeline.map, info.video->timeBase);
    });
    if (plan.count() < fewest)
        return std::nullopt;
    plan.video = FileFingerprint::of(job.videoPath);
    plan.furtherFiles = furtherFilesOf(job.recording());
    plan.pictures = picturesOf(job.overlay);
    plan.hasSound = soundCanBeRead(job, timeline, info.video->timeBase);
    plan.ticksPerSecond = info.video->timeBase.denominator;
    plan.checksum = checksumOf(plan);
    return plan;
}

}

SegmentPlan SegmentPlan::make(const ExportJob& job, int count, const QString& program) {
    media::VideoReader reader = openSource(job.recording());
    return *makePlan(job, reader.info(), 1, program,
                     [&](const TimeMap& map) { return evenCuts(reader, map, count); });
}

std::optional<SegmentPlan> SegmentPlan::onGrid(const ExportJob& job, const media::MediaInfo& info,
                                               double spacing, int fewest, const QString& program) {
    return makePlan(job, info, fewest, program, [&](const TimeMap& map) {
        return gridCuts(job.recording(), info.duration, map, spacing, fewest);
    });
}

SegmentPlan SegmentPlan::load(const QString& path, const QString& program) {
    return decode(contentOf(path), path, program);
}

SegmentPlan SegmentPlan::decode(const QByteArray& bytes, const QString& path, const QString& program) {
    SegmentPlan plan = parse(bytes, path);
    if (plan.program != program)
        fail(path, "the plan was made by version " + json::printable(plan.program.toStdString()) +
                       " of the program, this is version " + program.toStdString());
    if (plan.checksum != checksumOf(plan))
        fail(path, "the plan was changed after it was made");
    requireWindowsInOrder(plan.job.windows, path);
    requireWholeChain(plan, path);
    return plan;
}

void SegmentPlan::save(const QString& path) const {
    const QByteArray text = json::prettySorted(json::encode(*this));
    try {
        json::requireWithin({}, text);
        writeWhole(path, text);
    } catch (const json::DecodingError& error) {
        fail(path, error.what());
    } catch (const FileError& error) {
        fail(path, "cannot be written: " + error.reason().toStdString());
    }
}

FrameWindow SegmentPlan::window(int number) const {
    if (number < 1 || number > count())
        throw PlanError("there is no segment " + std::to_string(number) + ": the plan has 1 to " +
                        std::to_string(count()));
    const PlannedSegment& segment = segments[static_cast<std::size_t>(number) - 1];
    return {segment.from, segment.until};
}

std::int64_t SegmentPlan::offset(int number) const {
    const FrameWindow segment = window(number);
    const media::Rational timeBase{1, static_cast<int>(ticksPerSecond)};
    return segment.from ? newTicksBefore(*segment.from, job, job.windows, timeBase) : 0;
}

void SegmentPlan::requireUnchangedInputs() const {
    video.requireUnchanged();
    for (const FileFingerprint& file : furtherFiles.value_or(std::vector<FileFingerprint>()))
        file.requireUnchanged();
    for (const FileFingerprint& picture : pictures)
        picture.requireUnchanged();
}

}
