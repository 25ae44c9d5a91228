#include "ui/timeline/CutStep.h"

#include <algorithm>

namespace pointloom {

CutStep cutStepAt(std::span<const CutZone> cuts, double playhead, double length, double frame,
                  double duration) {
    const CutZone* around = nullptr; // of several, the one that begins last
    double limit = duration;
    for (const CutZone& cut : cuts) {
        const auto [start, end] = std::minmax(cut.start, cut.end);
        if (start > playhead + frame / 2)
            limit = std::min(limit, start);
        else if (end > playhead + frame / 2 && (!around || start > std::min(around->start, around->end)))
            around = &cut;
    }
    if (!around) {
        const double start = std::min(playhead, std::max(0.0, duration - frame));
        return {CutStep::Kind::added, {QUuid::createUuid(), start, std::min(start + length, limit)}};
    }
    const double start = std::min(around->start, around->end);
    if (playhead < start + frame / 2)
        return {CutStep::Kind::chosen, *around};
    return {CutStep::Kind::ended, {around->id, start, playhead}};
}

}
