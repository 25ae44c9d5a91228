// pointloom-cli new: writes a project document.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/MarkerInputs.h"
#include "cli/ProjectInputs.h"
#include "model/ScoringEngine.h"
#include "persistence/BoardFile.h"
#include "render/OverlayPlacement.h"

#include <algorithm>
#include <QFileInfo>
#include <utility>

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
    MatchStart matchStart(const ProjectFile& project) const;
    MarkerFile markerFile(ProjectFile& project) const;
    void settleNumberOfSets(ProjectFile& project) const;

    QString m_output;
    bool m_mayReplace = false;
    std::optional<SportID> m_sport; // required
    std::optional<TemplateID> m_template;
    std::optional<QString> m_board; // either this or the template
    std::string m_team1;
    std::string m_team2;
    std::string m_flags1;
    std::string m_flags2;
    std::optional<MatchFormat> m_format;
    std::optional<std::int64_t> m_sets;
    std::vector<QString> m_videos;
    std::optional<QString> m_markers;
    std::optional<QString> m_points;
    std::optional<double> m_firstPoint; // seconds
    std::optional<Side> m_serving;
    std::string m_rules;
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
              "The scoreboard; see \"pointloom-cli templates\"", templatePlaceholder);
    addPath(app(), "--board", m_board, boardFile, "A board of one's own, in place of --template");
    app()
        .add_option("--team1", m_team1, "Player, or a pair as A/B; required unless --points names the teams")
        ->type_name("NAMES");
    app().add_option("--team2", m_team2, "Player, or a pair as A/B")->type_name("NAMES");
    app().add_option("--flags1", m_flags1, "Country codes of team 1, as FR or FR,GB")->type_name("CODES");
    app().add_option("--flags2", m_flags2, "Country codes of team 2")->type_name("CODES");
    addChoice(app(), "--format", m_format, RawValues<MatchFormat>::table,
              "Without it doubles when both teams are pairs");
    app()
        .add_option("--sets", m_sets, "Best of so many sets; without it the sport's usual number")
        ->type_name("NUMBER");
    addPaths(app(), "--video", m_videos, videoFile, "The video of the match; several times for a split one");
    addPath(app(), "--markers", m_markers, csvFile, "Score markers, tennis and padel only");
    addPath(app(), "--points", m_points, pointsFile,
            "Who won each point and when, or a DataVolley file (.dvw)");
    limitNumber(app()
                    .add_option("--first-point", m_firstPoint, "Move all points so that the first is here")
                    ->type_name("SECONDS"),
                -std::numeric_limits<double>::max());
    addChoice(app(), "--serving", m_serving, sideNumbers, "The side that serves first; without it 1");
    app()
        .add_option("--rules", m_rules, "Words joined by commas; see \"pointloom-cli score --list-rules\"")
        ->type_name("WORDS");
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

// Best of how many sets a match is at least that came to this score.
std::int64_t leastNumberOfSets(const SportScoreState& score) {
    const bool isInPlay = gameTexts(score) != std::pair(QStringLiteral("0"), QStringLiteral("0"));
    std::array<std::int64_t, 2> won{};
    for (const SetScore& set : setsOf(score)) {
        won[0] += set.team1 > set.team2 ? 1 : 0;
        won[1] += set.team2 > set.team1 ? 1 : 0;
    }
    return std::max(won[0] + won[1] + (isInPlay ? 1 : 0), 2 * std::ranges::max(won) - 1);
}

// Names that the command line does not give are those of the file.
void nameTeams(MatchConfig& config, const MarkerFile& file) {
    for (const Side side : bothSides) {
        QString& name = ofSide(config, side).player1;
        if (name.isEmpty())
            name = file.teams[side == Side::first ? 0 : 1];
        if (name.isEmpty())
            throw UsageError(QStringLiteral("--team%1 is required").arg(teamNumber(side)));
    }
}

std::vector<Marker> markersFrom(const MarkerFile& file, std::optional<double> firstPoint) {
    std::vector<Marker> markers = file.markersAlone();
    const auto first = std::ranges::find(markers, file.firstPoint, &Marker::id);
    if (!firstPoint || first == markers.end())
        return markers;
    const double shift = *firstPoint - first->startTime;
    for (Marker& marker : markers)
        marker.startTime += shift;
    return markers;
}

// That of the board, or the chosen one.
TemplateID requireFittingTemplate(SportID sport, const std::optional<TemplateID>& chosen,
                                  const std::optional<BoardFile>& board) {
    if (chosen.has_value() == board.has_value())
        throw UsageError("give either --template or --board");
    const TemplateID id = board ? board->base : *chosen;
    const auto fitting = filteredTemplates(sport);
    if (std::find(fitting.begin(), fitting.end(), id) == fitting.end()) {
        const std::string sportName(rawValue(sport));
        throw UsageError(std::string(board ? "--board" : "--template") + ": \"" + std::string(rawValue(id)) +
                         "\" is not made for " + sportName + "; see \"pointloom-cli templates --sport " +
                         sportName + '"');
    }
    return id;
}

ExitStatus NewCommand::run() {
    const auto board = m_board ? std::optional(BoardFile::load(*m_board)) : std::nullopt;

    ProjectFile project;
    project.selectedSport = m_sport;
    project.selectedTemplate = requireFittingTemplate(*m_sport, m_template, board);
    project.matchConfig = matchConfig();
    if (board)
        project.matchConfig->board = board->board;
    if (!m_rules.empty())
        project.rules = ruleWords(m_rules);
    const MarkerFile file = markerFile(project);
    nameTeams(*project.matchConfig, file);
    project.markers = markersFrom(file, m_firstPoint);
    if (m_serving)
        project.initialScore = matchStart(project).score.score;
    const QPointF position = m_position ? parsePosition(*m_position) : AppState::defaultScoreboardPosition;
    project.scoreboardPositionX = position.x();
    project.scoreboardPositionY = position.y();
    project.scoreboardUserScale = m_scale.value_or(1.0);
    project.watermarkCorner = WatermarkCorner::bottomRight;
    std::vector<InputFile> inputs;
    for (QString& video : m_videos) {
        video = absolutePath(video, QStringLiteral("--video"));
        inputs.push_back({video, QStringLiteral("the video")});
    }
    if (!m_videos.empty())
        project.videoPath = m_videos.front();
    if (m_videos.size() > 1)
        project.videoFiles = m_videos;
    if (m_markers)
        inputs.push_back({*m_markers, QStringLiteral("the table of markers")});
    if (m_points)
        inputs.push_back({*m_points, QStringLiteral("the list of points")});
    if (m_board)
        inputs.push_back({*m_board, QStringLiteral("the board")});
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
    const auto team = [&](const std::string& names, const std::string& flags, int number) {
        if (!names.empty())
            return parseTeam(toText(names), toText(flags), number);
        TeamConfig unnamed = parseTeam(QStringLiteral("-"), toText(flags), number);
        unnamed.player1.clear();
        return unnamed;
    };
    config.team1 = team(m_team1, m_flags1, 1);
    config.team2 = team(m_team2, m_flags2, 2);
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

MatchStart NewCommand::matchStart(const ProjectFile& project) const {
    const MatchConfig& config = *project.matchConfig;
    std::optional<SportScoreState> initial;
    if (m_serving) {
        initial = ScoringEngine::getInitialScore(config);
        if (!isServing(*initial, *m_serving))
            initial = withServeSwapped(*initial);
    }
    try {
        return MatchStart::of(config, project.rules.value_or(std::vector<std::string>()), initial);
    } catch (const FormatError& error) {
        throw UsageError(std::string("--rules: ") + error.what());
    }
}

MarkerFile NewCommand::markerFile(ProjectFile& project) const {
    if (m_markers && m_points)
        throw UsageError("give either --markers or --points");
    if (m_markers && !usesTennisScoring(*m_sport))
        throw UsageError(
            QStringLiteral("--markers: a table gives tennis scores only, which a scoreboard of ") +
            displayName(*m_sport) + QStringLiteral(" does not show"));
    const MatchStart start = matchStart(project);
    if (m_markers)
        return readTable(*m_markers, start);
    if (!m_points)
        return {};
    if (!m_sets)
        settleNumberOfSets(project);
    return readPoints(*m_points, matchStart(project));
}

// A scout file does not say over how many sets its match goes: the usual number, or more when more were
// played.
void NewCommand::settleNumberOfSets(ProjectFile& project) const {
    const auto options = numberOfSetsOptions(*m_sport);
    std::int64_t& sets = project.matchConfig->numberOfSets;
    const std::int64_t usual = std::exchange(sets, std::ranges::max(options));
    const MarkerFile file = MarkerFile::read(*m_points, matchStart(project));
    const bool isScout = file.kind == MarkerFile::Kind::scout && !file.markers.empty();
    const std::int64_t needed =
        std::max(usual, isScout ? leastNumberOfSets(file.markers.back().marker.score) : usual);
    for (const std::int64_t option : options) {
        if (option >= needed)
            sets = std::min(sets, option);
    }
}

}

std::unique_ptr<Command> makeNewCommand(CLI::App& root) {
    return std::make_unique<NewCommand>(root);
}

}
