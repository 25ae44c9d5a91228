#include "persistence/CSVParser.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"
#include "persistence/DecimalNumber.h"
#include "persistence/DocumentFile.h"
#include "session/AppState.h"

#include <algorithm>
#include <QList>
#include <QStringDecoder>

namespace pointloom {

QString CSVParseError::description() const {
    return QStringLiteral("CSV contained %1 lines but no valid markers were parsed.").arg(lineCount);
}

namespace CSVParser {

namespace {

constexpr char16_t byteOrderMark = 0xFEFF;
constexpr std::size_t firstSetColumn = 5;
constexpr std::size_t fewestColumns = 7;

bool isNewline(char16_t character) {
    return (character >= u'\n' && character <= u'\r') // LF, VT, FF, CR
           || character == 0x0085 || character == 0x2028 || character == 0x2029;
}

QStringView trimmed(QStringView text) {
    const auto isSpace = [](QChar character) { return character == u' ' || character == u'\t'; };
    while (!text.isEmpty() && isSpace(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isSpace(text.back()))
        text.chop(1);
    return text;
}

// Visits the lines without building a list of them.
template <class Consumer>
void forEachDataLine(QStringView text, const Consumer& consume) {
    if (text.startsWith(QChar(byteOrderMark)))
        text = text.sliced(1);
    while (!text.isEmpty()) {
        const auto lineEnd =
            std::find_if(text.begin(), text.end(), [](QChar c) { return isNewline(c.unicode()); });
        const QStringView line = trimmed(QStringView(text.begin(), lineEnd));
        const bool isHeader = line.startsWith(QStringLiteral("starttime"), Qt::CaseInsensitive);
        if (!line.isEmpty() && !line.startsWith(u'#') && !isHeader)
            consume(line);
        text = lineEnd == text.end() ? QStringView() : QStringView(lineEnd + 1, text.end());
    }
}

std::vector<QStringView> fieldsOf(QStringView line) {
    std::vector<QStringView> fields;
    for (const QStringView field : line.split(u','))
        fields.push_back(trimmed(field));
    return fields;
}

template <class Number>
std::optional<Number> parseNumber(QStringView field) {
    return parseDecimal<Number>(field.toUtf8().toStdString());
}

GamePoint gamePoint(QStringView field) {
    const QString word = field.toString().toLower();
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

std::vector<SetScore> setScores(const std::vector<QStringView>& fields) {
    std::vector<SetScore> sets;
    for (std::size_t column = firstSetColumn; column + 1 < fields.size(); column += 2) {
        const auto games = [&](std::size_t at) { return parseNumber<std::int64_t>(fields[at]).value_or(0); };
        sets.push_back({games(column), games(column + 1), {}});
    }
    return sets;
}

std::optional<Marker> parseRow(QStringView line) {
    const std::vector<QStringView> fields = fieldsOf(line);
    if (fields.size() < fewestColumns)
        return std::nullopt;
    const auto time = parseNumber<double>(fields[0]);
    const auto servingTeam = parseNumber<std::int64_t>(fields[2]);
    if (!time || !servingTeam || (*servingTeam != 1 && *servingTeam != 2))
        return std::nullopt;

    Marker marker;
    marker.id = QUuid::createUuid();
    marker.startTime = *time;
    if (!fields[1].isEmpty())
        marker.label = fields[1].toString();
    marker.score = ScoreState{setScores(fields), {gamePoint(fields[3]), gamePoint(fields[4])}, *servingTeam};
    return marker;
}

}

std::vector<Marker> parseMarkers(QStringView csv, const ErrorReport& reportError) {
    std::vector<Marker> markers;
    std::int64_t lineCount = 0;
    forEachDataLine(csv, [&](QStringView line) {
        ++lineCount;
        if (auto marker = parseRow(line))
            markers.push_back(*std::move(marker));
    });
    std::stable_sort(markers.begin(), markers.end(),
                     [](const Marker& a, const Marker& b) { return a.startTime < b.startTime; });
    if (markers.empty() && lineCount > 0 && reportError)
        reportError({lineCount});
    return markers;
}

std::vector<Marker> readMarkersFile(const QString& path, const ErrorReport& reportError) {
    // A line of nine bytes becomes a marker of 405 bytes in a document: all that is imported can be saved.
    constexpr qint64 byteLimit = 1024 * 1024;
    return decodeMarkers(readDocument(path, byteLimit), path, reportError);
}

std::vector<Marker> decodeMarkers(const QByteArray& bytes, const QString& path,
                                  const ErrorReport& reportError) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        throw DocumentError(path, QStringLiteral("not UTF-8 text; save it as \"CSV UTF-8\""));
    return parseMarkers(text, reportError);
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

std::optional<QString> importMarkers(const QString& path, AppState& state, UndoStack* undoManager,
                                     const CSVParser::ErrorReport& reportError) {
    std::vector<Marker> markers;
    try {
        markers = CSVParser::readMarkersFile(path, reportError);
    } catch (const DocumentError& error) {
        return format(state.t(L10nKey::couldNotReadFile), QString::fromUtf8(error.what()));
    }
    if (markers.empty())
        return state.t(L10nKey::noValidMarkersInCSV);
    const QUuid first = markers.front().id;
    state.replaceMarkers(std::move(markers), first, undoManager);
    return std::nullopt;
}

}
