// pointloom-cli new: writes a project document.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/OutputPlace.h"
#include "cli/TeamArguments.h"
#include "persistence/CSVParser.h"
#include "persistence/ProjectFile.h"
#include "render/OverlayPlacement.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

class NewCommand final : public Command {
public:
    explicit NewCommand(CLI::App& subcommand);
    ExitStatus run() override;

private:
    MatchConfig matchConfig(SportID sport) const;
    MatchFormat formatOf(const MatchConfig& config) const;
    std::int64_t numberOfSets(SportID sport) const;
    std::vector<Marker> markers(SportID sport) const;

    std::string m_output;
    bool m_mayReplace = false;
    std::string m_sport;
    std::string m_template;
    std::string m_team1;
    std::string m_team2;
    std::string m_flags1;
    std::string m_flags2;
    std::string m_format;
    std::optional<std::int64_t> m_sets;
    std::optional<std::string> m_video;
    std::optional<std::string> m_markers;
    std::optional<std::string> m_logo;
    std::optional<std::string> m_position;
    std::optional<double> m_scale;
};

NewCommand::NewCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addOutputOption(app(), m_output, projectFile, "The document to write");
    app().add_flag("--force", m_mayReplace, "Replace a document that stands there");
    limitChoices(app().add_option("--sport", m_sport, "What is played"), rawValues<SportID>())->required();
    limitChoices(
        app().add_option("--template", m_template, "The scoreboard; see \"pointloom-cli templates\""),
        rawValues<TemplateID>(), templatePlaceholder)
        ->required();
    app().add_option("--team1", m_team1, "Player, or a pair as A/B")->type_name("NAMES")->required();
    app().add_option("--team2", m_team2, "Player, or a pair as A/B")->type_name("NAMES")->required();
    app().add_option("--flags1", m_flags1, "Country codes of team 1, as FR or FR,GB")->type_name("CODES");
    app().add_option("--flags2", m_flags2, "Country codes of team 2")->type_name("CODES");
    limitChoices(app().add_option("--format", m_format, "Without it doubles when both teams are pairs"),
                 rawValues<MatchFormat>());
    app()
        .add_option("--sets", m_sets, "Best of so many sets; without it the sport's usual number")
        ->type_name("NUMBER");
    addFileOption(app(), "--video", m_video, videoFile, "The video of the match");
    addFileOption(app(), "--markers", m_markers, csvFile, "Score markers, tennis and padel only");
    addFileOption(app(), "--logo", m_logo, imageFile, "Logo of the club or tournament");
    app()
        .add_option("--position", m_position, "Centre of the scoreboard, fractions of the picture")
        ->type_name("X,Y");
    limitNumber(app().add_option("--scale", m_scale, "Size of the scoreboard, 0.3 to 5")->type_name("FACTOR"),
                OverlayPlacement::smallestScale, OverlayPlacement::largestScale);
    app().footer(
        "Example:\n  pointloom-cli new -o final.plp --sport tennis --template wimbledon --sets 3 \\\n"
        "    --team1 \"A. Dravnik\" --flags1 SI --team2 \"B. Moreau\" --flags2 FR \\\n"
        "    --video final.mp4 --markers final.csv");
}

QString absolutePath(const std::string& argument, const QString& option) {
    const QFileInfo info(toPath(argument));
    if (!info.isFile())
        throw CommandError(option + QStringLiteral(": no such file: ") + info.filePath());
    return info.absoluteFilePath();
}

void sayWhatDoesNotShow(const MatchConfig& config) {
    if (config.format == MatchFormat::singles && (config.team1.player2 || config.team2.player2))
        say({{QStringLiteral("a singles match: the scoreboard shows the first name of each team")}, {}});
}

ExitStatus NewCommand::run() {
    const SportID sport = *fromRawValue<SportID>(m_sport);
    const TemplateID templateID = *fromRawValue<TemplateID>(m_template);
    const auto fitting = filteredTemplates(sport);
    if (std::find(fitting.begin(), fitting.end(), templateID) == fitting.end())
        throw UsageError("--template: \"" + m_template + "\" is not made for " + m_sport +
                         "; see \"pointloom-cli templates --sport " + m_sport + '"');

    ProjectFile project;
    project.selectedSport = sport;
    project.selectedTemplate = templateID;
    project.matchConfig = matchConfig(sport);
    const QPointF position = m_position ? parsePosition(*m_position) : AppState::defaultScoreboardPosition;
    project.scoreboardPositionX = position.x();
    project.scoreboardPositionY = position.y();
    project.scoreboardUserScale = m_scale.value_or(1.0);
    project.watermarkCorner = WatermarkCorner::bottomRight;
    std::vector<InputFile> inputs;
    if (m_video) {
        project.videoPath = absolutePath(*m_video, QStringLiteral("--video"));
        inputs.push_back({*project.videoPath, QStringLiteral("the video")});
    }
    if (m_markers) {
        project.markers = markers(sport);
        inputs.push_back({toPath(*m_markers), QStringLiteral("the table of markers")});
    }

    if (const auto& logo = project.matchConfig->logoURL)
        inputs.push_back({logo->toLocalFile(), QStringLiteral("the logo")});

    const QString output = toPath(m_output);
    requireUsableOutput(output, inputs);
    if (QFileInfo::exists(output) && !m_mayReplace)
        throw CommandError(output + QStringLiteral(": already exists; --force replaces it"));
    project.save(output);
    sayWhatDoesNotShow(*project.matchConfig);
    return ExitStatus::done;
}

MatchConfig NewCommand::matchConfig(SportID sport) const {
    MatchConfig config;
    config.sport = sport;
    config.team1 = parseTeam(toText(m_team1), toText(m_flags1), 1);
    config.team2 = parseTeam(toText(m_team2), toText(m_flags2), 2);
    config.format = formatOf(config);
    config.numberOfSets = numberOfSets(sport);
    if (m_logo)
        config.logoURL = QUrl::fromLocalFile(absolutePath(*m_logo, QStringLiteral("--logo")));
    return config;
}

MatchFormat NewCommand::formatOf(const MatchConfig& config) const {
    const bool havePairs = config.team1.player2 && config.team2.player2;
    const auto format = fromRawValue<MatchFormat>(m_format);
    if (format == MatchFormat::doubles) {
        if (!supportsDoubles(config.sport))
            throw UsageError(QStringLiteral("--format: ") + displayName(config.sport) +
                             QStringLiteral(" has no doubles"));
        if (!havePairs)
            throw UsageError("--format: doubles need two names in each team, as --team1 A/B");
    }
    if (format)
        return *format;
    return havePairs && supportsDoubles(config.sport) ? MatchFormat::doubles : MatchFormat::singles;
}

std::int64_t NewCommand::numberOfSets(SportID sport) const {
    if (!m_sets)
        return defaultNumberOfSets(sport);
    const auto options = numberOfSetsOptions(sport);
    if (std::find(options.begin(), options.end(), *m_sets) != options.end())
        return *m_sets;
    QStringList offered;
    for (const std::int64_t option : options)
        offered += QString::number(option);
    throw UsageError(QStringLiteral("--sets: %1 is played over %2 sets, not %3")
                         .arg(displayName(sport), offered.join(QStringLiteral(" or ")))
                         .arg(*m_sets));
}

std::vector<Marker> NewCommand::markers(SportID sport) const {
    if (!usesTennisScoring(sport))
        throw UsageError(
            QStringLiteral("--markers: a table gives tennis scores only, which a scoreboard of ") +
            displayName(sport) + QStringLiteral(" does not show"));
    const QString path = toPath(*m_markers);
    auto parsed = CSVParser::readMarkersFile(path);
    if (parsed.empty())
        throw CommandError(QFileInfo(path).fileName() + QStringLiteral(": no valid markers"));
    return parsed;
}

}

std::unique_ptr<Command> makeNewCommand(CLI::App& root) {
    return std::make_unique<NewCommand>(*root.add_subcommand("new", "Write a new project document"));
}

}
