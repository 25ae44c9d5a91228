// The score as text: captions beside the video, and the markers for other programs.
#pragma once

#include "export/ExportJob.h"
#include "media/MediaWriter.h"

namespace pointloom {

/// A score; times are those of the new file.
using media::Caption;

/// "Dravnik – Solvane", the games of the sets begun so far, the running game after a dot; on a second line
/// the marker's label. One caption for as long as the text stays the same, from the first frame to the last.
std::vector<Caption> captionsOf(const OverlayDescription& overlay, const TimeMap& map);

/// Chapters and captions inside of the file, as the job's settings have them.
media::FileTexts textsOf(const ExportJob& job, const TimeMap& map);

/// The ending of the captions beside the video; empty when the job has none.
QString endingOfCaptions(const ExportJob& job);

/// Writes the captions beside the finished video, under its name with their ending, where the settings ask
/// for it. The report tells when they could not be written.
void writeCaptionsBeside(ExportReport& report, const ExportJob& job, const TimeMap& map, IfExists ifExists);

/// SubRip (.srt).
QByteArray asSubRip(const std::vector<Caption>& captions);

/// WebVTT, https://www.w3.org/TR/webvtt1/.
QByteArray asWebVtt(const std::vector<Caption>& captions);

/// A table that `CSVParser` reads, a line a marker, separated by semicolons; times are those of the source.
QByteArray asTable(const std::vector<Marker>& markers);

}
