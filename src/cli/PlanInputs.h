// What the commands that work on a plan have in common.
#pragma once

#include "cli/Arguments.h"
#include "cli/Messages.h"
#include "cli/OutputPlace.h"
#include "export/segments/SegmentPlan.h"

namespace pointloom::cli {

CLI::Option* addPlanArgument(CLI::App& app, std::string& path);

/// The files that no part and no joined video may replace.
std::vector<InputFile> inputFiles(const SegmentPlan& plan, const QString& planPath);

/// Notes that a plan has fewer segments than were wished for.
void noteFewerSegments(const SegmentPlan& plan, int wished, Remarks& remarks);

}
