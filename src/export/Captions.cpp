#include "export/Captions.h"

#include "export/ExportTimeline.h"
#include "model/ScoreText.h"
#include "model/ScoringEngine.h"

#include <algorithm>
#include <cmath>
#include <QStringList>

namespace pointloom {

namespace {

QString scoreText(const SportScoreState& score) {
    const QString none = QStringLiteral("0–0");
    const QString game = gameText(score);
    const QString sets = setTexts(score).join(u' ');
    if (game == none)
        return sets.isEmpty() ? none : sets;
    const QString separator = QStringLiteral(" · ");
    if (!sets.isEmpty())
        return sets + separator + game;
    // Points of the first game are not games of the first set.
    return std::holds_alternative<ScoreState>(score) ? none + separator + game : game;
}

QString asCueText(QString text) {
    return text.replace(u'&', QStringLiteral("&amp;"))
        .replace(u'<', QStringLiteral("&lt;"))
        .replace(u'>', QStringLiteral("&gt;"));
}

QString captionText(const OverlayDescription& overlay, double sourceTime) {
    const Marker* marker = ScoringEngine::markerAtTime(overlay.markers, sourceTime);
    QString text = displayName(overlay.config).simplified() + QStringLiteral("  ") +
                   scoreText(marker ? marker->score : overlay.initialScore);
    if (marker && marker->label && !marker->label->trimmed().isEmpty())
        text += u'\n' + marker->label->simplified();
    return text;
}

// "00:01:02,500"
QString timeText(double seconds, QChar decimalSign) {
    constexpr int perSecond = 1000;
    constexpr int sixty = 60;
    const qint64 milliseconds = std::llround(seconds * perSecond);
    const qint64 whole = milliseconds / perSecond;
    return QStringLiteral("%1:%2:%3%4%5")
        .arg(whole / sixty / sixty, 2, 10, QLatin1Char('0'))
        .arg(whole / sixty % sixty, 2, 10, QLatin1Char('0'))
        .arg(whole % sixty, 2, 10, QLatin1Char('0'))
        .arg(decimalSign)
        .arg(milliseconds % perSecond, 3, 10, QLatin1Char('0'));
}

QString spanText(const Caption& caption, QChar decimalSign) {
    return timeText(caption.start, decimalSign) + QStringLiteral(" --> ") +
           timeText(caption.end, decimalSign);
}

QString quoted(QString field) {
    return u'"' + field.simplified().replace(u'"', QStringLiteral("\"\"")) + u'"';
}

}

std::vector<Caption> captionsOf(const OverlayDescription& overlay, const TimeMap& map) {
    std::vector<double> times{0};
    for (const Marker& marker : overlay.markers)
        times.push_back(map.newTime(marker.startTime));
    double seam = 0;
    for (const TimeSpan& part : map.parts())
        times.push_back(seam += part.end - part.start);
    std::ranges::sort(times);

    std::vector<Caption> captions;
    for (const double time : times) {
        if (time < 0 || time >= map.length())
            continue;
        const QString text = captionText(overlay, map.sourceTime(time));
        if (captions.empty() || captions.back().text != text)
            captions.push_back({time, map.length(), text});
        if (captions.size() > 1)
            captions[captions.size() - 2].end = captions.back().start;
    }
    return captions;
}

media::FileTexts textsOf(const ExportJob& job, const TimeMap& map) {
    media::FileTexts texts{.chapters = chaptersOf(job, map)};
    if (job.segment)
        texts.comment = job.segment->comment;
    else if (job.settings.captions == CaptionsPlace::track)
        texts.captions = captionsOf(job.overlay, map);
    return texts;
}

QString endingOfCaptions(const ExportJob& job) {
    const auto place = job.settings.captions;
    if (!place || *place == CaptionsPlace::track || job.segment)
        return {};
    const std::string_view ending = rawValue(*place);
    return QString::fromUtf8(ending.data(), static_cast<qsizetype>(ending.size()));
}

void writeCaptionsBeside(ExportReport& report, const ExportJob& job, const TimeMap& map, IfExists ifExists) {
    const QString ending = endingOfCaptions(job);
    if (ending.isEmpty())
        return;
    const QString path = pathBeside(report.outputPath, ending);
    const auto inputs = inputFiles(job);
    if (const InputFile* replaced = replacedInput(path, inputs)) {
        report.captionsFault = path + QStringLiteral(": would replace ") + replaced->role;
        return;
    }
    const auto captions = captionsOf(job.overlay, map);
    try {
        writeWhole(path,
                   job.settings.captions == CaptionsPlace::subRip ? asSubRip(captions) : asWebVtt(captions),
                   Access::usual, ifExists);
    } catch (const FileError& error) {
        report.captionsFault = QString::fromUtf8(error.what());
    }
}

QByteArray asSubRip(const std::vector<Caption>& captions) {
    QString text;
    int number = 0;
    for (const Caption& caption : captions)
        text += QStringLiteral("%1\n%2\n%3\n\n").arg(++number).arg(spanText(caption, u','), caption.text);
    return text.toUtf8();
}

QByteArray asWebVtt(const std::vector<Caption>& captions) {
    QString text = QStringLiteral("WEBVTT\n\n");
    for (const Caption& caption : captions)
        text += QStringLiteral("%1\n%2\n\n").arg(spanText(caption, u'.'), asCueText(caption.text));
    return text.toUtf8();
}

QByteArray asTable(const std::vector<Marker>& markers) {
    std::size_t mostSets = 0;
    for (const Marker& marker : markers)
        mostSets = std::max(mostSets, setsOf(marker.score).size());
    QString text = QStringLiteral("startTime;label;servingTeam;game_team1;game_team2");
    for (std::size_t set = 1; set <= mostSets; ++set)
        text += QStringLiteral(";set%1_t1;set%1_t2").arg(set);
    text += u'\n';
    for (const Marker& marker : markers) {
        const auto [game1, game2] = gameTexts(marker.score);
        QStringList fields{QString::number(marker.startTime, 'g', QLocale::FloatingPointShortest),
                           quoted(marker.label.value_or(QString())),
                           QString::number(teamNumber(servingSide(marker.score))), game1, game2};
        auto sets = setsOf(marker.score);
        sets.resize(mostSets);
        for (const SetScore& set : sets)
            fields += {QString::number(set.team1), QString::number(set.team2)};
        text += fields.join(u';') + u'\n';
    }
    return text.toUtf8();
}

}
