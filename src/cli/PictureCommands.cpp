// pointloom-cli still, scoreboard: one frame of the export, and the scoreboard alone, as pictures.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/ExportArguments.h"
#include "cli/LicenceCommand.h"
#include "cli/ProjectInputs.h"
#include "export/ExportManager.h"
#include "model/ScoringEngine.h"
#include "persistence/BoardFile.h"
#include "persistence/DocumentFile.h"
#include "persistence/ProjectSession.h"
#include "render/PictureFile.h"
#include "render/ScoreboardImage.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class StillCommand final : public Command {
public:
    explicit StillCommand(CLI::App& root);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    QString m_project;
    double m_time = 0;
    ExportRequest m_request;
};

StillCommand::StillCommand(CLI::App& root)
    : Command(root, "still", "Write one frame of the video, scoreboard included, as a picture") {
    addProjectArgument(app(), m_project);
    addTimeOption(app(), "--at", m_time, "Time of the frame, from the start of the video")->required();
    addOutputOption(app(), m_request.outputPath, pngFile, "The picture to write");
    addPaths(app(), "--video", m_request.videos, videoFile,
             "The source, in place of the project's video; several times for a split one");
    addSizeOptions(app(), m_request);
    app().footer("Example:\n  pointloom-cli still final.plp --at 12.5 -o frame.png");
}

ExitStatus StillCommand::run() {
    ProjectFile project = ProjectFile::load(m_project);
    project.trimStart = 0; // a still may lie outside of the range that is exported
    project.trimEnd.reset();
    ProjectInputs inputs = resolveInputs(project, m_project, m_request);
    inputs.job.overlay.isLicensed = isLicensed(*licenceOfThisMachine());
    requireUsableOutput(inputs.job.outputPath, inputFiles(inputs.job));
    try {
        writePng(ExportManager::renderStill(inputs.job, m_time), inputs.job.outputPath);
        say(inputs.remarks);
    } catch (const ExportError& error) {
        throw faultOf(error, m_project);
    }
    return ExitStatus::done;
}

class ScoreboardCommand final : public Command {
public:
    explicit ScoreboardCommand(CLI::App& root);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    TemplateID templateFor(const ProjectFile& project, const SportScoreState& score) const;

    QString m_project;
    double m_time = 0;
    std::optional<TemplateID> m_template;
    std::optional<QString> m_board;
    double m_scale = 1;
    QString m_output;
};

ScoreboardCommand::ScoreboardCommand(CLI::App& root)
    : Command(root, "scoreboard", "Draw the scoreboard alone, on a transparent ground") {
    constexpr double smallestScale = 0.1;
    constexpr double largestScale = 16;
    addProjectArgument(app(), m_project);
    addTimeOption(app(), "--at", m_time, "The score of this time is shown")->capture_default_str();
    addChoice(app(), "--template", m_template, RawValues<TemplateID>::table,
              "Draw with this template, not the project's", templatePlaceholder);
    addPath(app(), "--board", m_board, boardFile, "Draw with this board, not the project's");
    limitNumber(app()
                    .add_option("--scale", m_scale, "Pixels for each point of the template, 0.1 to 16")
                    ->type_name("FACTOR"),
                smallestScale, largestScale)
        ->capture_default_str();
    addOutputOption(app(), m_output, pngFile, "The picture to write");
    app().footer("Example:\n  pointloom-cli scoreboard final.plp --at 60 --scale 2 -o board.png");
}

ExitStatus ScoreboardCommand::run() {
    const ProjectFile project = ProjectFile::load(m_project);
    MatchConfig config = requireMatch(project, m_project);
    const SportScoreState score =
        ScoringEngine::resolveScoreAtTime(project.markers, m_time).value_or(initialScoreOf(project, config));
    if (m_template || m_board)
        config.board.reset();
    if (m_board) {
        if (m_template)
            throw UsageError("give either --template or --board");
        const BoardFile board = BoardFile::load(*m_board);
        m_template = board.base;
        config.board = board.board;
    }
    const TemplateID id = templateFor(project, score);

    Remarks remarks;
    settleLogo(config, locateFiles(project, m_project).logo, remarks);
    std::vector<InputFile> inputs = inputFiles(project, m_project);
    if (m_board)
        inputs.push_back({*m_board, QStringLiteral("the board")});
    requireUsableOutput(m_output, inputs);
    say(remarks);

    const QImage logo = config.logoURL ? loadPictureFile(config.logoURL->toLocalFile()) : QImage();
    writePng(renderScoreboardImage(id, score, config, logo, m_scale), m_output);
    return ExitStatus::done;
}

TemplateID ScoreboardCommand::templateFor(const ProjectFile& project, const SportScoreState& score) const {
    const QString name = QFileInfo(m_project).fileName();
    const auto id = m_template ? m_template : project.selectedTemplate;
    if (!id)
        throw CommandError(name +
                           QStringLiteral(": no scoreboard template is chosen; name one with --template"));
    if (!drawsScore(*id, score))
        throw CommandError(
            name + QStringLiteral(": the template \"%1\" draws another kind of score than the match has")
                       .arg(QString::fromUtf8(rawValue(*id))));
    return *id;
}

}

std::unique_ptr<Command> makeStillCommand(CLI::App& root) {
    return std::make_unique<StillCommand>(root);
}

std::unique_ptr<Command> makeScoreboardCommand(CLI::App& root) {
    return std::make_unique<ScoreboardCommand>(root);
}

}
