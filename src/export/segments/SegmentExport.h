// Encodes the segments and the sound of a planned export, and joins them. Every call can be repeated.
#pragma once

#include "export/segments/SegmentPlan.h"
#include "media/SegmentJoin.h"

namespace pointloom {

/// The folder with the segments and the sound of a plan.
class SegmentFolder {
public:
    SegmentFolder(QString path, ExportFormat format)
        : m_path(std::move(path))
        , m_format(format) {}

    /// "match.parts" beside "match.json".
    static SegmentFolder beside(const QString& planPath, const SegmentPlan& plan);

    const QString& path() const { return m_path; }
    QString segment(int number) const; // counted from 1
    QString sound() const;

    /// Throws ExportError.
    void create() const;

private:
    QString m_path;
    ExportFormat m_format;
};

/// Encodes a segment, counted from 1. Empty when `path` held it already. The file appears when it is whole.
/// Throws ExportError, also when an input has changed since the plan was made, PlanError and ExportCancelled.
std::optional<ExportReport> encodeSegment(const SegmentPlan& plan, int number, const QString& path,
                                          const ExportControl& control = {});

/// The same for the sound of the whole range; false when it was there already. The plan has sound.
bool encodeSound(const SegmentPlan& plan, const QString& path, const ExportControl& control = {});

/// The same, where trouble with the sound is no error: there is no file then. Throws ExportError when the
/// disk is full, PlanError and ExportCancelled.
void encodeSoundIfPossible(const SegmentPlan& plan, const QString& path, const ExportControl& control = {});

/// Whether the file is that segment of this plan, complete.
bool isSegment(const SegmentPlan& plan, int number, const QString& path);

/// The request to join all segments of the folder, which may still be missing, and its sound.
media::JoinRequest joinRequest(const SegmentPlan& plan, const SegmentFolder& folder, const QString& output);

/// `writeCaptionsBeside` for the video that was joined.
void writeCaptionsFor(const SegmentPlan& plan, ExportReport& report, IfExists ifExists);

/// Joins all segments into one video: copies their packets, and encodes nothing but the sound when it is not
/// there yet. The times of all frames are those of an export that was not cut. The video appears when it is
/// whole. Throws ExportError: a segment is not finished, an input has changed, the
/// segments do not fit together; and ExportCancelled.
ExportReport joinSegments(const SegmentPlan& plan, const SegmentFolder& folder, const QString& output,
                          const ExportControl& control = {}, IfExists ifExists = IfExists::replace);

}
