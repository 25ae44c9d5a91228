#include "ui/timeline/RowLayout.h"

#include <algorithm>

namespace pointloom {

namespace {

constexpr double rowGap = 2; // points between rows
constexpr double smallestThumbnails = 40;
constexpr double largestThumbnails = 112;
constexpr double smallestWaveform = 24;
constexpr double comfortableClip = 80; // before flags take another lane
constexpr double thumbnailShare = 0.6;
constexpr int mostLanes = 3;

double rulerHeight(double lineHeight) {
    return lineHeight + 8;
}

double laneHeight(double lineHeight) {
    return lineHeight + 8;
}

double trimHeight(double lineHeight) {
    return std::max(20.0, lineHeight + 4);
}

}

double smallestTimelineHeight(double lineHeight) {
    return rulerHeight(lineHeight) + laneHeight(lineHeight) + trimHeight(lineHeight) + 2 * rowGap;
}

RowLayout layOutRows(double width, double height, double lineHeight, bool hasSound) {
    double rest = std::max(0.0, height - smallestTimelineHeight(lineHeight) - rowGap);
    RowLayout rows;
    rows.laneHeight = laneHeight(lineHeight);
    while (rows.flagLanes < mostLanes && rest - rows.laneHeight >= comfortableClip * rows.flagLanes) {
        ++rows.flagLanes;
        rest -= rows.laneHeight;
    }

    double waveform = hasSound && rest >= smallestWaveform ? smallestWaveform : 0;
    double thumbnails = 0;
    const double between = waveform > 0 ? rowGap : 0;
    if (rest - waveform - between >= smallestThumbnails) {
        thumbnails = rest - between;
        if (waveform > 0)
            thumbnails = std::clamp((rest - between) * thumbnailShare, smallestThumbnails, largestThumbnails);
        waveform = waveform > 0 ? rest - between - thumbnails : 0;
    } else if (waveform > 0) {
        waveform = rest;
    }

    double top = 0;
    const auto take = [&](double rowHeight, double below) {
        const QRectF row(0, top, width, rowHeight);
        top += rowHeight > 0 ? rowHeight + below : 0;
        return row;
    };
    rows.ruler = take(rulerHeight(lineHeight), 0);
    rows.flags = take(rows.laneHeight * rows.flagLanes, rowGap);
    rows.thumbnails = take(thumbnails, rowGap);
    rows.waveform = take(waveform, rowGap);
    rows.trim = take(trimHeight(lineHeight), 0);
    return rows;
}

}
