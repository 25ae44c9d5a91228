// Joins the parts of a planned export into the one video.
#pragma once

#include "export/SegmentExport.h"

namespace pointloom::SegmentJoin {

/// Copies the parts' packets, nothing is encoded but the sound when its part is not there yet. The times of
/// all pictures are those of an export that was not cut. Returns the path of the video, which appears when it
/// is whole. Throws ExportError: a segment is not finished, an input has changed, the parts do not fit
/// together; and ExportCancelled.
QString join(const SegmentPlan& plan, const SegmentFolder& parts, const QString& output,
             const ExportManager::CancelQuery& isCancelled, const ExportManager::ProgressReport& onProgress,
             IfExists ifExists = IfExists::replace);

}
