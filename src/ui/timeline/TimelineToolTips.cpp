#include "ui/timeline/TimelineToolTips.h"

#include "ui/common/TimeCode.h"
#include "ui/timeline/ScoreWords.h"
#include "ui/timeline/TimelineTexts.h"

#include <algorithm>
#include <QStringList>

namespace pointloom {

namespace {

/// Lines of plain text: a label from a file must not be taken for markup.
QString toolTip(const QStringList& lines) {
    QStringList escaped;
    for (const QString& line : lines)
        escaped << QStringLiteral("<div style=\"white-space: pre\">%1</div>").arg(line.toHtmlEscaped());
    return escaped.join(QString());
}

QString nameOf(const UiContext& context, std::int64_t team) {
    const auto& config = context.state.matchConfig.value();
    const QString name = config ? (team == 2 ? config->team2 : config->team1).displayName() : QString();
    return name.isEmpty() ? context.text(team == 2 ? L10nKey::team2 : L10nKey::team1) : name;
}

}

QString markerToolTip(const UiContext& context, const Marker& marker) {
    constexpr qsizetype longestLabel = 60;
    QString first = shortTime(marker.startTime, true);
    if (marker.label && !marker.label->isEmpty())
        first += QStringLiteral("  ") + marker.label->left(longestLabel);
    return toolTip({first, scoreInWords(marker.score).full,
                    context.text(L10nKey::serving) + QStringLiteral(": ") +
                        nameOf(context, servingTeamOf(marker.score))});
}

QString cutToolTip(const UiContext& context, const CutZone& cut) {
    const auto [start, end] = std::minmax({cut.start, cut.end});
    return toolTip({QStringLiteral("%1 %2 – %3")
                        .arg(context.text(TimelineTexts::cut), shortTime(start, true), shortTime(end, true)),
                    context.text(TimelineTexts::cutIsNoteLong)});
}

QString trimToolTip(const UiContext& context, const UiText& meaning, double time) {
    return toolTip({context.text(meaning) + QStringLiteral(": ") + shortTime(time, true),
                    context.text(TimelineTexts::resetHandle)});
}

}
