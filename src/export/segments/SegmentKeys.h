// Names what determines the pictures of a segment: equal keys, equal pictures.
#pragma once

#include "export/segments/SegmentPlan.h"

namespace pointloom {

/// A key for each segment, in order: of its frames of the source, the settings, the program with its
/// libraries, and the pixels of what is drawn, with the ticks at which they change. Reads the logo and the
/// watermark. Throws ExportError.
std::vector<QString> segmentKeys(const SegmentPlan& plan);

/// The same for the sound of the whole range.
QString soundKey(const SegmentPlan& plan);

}
