// Turns a document and the options of the command line into what is to be exported.
#pragma once

#include "cli/CommandError.h"
#include "cli/Messages.h"
#include "cli/OutputPlace.h"
#include "export/ExportJob.h"
#include "persistence/ProjectFile.h"

namespace pointloom::cli {

/// What the command line adds to a document, or puts in the place of what the document says.
struct ExportRequest {
    std::optional<QString> videoPath;
    std::optional<QString> watermarkPath;
    std::optional<WatermarkCorner> watermarkCorner;
    std::optional<double> trimStart; // seconds
    std::optional<double> trimEnd;
    ExportSettings settings; // besides the watermark's corner
    QString outputPath;
};

struct ProjectInputs {
    ExportJob job; // without a licence
    Remarks remarks;
};

/// Throws CommandError: no match, no template, no video, or an empty range; UsageError when the range is
/// empty because of `request`. A missing logo is left out with a warning, and so is a watermark that is
/// missing or cannot be read, whether the document or `request` names it.
ProjectInputs resolveInputs(ProjectFile project, const QString& projectPath, const ExportRequest& request);

/// Takes the software encoder where the one that was wished for does not work on this machine, and notes why.
/// Throws ExportError.
void settleEncoder(ProjectInputs& inputs);

/// The match of a document. Throws CommandError when it has none.
const MatchConfig& requireMatch(const ProjectFile& project, const QString& projectPath);

/// True when the template draws scores of that family; otherwise it would draw nothing.
bool drawsScore(TemplateID id, const SportScoreState& score);

/// Finds the logo of a match and puts its present place into `config`, or takes it out when it is missing.
void settleLogo(MatchConfig& config, const QString& projectPath, Remarks& remarks);

/// A fault of the export, with the name of its project.
CommandError faultOf(const ExportError& error, const QString& projectPath);

/// The document and the files that it names and that are found, whether it can be exported or not.
std::vector<InputFile> inputFiles(const ProjectFile& project, const QString& projectPath);
using pointloom::inputFiles;

}
