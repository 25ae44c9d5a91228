// One export in several stretches at the same time, on this machine.
#pragma once

#include "export/SegmentPlan.h"

namespace pointloom::ParallelExport {

/// Encodes all segments of the plan at the same time, each with its share of the processors, and joins them
/// at the plan's output; a plan of one segment is exported as a whole. Until then the parts are in a folder
/// beside the output, which takes as much room again. Otherwise as ExportManager::exportVideo.
ExportReport run(const SegmentPlan& plan, const ExportManager::CancelQuery& isCancelled,
                 const ExportManager::ProgressReport& onProgress, IfExists ifExists = IfExists::replace);

}
