// pointloom-cli still: one frame of the export as a picture.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/LicenceOfThisMachine.h"
#include "cli/Messages.h"
#include "cli/ProjectInputs.h"
#include "export/ExportManager.h"
#include "persistence/DocumentFile.h"

namespace pointloom::cli {

namespace {

class StillCommand final : public Command {
public:
    explicit StillCommand(CLI::App& subcommand);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    std::string m_project;
    double m_time = 0;
    std::string m_output;
    std::optional<std::string> m_video;
};

StillCommand::StillCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addProjectArgument(app(), m_project);
    addTimeOption(app(), "--at", m_time, "Time of the frame, from the start of the video")->required();
    addOutputOption(app(), m_output, pngFile, "The picture to write");
    addFileOption(app(), "--video", m_video, videoFile, "The source, in place of the project's video");
    app().footer("Example:\n  pointloom-cli still final.plp --at 12.5 -o frame.png");
}

ExitStatus StillCommand::run() {
    const QString projectPath = toPath(m_project);
    ProjectFile project = ProjectFile::load(projectPath);
    project.trimStart = 0; // a still may lie outside of the range that is exported
    project.trimEnd.reset();
    ExportRequest request;
    request.videoPath = toPath(m_video);
    request.outputPath = toPath(m_output);
    ProjectInputs inputs = resolveInputs(project, projectPath, request);
    inputs.job.overlay.isLicensed = isLicensed(*licenceOfThisMachine());
    requireUsableOutput(inputs.job.outputPath, inputFiles(inputs.job));
    try {
        writePng(ExportManager::renderStill(inputs.job, m_time), inputs.job.outputPath);
        say(inputs.remarks);
    } catch (const ExportError& error) {
        throw faultOf(error, projectPath);
    }
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeStillCommand(CLI::App& root) {
    return std::make_unique<StillCommand>(
        *root.add_subcommand("still", "Write one frame of the video, scoreboard included, as a picture"));
}

}
