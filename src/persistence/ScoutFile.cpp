#include "persistence/ScoutFile.h"

#include "model/MatchConfig.h"
#include "persistence/DecimalNumber.h"

#include <algorithm>
#include <QRegularExpression>

namespace pointloom {

namespace {

constexpr qsizetype clockField = 7; // HH.MM.SS
constexpr qsizetype setField = 8;
constexpr qsizetype videoField = 11; // number of the video file
constexpr qsizetype secondsField = 12;

/// Times of one line.
struct Moment {
    std::optional<std::int64_t> clock; // seconds of the day
    std::optional<double> seconds;     // of the video
    QString video;
};

struct TimedRally {
    ScoutedRally rally;
    Moment moment;
    std::optional<Side> server; // of the next rally, as scouted
    Side winner = Side::first;
};

template <class Number>
std::optional<Number> numberIn(const QStringList& fields, qsizetype at) {
    return at < fields.size() ? parseDecimal<Number>(fields[at].toStdString()) : std::nullopt;
}

std::optional<std::int64_t> parseClock(QString field) {
    const auto seconds = field.contains(u'.') || field.contains(u':')
                             ? DelimitedText::parseTime(field.replace(u'.', u':'))
                             : std::nullopt;
    return seconds ? std::optional(static_cast<std::int64_t>(*seconds)) : std::nullopt;
}

Moment momentOf(const QStringList& fields) {
    Moment moment{{}, numberIn<double>(fields, secondsField), fields.value(videoField)};
    if (moment.seconds && *moment.seconds < 0)
        moment.seconds = std::nullopt;
    moment.clock = parseClock(fields.value(clockField));
    return moment;
}

Side sideOf(QStringView code) {
    return code.startsWith(u'*') ? Side::first : Side::second;
}

/// Reads the lines of the section [3SCOUT].
class ScoutReader {
public:
    void take(QStringView line, qint64 number);
    void finish(ScoutFile& file);

private:
    void takeRallyEnd(const QStringList& fields, qint64 number);
    void takeSetEnd();
    void placeByVideo(ScoutFile& file) const;
    void placeByClock(ScoutFile& file) const;
    bool hasVideoTimes() const;

    std::vector<TimedRally> m_rallies;
    std::vector<LineFault> m_leftOut;
    std::optional<std::pair<ScoutedService, Moment>> m_firstService;
    std::int64_t m_set = 1;
};

void ScoutReader::take(QStringView line, qint64 number) {
    static const QRegularExpression service(QStringLiteral("^[*a](\\d{1,2}|\\$\\$)S"));
    static const QRegularExpression rallyEnd(QStringLiteral("^[*a]p"));
    static const QRegularExpression setEnd(QStringLiteral("^\\*\\*\\s*\\d+\\s*set"));
    QStringList fields;
    for (const QStringView field : line.split(u';'))
        fields += DelimitedText::trimmed(field).toString();
    const QString& code = fields.front();
    if (setEnd.match(code).hasMatch())
        return takeSetEnd();
    if (rallyEnd.match(code).hasMatch())
        return takeRallyEnd(fields, number);
    if (!service.match(code).hasMatch())
        return;
    if (m_rallies.empty() && !m_firstService)
        m_firstService = {{0, sideOf(code), number}, momentOf(fields)};
    else if (!m_rallies.empty() && !m_rallies.back().server)
        m_rallies.back().server = sideOf(code);
}

void ScoutReader::takeSetEnd() {
    if (m_rallies.empty() || m_rallies.back().rally.endsSet)
        return;
    m_rallies.back().rally.endsSet = true;
    m_set = m_rallies.back().rally.set + 1;
}

void ScoutReader::takeRallyEnd(const QStringList& fields, qint64 number) {
    static const QRegularExpression score(QStringLiteral("^[*a]p\\s*(\\d{1,3})\\s*:\\s*(\\d{1,3})"));
    const auto match = score.match(fields.front());
    if (!match.hasMatch()) {
        m_leftOut.push_back({number, L10nKey::importNoScore});
        return;
    }
    const std::int64_t named = numberIn<std::int64_t>(fields, setField).value_or(m_set);
    if (named > m_set && named <= largestNumberOfSets) {
        takeSetEnd();
        m_set = named;
    }
    TimedRally rally;
    rally.rally.score = {match.capturedView(1).toLongLong(), match.capturedView(2).toLongLong()};
    rally.rally.set = m_set;
    rally.rally.line = number;
    rally.winner = sideOf(fields.front());
    rally.moment = momentOf(fields);
    m_rallies.push_back(std::move(rally));
}

// Some programs write 0 in every line of a file that belongs to no video.
bool ScoutReader::hasVideoTimes() const {
    return std::ranges::any_of(m_rallies,
                               [](const TimedRally& r) { return r.moment.seconds.value_or(0) > 0; });
}

void ScoutReader::finish(ScoutFile& file) {
    for (TimedRally& rally : m_rallies) {
        const auto& score = rally.rally.score;
        file.sets.resize(static_cast<std::size_t>(rally.rally.set));
        file.sets.back() = {score.team1, score.team2, {}};
        rally.rally.nextServer = rally.server.value_or(rally.winner);
    }
    file.leftOut = m_leftOut;
    if (hasVideoTimes())
        placeByVideo(file);
    else
        placeByClock(file);
    if (file.firstService && !file.rallies.empty() && file.firstService->time > file.rallies.front().time)
        file.firstService = std::nullopt;
    std::ranges::stable_sort(file.leftOut, {}, &LineFault::line);
}

void ScoutReader::placeByVideo(ScoutFile& file) const {
    std::optional<QString> video;
    for (const auto& [rally, moment, server, winner] : m_rallies) {
        if (!moment.seconds) {
            file.leftOut.push_back({rally.line, L10nKey::importNoTime});
        } else if (video && moment.video != video) {
            file.leftOut.push_back({rally.line, L10nKey::importOtherVideo});
        } else if (!file.rallies.empty() && *moment.seconds < file.rallies.back().time) {
            file.leftOut.push_back({rally.line, L10nKey::importTimeGoesBack});
        } else {
            video = moment.video;
            file.rallies.push_back(rally);
            file.rallies.back().time = *moment.seconds;
        }
    }
    if (m_firstService && m_firstService->second.seconds && m_firstService->second.video == video) {
        file.firstService = m_firstService->first;
        file.firstService->time = *m_firstService->second.seconds;
    }
}

void ScoutReader::placeByClock(ScoutFile& file) const {
    constexpr std::int64_t day = 86400; // seconds; a match may go on after midnight
    std::optional<std::int64_t> start;
    for (const auto& [rally, moment, server, winner] : m_rallies) {
        if (!moment.clock) {
            file.leftOut.push_back({rally.line, L10nKey::importNoTime});
            continue;
        }
        start = start.value_or(*moment.clock);
        const auto time = static_cast<double>((*moment.clock - *start + day) % day);
        if (!file.rallies.empty() && time < file.rallies.back().time) {
            file.leftOut.push_back({rally.line, L10nKey::importTimeGoesBack});
            continue;
        }
        file.rallies.push_back(rally);
        file.rallies.back().time = time;
    }
}

// The second field of a team's line is its name.
QString teamName(QStringView line) {
    return line.split(u';').value(1).trimmed().toString();
}

}

bool ScoutFile::isScoutFile(QStringView text) {
    return text.trimmed().startsWith(u"[3DATAVOLLEYSCOUT]", Qt::CaseInsensitive) ||
           text.contains(u"\n[3SCOUT]");
}

int ScoutFile::codePage(const QByteArray& bytes) {
    constexpr qsizetype codePageField = 8;
    const qsizetype match = bytes.indexOf("[3MATCH]");
    const qsizetype line = match < 0 ? -1 : bytes.indexOf('\n', match);
    if (line < 0)
        return 0;
    const QByteArray fields =
        bytes.mid(line + 1, std::max<qsizetype>(bytes.indexOf('\n', line + 1) - line, 0));
    const int named = fields.split(';').value(codePageField).trimmed().toInt();
    constexpr int firstCodePage = 100; // smaller numbers have other meanings
    return named >= firstCodePage ? named : 0;
}

ScoutFile ScoutFile::parse(QStringView text) {
    ScoutFile file;
    ScoutReader reader;
    QString section;
    std::size_t team = 0;
    DelimitedText::forEachLine(text, [&](QStringView line, qint64 number) {
        line = line.trimmed();
        if (line.startsWith(u"[3"))
            section = line.toString().toUpper();
        else if (section == u"[3TEAMS]" && team < file.teams.size())
            file.teams[team++] = teamName(line);
        else if (section == u"[3SCOUT]")
            reader.take(line, number);
    });
    reader.finish(file);
    return file;
}

}
