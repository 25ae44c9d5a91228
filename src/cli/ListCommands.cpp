// pointloom-cli templates, markers: the catalogue of scoreboards, and the markers of a table.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/MarkerInputs.h"
#include "cli/Messages.h"
#include "persistence/CSVParser.h"
#include "render/TemplateID.h"

namespace pointloom::cli {

namespace {

class TemplatesCommand final : public Command {
public:
    explicit TemplatesCommand(CLI::App& root);
    ExitStatus run() override;

private:
    std::optional<SportID> m_sport;
    bool m_asJson = false;
};

TemplatesCommand::TemplatesCommand(CLI::App& root)
    : Command(root, "templates", "List the scoreboard templates") {
    addChoice(app(), "--sport", m_sport, RawValues<SportID>::table, "Only those that fit this sport");
    app().add_flag("--json", m_asJson, "Print a list of objects: id, displayName, description, sport");
    app().footer("Example:\n  pointloom-cli templates --sport volleyball");
}

json::OrderedValue asJson(TemplateID id) {
    return {{"id", rawValue(id)},
            {"displayName", displayName(id).toStdString()},
            {"description", t(Language::english, description(id)).toStdString()},
            {"sport", rawValue(sportOf(id))}};
}

std::string asLine(TemplateID id) {
    constexpr int idColumn = 20;
    constexpr int nameColumn = 15;
    return (QString::fromUtf8(rawValue(id)).leftJustified(idColumn) +
            displayName(id).leftJustified(nameColumn) + t(Language::english, description(id)) + u'\n')
        .toStdString();
}

ExitStatus TemplatesCommand::run() {
    const auto everyTemplate = allCases<TemplateID>();
    const std::vector<TemplateID> templates =
        m_sport ? filteredTemplates(*m_sport) : std::vector(everyTemplate.begin(), everyTemplate.end());
    if (m_asJson) {
        auto list = json::OrderedValue::array();
        for (const TemplateID id : templates)
            list.push_back(asJson(id));
        printJson(list);
        return ExitStatus::done;
    }
    for (const TemplateID id : templates)
        print(asLine(id));
    return ExitStatus::done;
}

class MarkersCommand final : public Command {
public:
    explicit MarkersCommand(CLI::App& root);
    ExitStatus run() override;

private:
    QString m_file;
    bool m_asJson = false;
    bool m_sample = false;
};

MarkersCommand::MarkersCommand(CLI::App& root)
    : Command(root, "markers", "Show the score markers of a CSV table, or print a sample table") {
    addPath(app(), "file", m_file, csvFile, "The table of markers");
    app().add_flag("--json", m_asJson, "Print the markers as project documents hold them");
    app().add_flag("--sample", m_sample, "Print a table to start from; no FILE then");
    app().footer("Example:\n  pointloom-cli markers --sample > match.csv\n  pointloom-cli markers match.csv");
}

std::string asLine(const Marker& marker) {
    constexpr int timeColumn = 10;
    const auto [game1, game2] = gameTexts(marker.score);
    QString sets;
    for (const SetScore& set : setsOf(marker.score))
        sets += QStringLiteral(" %1-%2").arg(set.display(Side::first), set.display(Side::second));
    return QStringLiteral("%1 s  serving %2  game %3-%4  sets%5%6\n")
        .arg(QString::number(marker.startTime, 'f', 2).rightJustified(timeColumn))
        .arg(teamNumber(servingSide(marker.score)))
        .arg(game1, game2, sets, marker.label ? QStringLiteral("  ") + bareText(*marker.label) : QString())
        .toStdString();
}

ExitStatus MarkersCommand::run() {
    if (m_sample == !m_file.isEmpty())
        throw UsageError("markers: give either a FILE or --sample");
    if (m_sample) {
        print(CSVParser::sampleText().toStdString());
        return ExitStatus::done;
    }

    const std::vector<Marker> markers = readTable(m_file, MatchStart::of(MatchConfig())).markersAlone();
    if (m_asJson)
        printJson(json::encode(markers));
    else
        for (const Marker& marker : markers)
            print(asLine(marker));
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeTemplatesCommand(CLI::App& root) {
    return std::make_unique<TemplatesCommand>(root);
}

std::unique_ptr<Command> makeMarkersCommand(CLI::App& root) {
    return std::make_unique<MarkersCommand>(root);
}

}
