// pointloom-cli new: writes a project document.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/ProjectInputs.h"
#include "persistence/CSVParser.h"
#include "render/OverlayPlacement.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

class NewCommand final : public Command {
public:
    explicit NewCommand(CLI::App& root);
    ExitStatus run() override;

private:
    MatchConfig matchConfig() const;
    MatchFormat formatOf(const MatchConfig& config) const;
    std::int64_t numberOfSets() const;
    std::vector<Marker> markers() const;

    QString m_output;
    bool m_mayReplace = false;
    std::optional<SportID> m_sport; // required, as the template is
    std::optional<TemplateID> m_template;
    std::string m_team1;
    std::string m_team2;
    std::string m_flags1;
    std::string m_flags2;
    std::optional<MatchFormat> m_format;
    std::optional<std::int64_t> m_sets;
    std::optional<QString> m_video;
    std::optional<QString> m_markers;
    std::optional<QString> m_logo;
    std::optional<std::string> m_position;
    std::optional<double> m_scale;
};

NewCommand::NewCommand(CLI::App& root)
    : Command(root, "new", "Write a new project document") {
    addOutputOption(app(), m_output, projectFile, "The document to write");
    app().add_flag("--force", m_mayReplace, "Replace a document that stands there");
    addChoice(app(), "--sport", m_sport, RawValues<SportID>::table, "What is played")->required();
    addChoice(app(), "--template", m_template, RawValues<TemplateID>::table,
              "The scoreboard; see \"pointloom-cli templates\"", templatePlaceholder)
        ->required();
    app().add_option("--team1", m_team1, "Player, or a pair as A/B")->type_name("NAMES")->required();
    app().add_option("--team2", m_team2, "Player, or a pair as A/B")->type_name("NAMES")->required();
    app().add_option("--flags1", m_flags1, "Country codes of team 1, as FR or FR,GB")->type_name("CODES");
    app().add_option("--flags2", m_flags2, "Country codes of team 2")->type_name("CODES");
    addChoice(app(), "--format", m_format, RawValues<MatchFormat>::table,
              "Without it doubles when both teams are pairs");
    app()
        .add_option("--sets", m_sets, "Best of so many sets; without it the sport's usual number")
        ->type_name("NUMBER");
    addPath(app(), "--video", m_video, videoFile, "The video of the match");
    addPath(app(), "--markers", m_markers, csvFile, "Score markers, tennis and padel only");
    addPath(app(), "--logo", m_logo, imageFile, "Logo of the club or tournament");
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

QString absolutePath(const QString& path, const QString& option) {
    const QFileInfo info(path);
    if (!info.isFile())
        throw CommandError(option + QStringLiteral(": no such file: ") + path);
    return info.absoluteFilePath();
}

void sayWhatDoesNotShow(const MatchConfig& config) {
    if (config.format == MatchFormat::singles && (config.team1.player2 || config.team2.player2))
        sayNote(QStringLiteral("a singles match: the scoreboard shows the first name of each team"));
}

ExitStatus NewCommand::run() {
    const auto fitting = filteredTemplates(*m_sport);
    if (std::find(fitting.begin(), fitting.end(), *m_template) == fitting.end()) {
        const std::string sport(rawValue(*m_sport));
        throw UsageError("--template: \"" + std::string(rawValue(*m_template)) + "\" is not made for " +
                         sport + "; see \"pointloom-cli templates --sport " + sport + '"');
    }

    ProjectFile project;
    project.selectedSport = m_sport;
    project.selectedTemplate = m_template;
    project.matchConfig = matchConfig();
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
        project.markers = markers();
        inputs.push_back({*m_markers, QStringLiteral("the table of markers")});
    }
    if (const auto& logo = project.matchConfig->logoURL)
        inputs.push_back({logo->toLocalFile(), QStringLiteral("the logo")});

    requireUsableOutput(m_output, inputs);
    if (QFileInfo::exists(m_output) && !m_mayReplace)
        throw CommandError(m_output + QStringLiteral(": already exists; --force replaces it"));
    project.save(m_output);
    sayWhatDoesNotShow(*project.matchConfig);
    return ExitStatus::done;
}

MatchConfig NewCommand::matchConfig() const {
    MatchConfig config;
    config.sport = *m_sport;
    config.team1 = parseTeam(toText(m_team1), toText(m_flags1), 1);
    config.team2 = parseTeam(toText(m_team2), toText(m_flags2), 2);
    config.format = formatOf(config);
    config.numberOfSets = numberOfSets();
    if (m_logo)
        config.logoURL = QUrl::fromLocalFile(absolutePath(*m_logo, QStringLiteral("--logo")));
    return config;
}

MatchFormat NewCommand::formatOf(const MatchConfig& config) const {
    const bool havePairs = config.team1.player2 && config.team2.player2;
    if (m_format == MatchFormat::doubles) {
        if (!supportsDoubles(config.sport))
            throw UsageError(QStringLiteral("--format: ") + displayName(config.sport) +
                             QStringLiteral(" has no doubles"));
        if (!havePairs)
            throw UsageError("--format: doubles need two names in each team, as --team1 A/B");
    }
    if (m_format)
        return *m_format;
    return havePairs && supportsDoubles(config.sport) ? MatchFormat::doubles : MatchFormat::singles;
}

std::int64_t NewCommand::numberOfSets() const {
    if (!m_sets)
        return defaultNumberOfSets(*m_sport);
    const auto options = numberOfSetsOptions(*m_sport);
    if (std::find(options.begin(), options.end(), *m_sets) != options.end())
        return *m_sets;
    QStringList offered;
    for (const std::int64_t option : options)
        offered += QString::number(option);
    throw UsageError(QStringLiteral("--sets: %1 is played over %2 sets, not %3")
                         .arg(displayName(*m_sport), offered.join(QStringLiteral(" or ")))
                         .arg(*m_sets));
}

std::vector<Marker> NewCommand::markers() const {
    if (!usesTennisScoring(*m_sport))
        throw UsageError(
            QStringLiteral("--markers: a table gives tennis scores only, which a scoreboard of ") +
            displayName(*m_sport) + QStringLiteral(" does not show"));
    auto parsed = CSVParser::readMarkersFile(*m_markers);
    if (parsed.empty())
        throw CommandError(QFileInfo(*m_markers).fileName() + QStringLiteral(": no valid markers"));
    return parsed;
}

}

std::unique_ptr<Command> makeNewCommand(CLI::App& root) {
    return std::make_unique<NewCommand>(root);
}

}
