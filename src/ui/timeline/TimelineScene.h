// The contents of the timeline and their layout, for painting and hit tests.
#pragma once

#include "session/AppState.h"
#include "ui/timeline/FlagRow.h"
#include "ui/timeline/TimeScale.h"

#include <optional>
#include <QPointF>
#include <QRectF>
#include <QUuid>
#include <vector>

namespace pointloom {

/// The timeline's rows from top to bottom. A folded row is empty.
struct RowLayout {
    QRectF ruler;
    QRectF flags;
    QRectF thumbnails;
    QRectF waveform;
    QRectF trim;
    int flagLanes = 1;
    double laneHeight = 0; // points

    /// Thumbnails and waveform.
    QRectF clip() const { return thumbnails.united(waveform); }
};

/// Divides the height among the rows. The waveform folds first; at `smallestTimelineHeight` there are ruler,
/// one lane of flags, thumbnails and trims. `lineHeight` is that of a line of small text.
RowLayout layOutRows(double width, double height, double lineHeight, bool hasSound);

double smallestTimelineHeight(double lineHeight);

/// The item under the pointer.
struct TimelineHit {
    enum class Kind { nothing, time, marker, trimStart, trimEnd, cut, cutStart, cutEnd, trimLane };

    Kind kind = Kind::nothing;
    QUuid id; // of a marker or a cut

    bool operator==(const TimelineHit&) const = default;
};

/// Where a further file of a split recording begins.
struct Seam {
    double time = 0; // seconds
    QString file;    // its name
};

struct TimelineScene {
    static constexpr double handleWidth = 9; // points, outside the range that the handle bounds

    TimeScale scale;
    RowLayout rows;
    FlagRow flags;
    double frameRate = 30;
    double aspectRatio = 16.0 / 9; // of the upright video
    double playhead = 0;           // seconds
    std::optional<QUuid> selectedMarker;
    std::optional<QUuid> movingMarker; // being dragged: shown at another time
    TrimTimes trim;
    std::vector<CutZone> cuts;
    bool leavesCutsOut = false;
    std::vector<TimeSpan> parts; // that are exported
    std::vector<Seam> seams;
    std::optional<QUuid> selectedCut;
    TimelineHit hover;

    /// The part of a row that the clip takes.
    QRectF clipPartOf(const QRectF& row) const;

    double trimEnd() const;
    QRectF trimStartHandle() const;
    QRectF trimEndHandle() const;

    /// Ticks are at the lower edge of the flags, where their neighbours' words leave space. Points.
    double tickHeight() const { return rows.laneHeight * 0.32; }

    /// The box of a tick is empty. The selected flag is never a tick.
    QRectF boxOf(const Flag& flag) const;
    FlagDetail detailOf(const Flag& flag) const;

    /// From the earlier to the later end of the cut, in the row of trims.
    QRectF boxOf(const CutZone& cut) const;

    TimelineHit hitAt(QPointF point) const;

    /// The seam under the pointer; null when there is none.
    const Seam* seamAt(QPointF point) const;

    /// The marker or the cut that is selected, else a time.
    TimelineHit selectedItem() const;

    /// The visible point nearest to the lower left corner of a flag, a cut or a trim, or to the playhead.
    QPointF placeOf(const TimelineHit& hit) const;

private:
    TimelineHit flagAt(QPointF point) const;
    TimelineHit trimLaneAt(QPointF point) const;
};

}
