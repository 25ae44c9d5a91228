#include "export/segments/SegmentExport.h"

#include "export/Captions.h"
#include "export/ExportManager.h"
#include "export/ExportSound.h"
#include "export/ExportSource.h"
#include "media/MediaWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace pointloom {

namespace {

// Kept in each file, so that none of another plan is taken for it.
QString commentOf(const SegmentPlan& plan, const QString& content) {
    return QStringLiteral("Pointloom %1 of plan %2").arg(content, plan.checksum);
}

QString segmentComment(const SegmentPlan& plan, int number) {
    return commentOf(plan, QStringLiteral("segment %1").arg(number));
}

QString soundComment(const SegmentPlan& plan) {
    return commentOf(plan, QStringLiteral("sound"));
}

bool holds(const QString& path, const QString& comment) {
    try {
        return QFileInfo(path).isFile() && media::readComment(path) == comment;
    } catch (const media::MediaError&) {
        return false;
    }
}

void requireAllSegments(const SegmentPlan& plan, const SegmentFolder& folder) {
    QStringList missing;
    for (int number = 1; number <= plan.count(); ++number) {
        if (!isSegment(plan, number, folder.segment(number)))
            missing += QString::number(number);
    }
    constexpr qsizetype mostNamed = 20;
    if (missing.size() > mostNamed)
        missing = missing.first(mostNamed) + QStringList{QStringLiteral("...")};
    if (!missing.isEmpty()) {
        throw ExportError::exportFailed(
            QStringLiteral("not all %1 segments are finished in %2, these are missing: %3")
                .arg(plan.count())
                .arg(folder.path(), missing.join(QStringLiteral(", "))));
    }
}

}

SegmentFolder SegmentFolder::beside(const QString& planPath, const SegmentPlan& plan) {
    const QFileInfo file(planPath);
    return {file.absolutePath() + u'/' + file.completeBaseName() + QStringLiteral(".parts"),
            plan.job.settings.format};
}

QString SegmentFolder::segment(int number) const {
    return QDir(m_path).filePath(
        QStringLiteral("%1.%2").arg(number, 4, 10, QLatin1Char('0')).arg(fileExtension(m_format)));
}

QString SegmentFolder::sound() const {
    return QDir(m_path).filePath(QStringLiteral("audio.m4a"));
}

void SegmentFolder::create() const {
    if (!QDir().mkpath(m_path))
        throw ExportError::exportFailed(m_path + QStringLiteral(": the folder cannot be made"));
}

std::optional<ExportReport> encodeSegment(const SegmentPlan& plan, int number, const QString& path,
                                          const ExportControl& control) {
    ExportJob job = plan.job;
    job.segment = ExportSegment{plan.window(number), segmentComment(plan, number)};
    plan.requireUnchangedInputs();
    if (isSegment(plan, number, path))
        return std::nullopt;
    job.outputPath = path;
    return ExportManager::exportVideo(job, control);
}

bool encodeSound(const SegmentPlan& plan, const QString& path, const ExportControl& control) {
    plan.requireUnchangedInputs();
    if (holds(path, soundComment(plan)))
        return false;
    requireOtherFile(plan.job, path);
    return withExportErrors("the sound: ", [&] {
        NewFile file(path);
        const media::MediaInfo info = openSource(plan.job.recording()).info();
        auto reader = ExportSound::open(plan.job.recording(), exportTimeline(plan.job, info).parts,
                                        info.video->timeBase);
        if (!reader)
            throw ExportError::exportFailed(QStringLiteral("the sound of the video can no longer be read"));
        media::SoundWriter writer(file.temporaryPath(), soundComment(plan));
        while (const auto run = reader->read()) {
            control.throwIfCancelled();
            writer.write(*run);
        }
        writer.finish();
        file.keep();
        return true;
    });
}

void encodeSoundIfPossible(const SegmentPlan& plan, const QString& path, const ExportControl& control) {
    try {
        encodeSound(plan, path, control);
    } catch (const ExportError& error) {
        if (error.fault() == media::MediaFault::diskFull)
            throw; // the frames will not fit either
    }
}

bool isSegment(const SegmentPlan& plan, int number, const QString& path) {
    return holds(path, segmentComment(plan, number));
}

media::JoinRequest joinRequest(const SegmentPlan& plan, const SegmentFolder& folder, const QString& output) {
    const media::MediaInfo info = openSource(plan.job.recording()).info();
    media::JoinRequest request{
        .outputPath = output,
        .isQuickTime = plan.job.settings.format == ExportFormat::prores,
        .timeBase = {1, static_cast<int>(plan.ticksPerSecond)},
        .segments = {},
        .soundPath = plan.hasSound && holds(folder.sound(), soundComment(plan))
                         ? std::optional(folder.sound())
                         : std::nullopt,
        .texts = textsOf(plan.job, exportTimeline(plan.job, info).map),
    };
    for (int number = 1; number <= plan.count(); ++number)
        request.segments.push_back({folder.segment(number), plan.offset(number)});
    return request;
}

void writeCaptionsFor(const SegmentPlan& plan, ExportReport& report, IfExists ifExists) {
    if (endingOfCaptions(plan.job).isEmpty())
        return; // without opening the source
    try {
        const media::MediaInfo info = openSource(plan.job.recording()).info();
        writeCaptionsBeside(report, plan.job, exportTimeline(plan.job, info).map, ifExists);
    } catch (const ExportError& error) {
        report.captionsFault = QString::fromUtf8(error.what());
    }
}

ExportReport joinSegments(const SegmentPlan& plan, const SegmentFolder& folder, const QString& output,
                          const ExportControl& control, IfExists ifExists) {
    requireOtherFile(plan.job, output);
    plan.requireUnchangedInputs();
    requireAllSegments(plan, folder);
    if (plan.hasSound)
        encodeSoundIfPossible(plan, folder.sound(), control);
    ProgressMeter progress(control);
    return withExportErrors("", [&] {
        NewFile file(output, ifExists);
        media::joinSegments(joinRequest(plan, folder, file.temporaryPath()),
                            [&](std::int64_t copied, std::int64_t all) {
                                if (all > 0)
                                    progress.update({static_cast<double>(copied) / static_cast<double>(all)});
                                control.throwIfCancelled();
                            });
        ExportReport report{.damage = {}, .outputPath = file.keep(endingOfCaptions(plan.job))};
        writeCaptionsFor(plan, report, ifExists);
        progress.finish();
        return report;
    });
}

}
