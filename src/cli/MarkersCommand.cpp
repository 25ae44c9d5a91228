// pointloom-cli markers: what a marker table says.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "persistence/CSVParser.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class MarkersCommand final : public Command {
public:
    explicit MarkersCommand(CLI::App& subcommand);
    ExitStatus run() override;

private:
    std::string m_file;
    bool m_asJson = false;
    bool m_sample = false;
};

MarkersCommand::MarkersCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addFileOption(app(), "file", m_file, csvFile, "The table of markers");
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
    if (m_sample == !m_file.empty())
        throw UsageError("markers: give either a FILE or --sample");
    if (m_sample) {
        print(CSVParser::sampleText().toStdString());
        return ExitStatus::done;
    }

    const QString path = toPath(m_file);
    std::int64_t lineCount = 0;
    const auto markers =
        CSVParser::readMarkersFile(path, [&](const CSVParseError& error) { lineCount = error.lineCount; });
    if (markers.empty())
        throw CommandError(QFileInfo(path).fileName() +
                           QStringLiteral(": no valid markers in %1 lines of data").arg(lineCount));
    if (m_asJson) {
        printJson(json::encode(markers));
        return ExitStatus::done;
    }
    for (const Marker& marker : markers)
        print(asLine(marker));
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeMarkersCommand(CLI::App& root) {
    return std::make_unique<MarkersCommand>(
        *root.add_subcommand("markers", "Show the score markers of a CSV table, or print a sample table"));
}

}
