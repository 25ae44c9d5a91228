// The score as text: captions beside the video, and the markers for other programs.
#pragma once

#include "export/ExportJob.h"

namespace pointloom {

/// A score and how long it is shown, in seconds of the new file.
struct Caption {
    double start = 0;
    double end = 0;
    QString text;

    bool operator==(const Caption&) const = default;
};

/// "Dravnik – Solvane", the games of the sets begun so far, the running game after a dot; on a second line
/// the marker's label. One caption for as long as the text stays the same, from the first frame to the last.
std::vector<Caption> captionsOf(const OverlayDescription& overlay, const TimeMap& map);

/// SubRip (.srt).
QByteArray asSubRip(const std::vector<Caption>& captions);

/// WebVTT, https://www.w3.org/TR/webvtt1/.
QByteArray asWebVtt(const std::vector<Caption>& captions);

/// A table that `CSVParser` reads, a line a marker, separated by semicolons; times are those of the source.
QByteArray asTable(const std::vector<Marker>& markers);

}
