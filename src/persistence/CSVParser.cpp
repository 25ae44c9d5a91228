#include "persistence/CSVParser.h"

#include "persistence/DecimalNumber.h"

#include <algorithm>
#include <QList>

namespace pointloom {

QString CSVParseError::description() const {
    return QStringLiteral("CSV contained %1 lines but no valid markers were parsed.").arg(lineCount);
}

namespace CSVParser {

namespace {

constexpr QChar comma = u',';
constexpr std::size_t firstSetColumn = 5;
constexpr std::size_t fewestColumns = 7;

std::vector<QString> fieldsOf(QStringView line, QChar separator) {
    if (separator != comma)
        return DelimitedText::quotedFields(line, separator);
    std::vector<QString> fields;
    for (const QStringView field : line.split(separator))
        fields.push_back(DelimitedText::trimmed(field).toString());
    return fields;
}

template <class Number>
std::optional<Number> parseNumber(const QString& field) {
    return parseDecimal<Number>(field.toStdString());
}

GamePoint gamePoint(const QString& field) {
    const QString word = field.toLower();
    if (word == u"15")
        return GamePoint::fifteen;
    if (word == u"30")
        return GamePoint::thirty;
    if (word == u"40")
        return GamePoint::forty;
    if (word == u"deuce" || word == u"d")
        return GamePoint::deuce;
    if (word == u"ad" || word == u"adv" || word == u"advantage")
        return GamePoint::advantage;
    return GamePoint::zero;
}

std::vector<SetScore> setScores(const std::vector<QString>& fields) {
    std::vector<SetScore> sets;
    for (std::size_t column = firstSetColumn; column + 1 < fields.size(); column += 2) {
        const auto games = [&](std::size_t at) { return parseNumber<std::int64_t>(fields[at]).value_or(0); };
        sets.push_back({games(column), games(column + 1), {}});
    }
    return sets;
}

std::variant<Marker, L10nKey> parseRow(const std::vector<QString>& fields, QChar separator) {
    if (fields.size() < fewestColumns)
        return L10nKey::importFewFields;
    const auto time =
        separator == comma ? parseNumber<double>(fields[0]) : DelimitedText::parseTime(fields[0]);
    if (!time)
        return L10nKey::importNoTime;
    const auto servingTeam = parseNumber<std::int64_t>(fields[2]);
    if (!servingTeam || (*servingTeam != 1 && *servingTeam != 2))
        return L10nKey::importNoServer;

    Marker marker;
    marker.id = QUuid::createUuid();
    marker.startTime = *time;
    if (!fields[1].isEmpty())
        marker.label = fields[1];
    marker.score = ScoreState{setScores(fields), {gamePoint(fields[3]), gamePoint(fields[4])}, *servingTeam};
    return marker;
}

bool isNamedHeading(QStringView line) {
    return line.startsWith(QStringLiteral("starttime"), Qt::CaseInsensitive);
}

}

Table parseTable(QStringView text, QChar separator) {
    Table table;
    DelimitedText::forEachLine(text, [&](QStringView line, qint64 number) {
        const QStringView words = DelimitedText::trimmed(line);
        if (words.startsWith(u'#') || isNamedHeading(words))
            return;
        const std::vector<QString> fields = fieldsOf(separator == comma ? words : line, separator);
        if (separator != comma && isNamedHeading(fields.front()))
            return;
        const bool isFirst = ++table.lineCount == 1;
        const auto row = parseRow(fields, separator);
        if (const auto* marker = std::get_if<Marker>(&row))
            table.markers.push_back({*marker, number});
        else if (!isFirst || !DelimitedText::isHeading(fields.front()))
            table.leftOut.push_back({number, std::get<L10nKey>(row)});
    });
    std::ranges::stable_sort(table.markers, {}, [](const MarkerOfLine& row) { return row.marker.startTime; });
    return table;
}

std::vector<Marker> parseMarkers(QStringView csv, const ErrorReport& reportError) {
    if (csv.startsWith(QChar(QChar::ByteOrderMark)))
        csv = csv.sliced(1);
    const Table table = parseTable(csv);
    if (table.markers.empty() && table.lineCount > 0 && reportError)
        reportError({table.lineCount});
    std::vector<Marker> markers;
    for (const auto& [marker, line] : table.markers)
        markers.push_back(marker);
    return markers;
}

QString sampleText() {
    return QStringLiteral("startTime,label,servingTeam,game_team1,game_team2,"
                          "set1_t1,set1_t2,set2_t1,set2_t2,set3_t1,set3_t2\n"
                          "0,Start,1,0,0,0,0,0,0,0,0\n"
                          "15,Game Dravnik,1,0,0,1,0,0,0,0,0\n"
                          "30,Break,2,0,0,2,1,0,0,0,0\n"
                          "45,Second set,1,15,0,6,3,0,0,0,0\n"
                          "60,Match point,1,40,0,6,3,5,4,0,0");
}

}

}
