#include "persistence/MarkerFile.h"

#include "l10n/L10nKey.h"
#include "persistence/PointList.h"
#include "persistence/ScoutFile.h"
#include "rules/CountLabel.h"

#include <algorithm>
#include <QFileInfo>

namespace pointloom {

namespace {

// A line of nine bytes becomes a marker of 405 bytes in a document: all that is imported can be saved.
constexpr qint64 largestFile = 1024 * 1024; // bytes
constexpr std::size_t mostPoints = 20'000;
constexpr double shortestPoint = 0.01; // seconds between markers of the same time, of which the last is shown

MarkerFile fromTable(CSVParser::Table table) {
    MarkerFile file{.markers = std::move(table.markers), .leftOut = std::move(table.leftOut)};
    file.lineCount = table.lineCount;
    return file;
}

void addMarker(MarkerFile& file, double time, const CountedScore& score, qint64 line) {
    Marker marker{QUuid::createUuid(), time, score.score, score.label};
    if (!file.markers.empty())
        marker.startTime = std::max(time, file.markers.back().marker.startTime + shortestPoint);
    file.markers.push_back({std::move(marker), line});
}

MarkerFile fromPoints(const PointList& list, const QString& path, const MatchStart& match) {
    if (list.points.size() > mostPoints)
        throw MarkerFileError(path, L10nKey::importTooManyPoints);
    MarkerFile file{.kind = MarkerFile::Kind::points, .leftOut = list.leftOut};
    CountedPoint latest{match.score, Over::nothing};
    bool isOver = isMatchOver(match.rules, match.score.score);
    for (const auto& [time, winner, label, line] : list.points) {
        if (isOver) {
            file.leftOut.push_back({line, L10nKey::importAfterMatch});
            continue;
        }
        const CountedPoint next = countPoint(match.rules, latest.after, winner);
        if (next.after == latest.after)
            throw MarkerFileError(path, L10nKey::importCannotCount);
        latest = next;
        isOver = latest.over == Over::match;
        addMarker(file, time, {latest.after.score, withPhrase(label, latest.after.label)}, line);
    }
    std::ranges::stable_sort(file.leftOut, {}, &LineFault::line);
    return file;
}

PointScoreState scoreAfter(const ScoutedRally& rally, const std::vector<SetScore>& finals,
                           std::size_t numberOfSets) {
    const auto set = static_cast<std::size_t>(rally.set) - 1;
    PointScoreState score{finals, rally.score, teamNumber(rally.nextServer)};
    score.sets.resize(set);
    if (rally.endsSet) {
        score.sets.push_back({rally.score.team1, rally.score.team2, {}});
        score.currentGame = {};
    }
    score.sets.resize(numberOfSets);
    return score;
}

MarkerFile fromScout(const ScoutFile& scout, const QString& path, const MatchStart& match) {
    if (match.sport != SportID::volleyball)
        throw MarkerFileError(path, L10nKey::importOtherSport);
    if (scout.rallies.size() > mostPoints)
        throw MarkerFileError(path, L10nKey::importTooManyPoints);
    const auto numberOfSets =
        static_cast<std::size_t>(std::clamp<std::int64_t>(match.rules.numberOfSets, 0, largestNumberOfSets));
    if (scout.sets.size() > numberOfSets)
        throw MarkerFileError(path, L10nKey::importTooManySets);
    MarkerFile file{.kind = MarkerFile::Kind::scout, .leftOut = scout.leftOut, .teams = scout.teams};
    if (const auto& service = scout.firstService; service && !scout.rallies.empty()) {
        const PointScoreState start{std::vector<SetScore>(numberOfSets), {}, teamNumber(service->server)};
        addMarker(file, service->time, {start, {}}, service->line);
    }
    for (const ScoutedRally& rally : scout.rallies)
        addMarker(file, rally.time, {scoreAfter(rally, scout.sets, numberOfSets), {}}, rally.line);
    if (!scout.rallies.empty())
        file.firstPoint = file.markers[file.markers.size() - scout.rallies.size()].marker.id;
    return file;
}

// Lines whose time is readable say what else is wrong in them.
std::size_t linesWithTime(const PointList& list) {
    return list.points.size() +
           static_cast<std::size_t>(std::ranges::count_if(
               list.leftOut, [](const LineFault& fault) { return fault.reason != L10nKey::importNoTime; }));
}

/// Commas first: their rules hold for whatever they can read. Of the other forms the one that reads most.
MarkerFile decodeLines(const QString& text, const QString& path, const MatchStart& match) {
    constexpr std::array separators{u';', u'\t', u','};
    CSVParser::Table table = CSVParser::parseTable(text);
    PointList points;
    if (table.markers.empty()) {
        for (const QChar separator : separators) {
            if (separator != u',' && !text.contains(separator))
                continue; // one field a line, as with the comma
            CSVParser::Table other = CSVParser::parseTable(text, separator);
            if (other.markers.size() > table.markers.size())
                table = std::move(other);
            PointList list = parsePointList(text, separator);
            if (std::pair(list.points.size(), linesWithTime(list)) >
                std::pair(points.points.size(), linesWithTime(points)))
                points = std::move(list);
        }
    }
    if (points.points.size() > table.markers.size())
        return fromPoints(points, path, match);
    if (!table.markers.empty() && !usesTennisScoring(match.sport))
        throw MarkerFileError(path, L10nKey::importOtherSport);
    const bool isTable = std::ranges::any_of(
        table.leftOut, [](const LineFault& fault) { return fault.reason != L10nKey::importFewFields; });
    if (table.markers.empty() && !isTable && linesWithTime(points) > 0)
        table.leftOut = std::move(points.leftOut);
    return fromTable(std::move(table));
}

}

MarkerFileError::MarkerFileError(const QString& path, L10nKey reason)
    : DocumentError(path, t(Language::english, reason))
    , m_path(path)
    , m_reason(reason) {}

QString MarkerFileError::in(Language language) const {
    return QString::fromUtf8(DocumentError(m_path, t(language, m_reason)).what());
}

MatchStart MatchStart::of(const MatchConfig& config, std::span<const std::string> words,
                          const std::optional<SportScoreState>& initialScore) {
    auto rules = rulesOfMatch(config, words);
    if (!rules)
        rules = rulesOfMatch(config, {});
    const CountedMatch match = countedMatch(*rules, initialScore, {});
    return {config.sport, match.rules, match.start};
}

MarkerFile MarkerFile::read(const QString& path, const MatchStart& match) {
    return decode(readDocument(path, largestFile), path, match);
}

MarkerFile MarkerFile::decode(const QByteArray& bytes, const QString& path, const MatchStart& match) {
    const auto text = DelimitedText::decode(bytes, ScoutFile::codePage(bytes));
    if (!text)
        throw MarkerFileError(path, L10nKey::importNotText);
    if (!ScoutFile::isScoutFile(*text) && QFileInfo(path).suffix().compare(u"dvw", Qt::CaseInsensitive) == 0)
        throw MarkerFileError(path, L10nKey::importNoScout);
    MarkerFile file = ScoutFile::isScoutFile(*text) ? fromScout(ScoutFile::parse(*text), path, match)
                                                    : decodeLines(*text, path, match);
    if (file.firstPoint.isNull() && !file.markers.empty())
        file.firstPoint = file.markers.front().marker.id;
    return file;
}

std::vector<Marker> MarkerFile::markersAlone() const {
    std::vector<Marker> alone;
    for (const auto& [marker, line] : markers)
        alone.push_back(marker);
    return alone;
}

QString joinLines(const std::vector<qint64>& lines) {
    constexpr std::size_t mostNamed = 8;
    QStringList numbers;
    for (const qint64 line : std::span(lines).first(std::min(lines.size(), mostNamed)))
        numbers += QString::number(line);
    const QString named = numbers.join(QStringLiteral(", "));
    return lines.size() <= mostNamed ? named
                                     : named + QStringLiteral(" … (+%1)").arg(lines.size() - mostNamed);
}

std::vector<std::pair<L10nKey, QString>> byReason(const std::vector<LineFault>& faults) {
    std::vector<std::pair<L10nKey, std::vector<qint64>>> reasons;
    for (const auto& [line, reason] : faults) {
        const auto same = std::ranges::find(reasons, reason, [](const auto& group) { return group.first; });
        if (same == reasons.end())
            reasons.push_back({reason, {line}});
        else
            same->second.push_back(line);
    }
    std::vector<std::pair<L10nKey, QString>> joined;
    for (const auto& [reason, lines] : reasons)
        joined.emplace_back(reason, joinLines(lines));
    return joined;
}

}
