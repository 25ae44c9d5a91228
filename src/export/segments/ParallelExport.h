// One export in several segments at the same time, on this machine.
#pragma once

#include "export/segments/SegmentPlan.h"

namespace pointloom {

/// Encodes all segments of the plan at the same time, each with its share of the processors, and joins them
/// at the plan's output; a plan of one segment is exported as a whole. Until then the segments are in a
/// folder beside the output, which takes as much space again. Otherwise as ExportManager::exportVideo.
ExportReport exportInParallel(const SegmentPlan& plan, const ExportControl& control = {},
                              IfExists ifExists = IfExists::replace);

}
