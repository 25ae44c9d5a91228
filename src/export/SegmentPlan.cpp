#include "export/SegmentPlan.h"

#include "export/ExportSource.h"
#include "export/SegmentCuts.h"
#include "files/FileError.h"
#include "files/NewFile.h"
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace pointloom {

namespace {

constexpr std::int64_t formVersion = 2;

[[noreturn]] void fail(const QString& path, const std::string& reason) {
    throw PlanError(path.toStdString() + ": " + reason);
}

QString checksumOf(SegmentPlan plan) {
    plan.checksum.clear();
    const QByteArray text = json::compact(json::encode(plan));
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

bool soundCanBeRead(const ExportJob& job, const TrimRange& range) {
    try {
        return media::AudioReader::open(job.videoPath, range.start(), range.end()).has_value();
    } catch (const media::MediaError&) {
        return false; // as in an export that is not cut
    }
}

std::vector<PlannedSegment> segmentsBetween(const std::vector<std::int64_t>& cuts, double start, double end,
                                            double ticksPerSecond) {
    std::vector<PlannedSegment> segments(cuts.size() + 1);
    for (std::size_t i = 0; i < segments.size(); ++i) {
        PlannedSegment& segment = segments[i];
        if (i > 0)
            segment.from = cuts[i - 1];
        if (i < cuts.size())
            segment.until = cuts[i];
        const double from = segment.from ? static_cast<double>(*segment.from) / ticksPerSecond : start;
        segment.seconds = (segment.until ? static_cast<double>(*segment.until) / ticksPerSecond : end) - from;
    }
    return segments;
}

std::vector<FileFingerprint> picturesOf(const OverlayDescription& overlay) {
    std::vector<FileFingerprint> pictures;
    if (overlay.config.logoURL)
        pictures.push_back(FileFingerprint::of(overlay.config.logoURL->toLocalFile()));
    if (overlay.watermarkPath)
        pictures.push_back(FileFingerprint::of(*overlay.watermarkPath));
    return pictures;
}

void describe(SegmentPlan& plan, const ExportJob& job) {
    const OverlayDescription& overlay = job.overlay;
    plan.video = FileFingerprint::of(job.videoPath);
    plan.pictures = picturesOf(overlay);
    plan.output = QFileInfo(job.outputPath).absoluteFilePath();
    plan.format = job.format;
    plan.preset = job.preset;
    plan.quality = job.quality;
    plan.encoderPreset = QString::fromStdString(job.encoderPreset);
    plan.withChapters = job.withChapters;
    plan.trimStart = job.trimStart;
    plan.trimEnd = job.trimEnd;
    plan.markers = overlay.markers;
    plan.initialScore = overlay.initialScore;
    plan.matchConfig = overlay.config;
    plan.templateID = overlay.templateID;
    plan.scoreboardPositionX = overlay.scoreboardPosition.x();
    plan.scoreboardPositionY = overlay.scoreboardPosition.y();
    plan.scoreboardUserScale = overlay.scoreboardUserScale;
    if (overlay.watermarkPath)
        plan.watermarkPath = QFileInfo(*overlay.watermarkPath).absoluteFilePath();
    plan.watermarkCorner = overlay.watermarkCorner;
    plan.isLicensed = overlay.isLicensed;
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

}

SegmentPlan SegmentPlan::make(const ExportJob& job, int count, const QString& program) {
    media::VideoReader reader = ExportSource::open(job.videoPath);
    const media::MediaInfo info = reader.info();
    ExportSource::requireOverlaySize(*info.video);
    ExportSource::requireRange(job, info.duration);
    if (info.video->timeBase.numerator != 1)
        throw ExportError::exportFailed(
            QStringLiteral("the video's clock does not count in parts of a second"));
    const TrimRange range(job.trimStart, job.trimEnd);
    SegmentPlan plan;
    plan.version = formVersion;
    plan.program = program;
    describe(plan, job);
    plan.hasSound = soundCanBeRead(job, range);
    plan.ticksPerSecond = info.video->timeBase.denominator;
    try {
        const double end = ExportSource::endOfRange(range.end(), info.duration);
        plan.segments = segmentsBetween(segmentCuts(reader, range, count), range.start(), end,
                                        static_cast<double>(plan.ticksPerSecond));
    } catch (const media::MediaError& error) {
        throw ExportSource::failure("Reader error: ", error);
    }
    plan.checksum = checksumOf(plan);
    return plan;
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

ExportJob SegmentPlan::job() const {
    ExportJob job;
    job.videoPath = video.path;
    job.outputPath = output;
    job.format = format;
    job.preset = preset;
    job.quality = quality;
    job.encoderPreset = encoderPreset.toStdString();
    job.withChapters = withChapters;
    job.trimStart = trimStart;
    job.trimEnd = trimEnd;
    job.overlay.markers = markers;
    job.overlay.initialScore = initialScore;
    job.overlay.config = matchConfig;
    job.overlay.templateID = templateID;
    job.overlay.scoreboardPosition = {scoreboardPositionX, scoreboardPositionY};
    job.overlay.scoreboardUserScale = scoreboardUserScale;
    job.overlay.watermarkPath = watermarkPath;
    job.overlay.watermarkCorner = watermarkCorner;
    job.overlay.isLicensed = isLicensed;
    return job;
}

FrameWindow SegmentPlan::window(int number) const {
    if (number < 1 || number > count())
        throw PlanError("there is no segment " + std::to_string(number) + ": the plan has 1 to " +
                        std::to_string(count()));
    const PlannedSegment& segment = segments[static_cast<std::size_t>(number) - 1];
    return {segment.from, segment.until};
}

std::int64_t SegmentPlan::offset(int number) const {
    return TrimRange(trimStart, trimEnd, window(number)).windowStart({1, static_cast<int>(ticksPerSecond)});
}

void SegmentPlan::requireUnchangedInputs() const {
    video.requireUnchanged();
    for (const FileFingerprint& picture : pictures)
        picture.requireUnchanged();
}

}
