#include "export/SegmentJoin.h"

#include "export/Chapters.h"
#include "export/ExportSource.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"
#include "media/SegmentJoin.h"

#include <algorithm>
#include <QStringList>

namespace pointloom {

namespace {

void requireAllSegments(const SegmentPlan& plan, const SegmentFolder& parts) {
    QStringList missing;
    for (int number = 1; number <= plan.count(); ++number) {
        if (!SegmentExport::isSegment(plan, number, parts.pictures(number)))
            missing += QString::number(number);
    }
    constexpr qsizetype mostNamed = 20;
    if (missing.size() > mostNamed)
        missing = missing.first(mostNamed) + QStringList{QStringLiteral("...")};
    if (!missing.isEmpty()) {
        throw ExportError::exportFailed(
            QStringLiteral("not all %1 segments are finished in %2, these are missing: %3")
                .arg(plan.count())
                .arg(parts.path(), missing.join(QStringLiteral(", "))));
    }
}

std::vector<media::Chapter> chaptersFor(const SegmentPlan& plan) {
    if (!plan.withChapters)
        return {};
    const double end = ExportSource::endOfRange(plan.trimEnd, media::readMediaInfo(plan.video.path).duration);
    return chaptersOf(plan.markers, plan.matchConfig, plan.trimStart, end);
}

media::JoinRequest requestFor(const SegmentPlan& plan, const SegmentFolder& parts, const QString& output) {
    media::JoinRequest request{
        .outputPath = output,
        .isQuickTime = plan.format == ExportFormat::prores,
        .timeBase = {1, static_cast<int>(plan.ticksPerSecond)},
        .pictures = {},
        .soundPath = plan.hasSound && SegmentExport::isSound(plan, parts.sound())
                         ? std::optional(parts.sound())
                         : std::nullopt,
        .chapters = chaptersFor(plan),
    };
    for (int number = 1; number <= plan.count(); ++number)
        request.pictures.push_back({parts.pictures(number), plan.offset(number)});
    return request;
}

// Reports each whole per cent once, and stops when that is wished.
class JoinMeter {
public:
    JoinMeter(const ExportManager::CancelQuery& isCancelled, const ExportManager::ProgressReport& report)
        : m_isCancelled(isCancelled)
        , m_report(report) {}

    bool operator()(std::int64_t done, std::int64_t all) {
        constexpr double mostBeforeTheEnd = 0.95; // the index takes time too
        const double fraction = all > 0 ? static_cast<double>(done) / static_cast<double>(all) : 0;
        const int percent = static_cast<int>(fraction * 100);
        if (m_report && percent != m_percent)
            m_report({std::min(fraction, mostBeforeTheEnd)});
        m_percent = percent;
        return !(m_isCancelled && m_isCancelled());
    }

private:
    const ExportManager::CancelQuery& m_isCancelled;
    const ExportManager::ProgressReport& m_report;
    int m_percent = -1;
};

}

QString SegmentJoin::join(const SegmentPlan& plan, const SegmentFolder& parts, const QString& output,
                          const ExportManager::CancelQuery& isCancelled,
                          const ExportManager::ProgressReport& onProgress, IfExists ifExists) {
    ExportSource::requireOtherFile(plan.job(), output);
    plan.requireUnchangedInputs();
    requireAllSegments(plan, parts);
    if (plan.hasSound)
        SegmentExport::encodeSoundIfPossible(plan, parts.sound(), isCancelled);
    try {
        NewFile file(output, ifExists);
        if (!media::joinSegments(requestFor(plan, parts, file.temporaryPath()),
                                 JoinMeter(isCancelled, onProgress)))
            throw ExportCancelled();
        const QString path = file.keep();
        if (onProgress)
            onProgress({1.0});
        return path;
    } catch (const media::MediaError& error) {
        throw ExportSource::failure("", error);
    } catch (const FileError& error) {
        throw ExportSource::failure("", error);
    }
}

}
