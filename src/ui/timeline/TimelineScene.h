// What a timeline shows at a moment, gathered for painting and for finding what is under the pointer.
#pragma once

#include "session/RangeEdits.h"
#include "ui/timeline/FlagRow.h"
#include "ui/timeline/RowLayout.h"
#include "ui/timeline/TimeScale.h"

#include <optional>
#include <QPointF>
#include <QRectF>
#include <QUuid>
#include <vector>

namespace pointloom {

/// What the pointer is over.
struct TimelineHit {
    enum class Kind { nothing, time, marker, trimStart, trimEnd, cut, cutStart, cutEnd, trimLane };

    Kind kind = Kind::nothing;
    QUuid id; // of a marker or a cut

    bool operator==(const TimelineHit&) const = default;
};

struct TimelineScene {
    static constexpr double handleWidth = 9; // points, outside of the range that the handle bounds

    TimeScale scale;
    RowLayout rows;
    FlagRow flags;
    double frameRate = 30;
    double playhead = 0; // seconds
    std::optional<QUuid> selectedMarker;
    std::optional<QUuid> movingMarker; // shown elsewhere while it is dragged
    TrimTimes trim;
    std::vector<CutZone> cuts;
    std::optional<QUuid> selectedCut;
    TimelineHit hover;

    double trimEnd() const;
    QRectF trimStartHandle() const;
    QRectF trimEndHandle() const;

    /// The place of a flag's box; a tick's is empty. The selected flag always has a box.
    QRectF boxOf(const Flag& flag) const;
    FlagDetail detailOf(const Flag& flag) const;

    /// From its earlier to its later end, in the lane of the trims.
    QRectF boxOf(const CutZone& cut) const;

    TimelineHit hitAt(QPointF point) const;

private:
    TimelineHit flagAt(QPointF point) const;
    TimelineHit trimLaneAt(QPointF point) const;
};

}
