// pointloom-cli scoreboard: the scoreboard alone, on a transparent ground.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/ProjectInputs.h"
#include "model/ScoringEngine.h"
#include "persistence/DocumentFile.h"
#include "persistence/ProjectSession.h"
#include "render/PictureFile.h"
#include "render/ScoreboardImage.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class ScoreboardCommand final : public Command {
public:
    explicit ScoreboardCommand(CLI::App& subcommand);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    TemplateID templateFor(const ProjectFile& project, const QString& projectPath,
                           const SportScoreState& score) const;

    std::string m_project;
    double m_time = 0;
    std::string m_template;
    double m_scale = 1;
    std::string m_output;
};

ScoreboardCommand::ScoreboardCommand(CLI::App& subcommand)
    : Command(subcommand) {
    constexpr double smallestScale = 0.1;
    constexpr double largestScale = 16;
    addProjectArgument(app(), m_project);
    addTimeOption(app(), "--at", m_time, "The score of this time is shown")->capture_default_str();
    limitChoices(app().add_option("--template", m_template, "Draw with this template, not the project's"),
                 rawValues<TemplateID>(), templatePlaceholder);
    limitNumber(app()
                    .add_option("--scale", m_scale, "Pixels for each point of the template, 0.1 to 16")
                    ->type_name("FACTOR"),
                smallestScale, largestScale)
        ->capture_default_str();
    addOutputOption(app(), m_output, pngFile, "The picture to write");
    app().footer("Example:\n  pointloom-cli scoreboard final.plp --at 60 --scale 2 -o board.png");
}

ExitStatus ScoreboardCommand::run() {
    const QString projectPath = toPath(m_project);
    const QString outputPath = toPath(m_output);
    const ProjectFile project = ProjectFile::load(projectPath);
    MatchConfig config = requireMatch(project, projectPath);
    const SportScoreState score =
        ScoringEngine::resolveScoreAtTime(project.markers, m_time).value_or(initialScoreOf(project, config));
    const TemplateID id = templateFor(project, projectPath, score);

    Remarks remarks;
    settleLogo(config, projectPath, remarks);
    requireUsableOutput(outputPath, inputFiles(project, projectPath));
    say(remarks);

    const QImage logo = config.logoURL ? loadPictureFile(config.logoURL->toLocalFile()) : QImage();
    writePng(renderScoreboardImage(id, score, config, logo, m_scale), outputPath);
    return ExitStatus::done;
}

TemplateID ScoreboardCommand::templateFor(const ProjectFile& project, const QString& projectPath,
                                          const SportScoreState& score) const {
    const QString name = QFileInfo(projectPath).fileName();
    auto id = fromRawValue<TemplateID>(m_template);
    if (!id)
        id = project.selectedTemplate;
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

std::unique_ptr<Command> makeScoreboardCommand(CLI::App& root) {
    return std::make_unique<ScoreboardCommand>(
        *root.add_subcommand("scoreboard", "Draw the scoreboard alone, on a transparent ground"));
}

}
