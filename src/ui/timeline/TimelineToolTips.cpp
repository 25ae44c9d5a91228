#include "ui/timeline/TimelineToolTips.h"

#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"

#include <algorithm>

namespace pointloom {

QString markerToolTip(const UiContext& context, const Marker& marker) {
    constexpr qsizetype longestLabel = 60;
    QString first = shortTime(marker.startTime, true);
    if (marker.label && !marker.label->isEmpty())
        first += QStringLiteral("  ") + marker.label->left(longestLabel);
    return plainToolTip({first, shortScore(marker.score).full,
                         context.text(L10nKey::serving) + QStringLiteral(": ") +
                             sideName(context, servingSide(marker.score))});
}

QString cutToolTip(const UiContext& context, const CutZone& cut) {
    const auto [start, end] = std::minmax({cut.start, cut.end});
    return plainToolTip(
        {QStringLiteral("%1 %2 – %3")
             .arg(context.text(L10nKey::timelineCut), shortTime(start, true), shortTime(end, true)),
         context.text(L10nKey::timelineCutIsNoteLong)});
}

QString trimToolTip(const UiContext& context, L10nKey meaning, double time) {
    return plainToolTip({context.text(meaning) + QStringLiteral(": ") + shortTime(time, true),
                         context.text(L10nKey::timelineResetHandle)});
}

}
