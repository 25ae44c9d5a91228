// pointloom-cli captions: the score as text, to go beside the video.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/ExportArguments.h"
#include "export/Captions.h"
#include "export/ExportTimeline.h"
#include "persistence/DocumentFile.h"
#include "json/JsonDocument.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class CaptionsCommand final : public Command {
public:
    explicit CaptionsCommand(CLI::App& root);
    ExitStatus run() override;

private:
    QByteArray content(const QString& extension);
    std::vector<Caption> captions(const ProjectFile& project);

    QString m_project;
    ExportRequest m_request;
};

CaptionsCommand::CaptionsCommand(CLI::App& root)
    : Command(root, "captions", "Write the score as captions, or the markers as a table") {
    addProjectArgument(app(), m_project);
    addPath(app(), "-o,--output", m_request.outputPath, captionsFile,
            "What to write: captions as SubRip (.srt) or WebVTT (.vtt), markers as .csv or .json")
        ->required();
    addRangeOptions(app(), m_request);
    app().footer("Example:\n  pointloom-cli captions final.plp -o final.srt");
}

std::vector<Caption> CaptionsCommand::captions(const ProjectFile& project) {
    const ProjectInputs inputs = resolveInputs(project, m_project, m_request);
    const ExportTimeline timeline = exportTimeline(inputs.job, videoInfo(inputs.job));
    return captionsOf(inputs.job.overlay, timeline.map);
}

QByteArray CaptionsCommand::content(const QString& extension) {
    const ProjectFile project = ProjectFile::load(m_project);
    requireUsableOutput(m_request.outputPath, inputFiles(project, m_project));
    if (extension == u"srt")
        return asSubRip(captions(project));
    if (extension == u"vtt")
        return asWebVtt(captions(project));
    if (extension == u"csv")
        return asTable(project.markers);
    return json::prettySorted(json::encode(project.markers));
}

ExitStatus CaptionsCommand::run() {
    const QString extension = QFileInfo(m_request.outputPath).suffix().toLower();
    if (!toText(std::string(captionsFile.extensions)).split(u' ').contains(extension))
        throw UsageError("--output: the name must end in .srt, .vtt, .csv or .json");
    try {
        writeDocument(m_request.outputPath, content(extension));
    } catch (const ExportError& error) {
        throw faultOf(error, m_project);
    }
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeCaptionsCommand(CLI::App& root) {
    return std::make_unique<CaptionsCommand>(root);
}

}
