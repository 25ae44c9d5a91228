// A document and the options of the command line as one export: the files that it reads, the range, the
// faults.
#pragma once

#include "cli/Messages.h"
#include "export/segments/SegmentPlan.h"
#include "persistence/ProjectSession.h"

namespace pointloom::cli {

/// Additions of the command line to a document, and replacements for what the document says.
struct ExportRequest {
    std::vector<QString> videos; // files of one recording in their order; none: the document's
    std::optional<QString> watermarkPath;
    std::optional<WatermarkCorner> watermarkCorner;
    std::optional<double> trimStart; // seconds
    std::optional<double> trimEnd;
    bool keepsWholeRange = false; // whatever the project leaves out
    std::vector<TimeSpan> leftOut;
    ExportSettings settings; // the watermark's corner apart
    QString outputPath;
};

struct ProjectInputs {
    ExportJob job; // without a licence
    Remarks remarks;
};

/// Throws CommandError: no match, no template, no video, or an empty range; UsageError when the range is
/// empty because of `request`, or the original size is to be filled. A missing logo is left out with a
/// warning, and so is a watermark that is missing or cannot be read, whether the document or `request` names
/// it.
ProjectInputs resolveInputs(ProjectFile project, const QString& projectPath, const ExportRequest& request);

/// Facts about the job's video, of which its range is one. Throws CommandError and ExportError.
media::MediaInfo videoInfo(const ExportJob& job);

/// Takes the software encoder where the requested one does not work on this machine, and notes why. Throws
/// ExportError.
void settleEncoder(ProjectInputs& inputs);

/// Cuts the export into `count` segments, or into fewer and notes it. Throws ExportError.
SegmentPlan makePlan(ProjectInputs& inputs, int count);

/// Throws CommandError when one of the files does not exist or is named twice.
void requireVideos(const std::vector<QString>& videos);

/// What the further files of a split recording have that differs from the first, a sentence for each file.
QStringList differencesIn(const media::Recording& recording);

/// The match of a document. Throws CommandError when it has none.
const MatchConfig& requireMatch(const ProjectFile& project, const QString& projectPath);

/// True when the template draws scores of that family; otherwise it would draw nothing.
bool drawsScore(TemplateID id, const SportScoreState& score);

/// Puts the present place of the match's logo into `config`, or takes the logo out when it is missing.
void settleLogo(MatchConfig& config, const std::optional<NamedFile>& logo, Remarks& remarks);

/// An error of the export, with the name of its project.
CommandError faultOf(const ExportError& error, const QString& projectPath);

/// The document and the files that it names and that are found, whether it can be exported or not.
std::vector<InputFile> inputFiles(const ProjectFile& project, const QString& projectPath);
using pointloom::inputFiles;

/// Throws CommandError unless `path` is an empty folder or free for a new one.
void requireUsableFolder(const QString& path);

/// Throws CommandError unless a file can be written to `path`: in a folder that exists, over no pipe or
/// device, and over none of the inputs, by whatever name.
void requireUsableOutput(const QString& path, const std::vector<InputFile>& inputs);

}
