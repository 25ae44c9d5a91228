// From a document to its export.
#pragma once

#include "export/ExportJob.h"
#include "persistence/ProjectFile.h"

#include <optional>

namespace pointloom {

/// What exporting the document as it stands means: its video, its range, its whole overlay, without a
/// licence; settings other than the watermark's corner and the output are the defaults. Empty while match,
/// template or video are missing. Whether files exist is not looked at.
std::optional<ExportJob> exportJobFor(const ProjectFile& project);

/// The score before the first marker.
SportScoreState initialScoreOf(const ProjectFile& project, const MatchConfig& config);

}
