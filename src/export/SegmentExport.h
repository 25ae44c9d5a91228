// Makes the parts of a planned export: each segment's pictures, and the sound. Every call can be repeated.
#pragma once

#include "export/SegmentPlan.h"

namespace pointloom {

/// Where the parts of a plan stand.
class SegmentFolder {
public:
    SegmentFolder(QString path, ExportFormat format)
        : m_path(std::move(path))
        , m_format(format) {}

    /// "match.parts" beside "match.json".
    static SegmentFolder beside(const QString& planPath, const SegmentPlan& plan);

    const QString& path() const { return m_path; }
    QString pictures(int segment) const; // counted from 1
    QString sound() const;

    /// Throws ExportError.
    void create() const;

private:
    QString m_path;
    ExportFormat m_format;
};

namespace SegmentExport {

/// Encodes a segment, counted from 1, as one of `segmentsAtOnce` that share the processors. Empty when `path`
/// held it already. The file appears when it is whole. Throws ExportError, also when an input has changed
/// since the plan was made, PlanError and ExportCancelled.
std::optional<ExportReport> encode(const SegmentPlan& plan, int number, const QString& path,
                                   const ExportManager::CancelQuery& isCancelled,
                                   const ExportManager::ProgressReport& onProgress, int segmentsAtOnce = 1);

/// The same for the sound of the whole range; false when it was there already. The plan has sound.
bool encodeSound(const SegmentPlan& plan, const QString& path, const ExportManager::CancelQuery& isCancelled);

/// The same, where trouble with the sound is no error: there is no file then. Throws ExportError when the
/// disk is full, PlanError and ExportCancelled.
void encodeSoundIfPossible(const SegmentPlan& plan, const QString& path,
                           const ExportManager::CancelQuery& isCancelled);

/// Whether the file is that segment of this plan, complete; and the same for its sound.
bool isSegment(const SegmentPlan& plan, int number, const QString& path);
bool isSound(const SegmentPlan& plan, const QString& path);

}

}
