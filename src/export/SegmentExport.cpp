#include "export/SegmentExport.h"

#include "export/ExportSource.h"
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "media/MediaWriter.h"
#include "media/SegmentJoin.h"

#include <QDir>
#include <QFileInfo>

namespace pointloom {

namespace {

// Stands in each part, so that none of another plan is taken for it.
QString commentOf(const SegmentPlan& plan, const QString& part) {
    return QStringLiteral("Pointloom %1 of plan %2").arg(part, plan.checksum);
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

}

SegmentFolder SegmentFolder::beside(const QString& planPath, const SegmentPlan& plan) {
    const QFileInfo file(planPath);
    return {file.absolutePath() + u'/' + file.completeBaseName() + QStringLiteral(".parts"), plan.format};
}

QString SegmentFolder::pictures(int segment) const {
    return QDir(m_path).filePath(
        QStringLiteral("%1.%2").arg(segment, 4, 10, QLatin1Char('0')).arg(fileExtension(m_format)));
}

QString SegmentFolder::sound() const {
    return QDir(m_path).filePath(QStringLiteral("audio.m4a"));
}

void SegmentFolder::create() const {
    if (!QDir().mkpath(m_path))
        throw ExportError::exportFailed(m_path + QStringLiteral(": the folder cannot be made"));
}

std::optional<ExportReport> SegmentExport::encode(const SegmentPlan& plan, int number, const QString& path,
                                                  const ExportManager::CancelQuery& isCancelled,
                                                  const ExportManager::ProgressReport& onProgress,
                                                  int segmentsAtOnce) {
    ExportJob job = plan.job();
    job.exportsAtOnce = segmentsAtOnce;
    job.segment = SegmentWindow{plan.window(number), segmentComment(plan, number)};
    plan.requireUnchangedInputs();
    if (isSegment(plan, number, path))
        return std::nullopt;
    job.outputPath = path;
    return ExportManager::exportVideo(job, isCancelled, onProgress);
}

bool SegmentExport::encodeSound(const SegmentPlan& plan, const QString& path,
                                const ExportManager::CancelQuery& isCancelled) {
    plan.requireUnchangedInputs();
    if (isSound(plan, path))
        return false;
    ExportSource::requireOtherFile(plan.job(), path);
    try {
        NewFile file(path);
        const TrimRange range(plan.trimStart, plan.trimEnd);
        auto reader = media::AudioReader::open(plan.video.path, range.start(), range.end());
        if (!reader)
            throw ExportError::exportFailed(QStringLiteral("the sound of the video can no longer be read"));
        media::SoundWriter writer(file.temporaryPath(), soundComment(plan));
        while (const auto run = reader->read()) {
            throwIfCancelled(isCancelled);
            writer.write(*run);
        }
        writer.finish();
        file.keep();
        return true;
    } catch (const media::MediaError& error) {
        throw ExportSource::failure("the sound: ", error);
    } catch (const FileError& error) {
        throw ExportSource::failure("the sound: ", error);
    }
}

void SegmentExport::encodeSoundIfPossible(const SegmentPlan& plan, const QString& path,
                                          const ExportManager::CancelQuery& isCancelled) {
    try {
        encodeSound(plan, path, isCancelled);
    } catch (const ExportError& error) {
        if (error.fault() == media::MediaFault::diskFull)
            throw; // the pictures will not fit either
    }
}

bool SegmentExport::isSegment(const SegmentPlan& plan, int number, const QString& path) {
    return holds(path, segmentComment(plan, number));
}

bool SegmentExport::isSound(const SegmentPlan& plan, const QString& path) {
    return holds(path, soundComment(plan));
}

}
