#include "export/Chapters.h"

#include "model/ScoringEngine.h"
#include "rules/CountLabel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pointloom {

namespace {

QString matchTitle(const MatchConfig& match) {
    return match.team1.displayName() + QStringLiteral(" - ") + match.team2.displayName();
}

// On one line, without what a count keeps in labels.
QString titleOf(const Marker& marker) {
    return withoutPhrase(marker.label).value_or(QString()).simplified();
}

// "1:02:03", or "2:03" below an hour.
QString clock(double seconds) {
    const auto whole = static_cast<qint64>(std::floor(seconds + ScoringEngine::frameTimeTolerance));
    const QString tail = QStringLiteral("%1:%2")
                             .arg(whole / 60 % 60, whole >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
                             .arg(whole % 60, 2, 10, QLatin1Char('0'));
    return whole >= 3600 ? QStringLiteral("%1:%2").arg(whole / 3600).arg(tail) : tail;
}

}

std::vector<media::Chapter> chaptersOf(const std::vector<Marker>& markers, const MatchConfig& match,
                                       const TimeMap& map) {
    using ScoringEngine::frameTimeTolerance;
    const double end = map.parts().back().end;
    std::vector<media::Chapter> chapters;
    double lastTime = -std::numeric_limits<double>::infinity();
    for (const Marker& marker : ScoringEngine::sortedByTime(markers)) {
        const QString title = titleOf(marker);
        // The first of several at one time holds, as it does for the score.
        if (title.isEmpty() || !(marker.startTime > lastTime && marker.startTime < end))
            continue;
        lastTime = marker.startTime;
        // The last marker before the range holds at its start; of several within one frame's tolerance, the
        // last one.
        const double start = map.newTime(marker.startTime);
        if (!chapters.empty() && start <= chapters.back().start + frameTimeTolerance)
            chapters.back().title = title;
        else
            chapters.push_back({.start = start, .end = 0, .title = title});
    }
    if (!chapters.empty() && chapters.front().start > frameTimeTolerance)
        chapters.insert(chapters.begin(), {.start = 0, .end = 0, .title = matchTitle(match)});
    for (std::size_t i = 0; i < chapters.size(); ++i)
        chapters[i].end = i + 1 < chapters.size() ? chapters[i + 1].start : map.length();
    return chapters;
}

QString chapterList(const std::vector<media::Chapter>& chapters) {
    QString list;
    for (const media::Chapter& chapter : chapters)
        list += clock(chapter.start) + u' ' + chapter.title + u'\n';
    return list;
}

}
