// pointloom-cli score: counts matches point by point.
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Messages.h"
#include "rules/Counting.h"
#include "json/JsonDocument.h"

#include <cstdio>
#include <QFile>

namespace pointloom::cli {

namespace {

using Points = std::vector<Side>; // of one match: who won each

class ScoreCommand final : public Command {
public:
    explicit ScoreCommand(CLI::App& root);
    ExitStatus run() override;

private:
    MatchRules rules() const;
    std::vector<Points> matches() const;

    std::optional<SportID> m_sport;
    std::optional<std::int64_t> m_sets;
    std::string m_rules;
    std::optional<Side> m_serving;
    bool m_lists = false;
    QString m_file; // empty for standard input
};

ScoreCommand::ScoreCommand(CLI::App& root)
    : Command(root, "score", "Count matches point by point") {
    addChoice(app(), "--sport", m_sport, RawValues<SportID>::table, "What is played");
    app()
        .add_option("--sets", m_sets, "Best of so many sets; without it the sport's usual number")
        ->type_name("NUMBER");
    app()
        .add_option("--rules", m_rules, "Words joined by commas, as no-ad,short-sets; see --list-rules")
        ->type_name("WORDS");
    addChoice(app(), "--serving", m_serving, sideNumbers, "The side that serves first; without it 1");
    app().add_flag("--list-rules", m_lists, "List the words of the sport, or of all sports");
    addPath(app(), "points", m_file, {.placeholder = "POINTS", .extensions = ""},
            "Who won each point, 1 or 2, one a line; without it standard input");
    app().footer("Example:\n  pointloom-cli score --sport tennis --sets 3 --rules no-ad points.txt");
}

void listRules(SportID sport) {
    print(std::string(rawValue(sport)) + ": " + std::string(usualFormat(sport)) + '\n');
    constexpr int wordColumn = 28;
    for (const auto& [choice, word, meaning] : formatWords(sport))
        print("  " + QString::fromUtf8(word).leftJustified(wordColumn).toStdString() + std::string(meaning) +
              '\n');
}

MatchRules ScoreCommand::rules() const {
    const SportID sport = *m_sport;
    const std::int64_t sets = m_sets.value_or(defaultNumberOfSets(sport));
    if (sets < 1 || sets > largestNumberOfSets || sets % 2 == 0)
        throw UsageError(
            QStringLiteral("--sets: %1 is no odd number from 1 to %2").arg(sets).arg(largestNumberOfSets));
    try {
        return {formatOf(sport, ruleWords(m_rules)), sets, m_serving.value_or(Side::first)};
    } catch (const FormatError& error) {
        throw UsageError(std::string("--rules: ") + error.what());
    }
}

QByteArray readAll(QFile& file, const QString& name, bool isOpen) {
    constexpr qint64 largestInput = 64 * 1024 * 1024; // bytes
    const QByteArray bytes = isOpen ? file.read(largestInput + 1) : QByteArray();
    if (file.error() != QFile::NoError)
        throw CommandError(name + QStringLiteral(": ") + file.errorString());
    if (bytes.size() > largestInput)
        throw CommandError(name + QStringLiteral(": is larger than 64 MB"));
    return bytes;
}

// Empty lines part matches. All lines are read first: a fault leaves nothing half counted.
std::vector<Points> parsePoints(const QByteArray& bytes, const QString& name) {
    std::vector<Points> matches(1);
    QStringList badLines;
    const QList<QByteArray> lines = bytes.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines[i].trimmed();
        if (line == "1" || line == "2")
            matches.back().push_back(line == "1" ? Side::first : Side::second);
        else if (!line.isEmpty())
            badLines += QString::number(i + 1);
        else if (!matches.back().empty())
            matches.emplace_back();
    }
    if (!badLines.isEmpty()) {
        constexpr qsizetype mostNamed = 20;
        const qsizetype unnamed = badLines.size() - mostNamed;
        throw CommandError(name + QStringLiteral(": neither 1 nor 2 in line ") +
                           badLines.mid(0, mostNamed).join(QStringLiteral(", ")) +
                           (unnamed > 0 ? QStringLiteral(" and %1 more").arg(unnamed) : QString()));
    }
    if (matches.size() > 1 && matches.back().empty())
        matches.pop_back();
    return matches;
}

std::vector<Points> ScoreCommand::matches() const {
    QFile file(m_file);
    if (!m_file.isEmpty())
        return parsePoints(readAll(file, file.fileName(), file.open(QIODevice::ReadOnly)), file.fileName());
    const QString name = QStringLiteral("standard input");
    return parsePoints(readAll(file, name, file.open(stdin, QIODevice::ReadOnly)), name);
}

void printLine(const CountedPoint& point) {
    QByteArray line = "{\"score\":";
    json::Writer<SportScoreState>::append(line, point.after.score);
    line += ",\"label\":";
    if (point.after.label)
        json::Writer<QString>::append(line, *point.after.label);
    else
        line += "null";
    line += ",\"over\":";
    if (point.over != Over::nothing)
        json::appendQuoted(line, rawValue(point.over));
    else
        line += "null";
    line += "}\n";
    print({line.constData(), static_cast<std::size_t>(line.size())});
}

void printMatch(const MatchRules& rules, const Points& points) {
    CountedPoint latest{startOfMatch(rules), Over::nothing};
    printLine(latest);
    for (const Side winner : points) {
        latest = countPoint(rules, latest.after, winner);
        printLine(latest);
    }
}

ExitStatus ScoreCommand::run() {
    if (m_lists) {
        for (const SportID listed : allCases<SportID>()) {
            if (!m_sport || listed == *m_sport)
                listRules(listed);
        }
        return ExitStatus::done;
    }
    if (!m_sport)
        throw UsageError("score: give --sport");
    const MatchRules match = rules();
    std::string_view separator;
    for (const Points& points : matches()) {
        print(separator);
        printMatch(match, points);
        separator = "\n";
    }
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeScoreCommand(CLI::App& root) {
    return std::make_unique<ScoreCommand>(root);
}

}
