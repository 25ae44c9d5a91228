#include "ui/timeline/TimelineToolTip.h"

#include "ui/common/MarkerText.h"
#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"

#include <algorithm>

namespace pointloom {

namespace {

QString trimToolTip(const UiContext& context, L10nKey meaning, double time) {
    return plainToolTip({context.text(meaning) + QStringLiteral(": ") + shortTime(time, true),
                         context.text(L10nKey::timelineResetHandle)});
}

}

QString timelineToolTip(const UiContext& context, const TimelineScene& scene, const TimelineHit& hit) {
    using Hit = TimelineHit::Kind;
    switch (hit.kind) {
    case Hit::marker: {
        const auto& markers = context.state.markers.value();
        const auto marker = std::ranges::find(markers, hit.id, &Marker::id);
        return marker == markers.end() ? QString() : markerAsToolTip(context, *marker);
    }
    case Hit::cut:
    case Hit::cutStart:
    case Hit::cutEnd: {
        const auto cut = std::ranges::find(scene.cuts, hit.id, &CutZone::id);
        return cut == scene.cuts.end() ? QString() : cutToolTip(context, *cut, fateOfCuts(context));
    }
    case Hit::trimStart:
        return trimToolTip(context, L10nKey::timelineExportStart, scene.trim.start);
    case Hit::trimEnd:
        return trimToolTip(context, L10nKey::timelineExportEnd, scene.trimEnd());
    case Hit::time:
    case Hit::trimLane:
    case Hit::nothing:
        break;
    }
    return {};
}

QString fateOfCuts(const UiContext& context) {
    return context.text(context.state.parts.value().withoutCuts ? L10nKey::timelineCutGoesLong
                                                                : L10nKey::timelineCutStaysLong);
}

QString cutRange(const UiContext& context, const CutZone& cut) {
    const auto [start, end] = std::minmax({cut.start, cut.end});
    return QStringLiteral("%1 %2 – %3")
        .arg(context.text(L10nKey::timelineCut), shortTime(start, true), shortTime(end, true));
}

QString cutToolTip(const UiContext& context, const CutZone& cut, const QString& note) {
    return plainToolTip({cutRange(context, cut), note});
}

}
