// Shares the timeline's height among its rows.
#pragma once

#include <QRectF>

namespace pointloom {

/// From top to bottom. A row that has folded away is empty.
struct RowLayout {
    QRectF ruler;
    QRectF flags;
    QRectF thumbnails;
    QRectF waveform;
    QRectF trim;
    int flagLanes = 1;
    double laneHeight = 0; // points

    /// The pictures and the sound together: the body of the clip.
    QRectF clip() const { return thumbnails.united(waveform); }
};

/// Ruler, one lane of flags and trims always stay, `smallestTimelineHeight` shows nothing else. Thumbnails
/// fold first, then the waveform. `lineHeight` is that of a line of small text.
RowLayout layOutRows(double width, double height, double lineHeight, bool hasSound);

double smallestTimelineHeight(double lineHeight);

}
