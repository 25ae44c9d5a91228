// The frames that an export takes from its source and their places in the new file.
#pragma once

#include "export/ExportJob.h"
#include "media/MediaInfo.h"
#include "media/MediaWriter.h"

namespace pointloom {

/// Consecutive frames of the source.
struct ExportPart {
    TrimRange range;
    std::int64_t offset = 0; // of its first frame in the new file, ticks of the source's video track
};

struct ExportTimeline {
    std::vector<ExportPart> parts; // in order; at least one
    TimeMap map;                   // of the same parts
    std::int64_t expectedFrames = 0;
};

/// The windows of the job's range that are exported, in order: the job's own; else, when it keeps rallies or
/// leaves something out, one for each kept part, with its bounds at frames; else one without bounds. Reads
/// the video's frame times around the bounds. Throws ExportError when nothing is kept or the video cannot be
/// read.
std::vector<FrameWindow> frameWindows(const ExportJob& job, const media::MediaInfo& info);

/// `info` describes the job's video. Throws as above.
ExportTimeline exportTimeline(const ExportJob& job, const media::MediaInfo& info);

/// Ticks of the new file before the frame at `timestamp`.
std::int64_t newTicksBefore(std::int64_t timestamp, const ExportJob& job,
                            const std::vector<FrameWindow>& windows, media::Rational timeBase);

/// The chapters that the job asks for.
std::vector<media::Chapter> chaptersOf(const ExportJob& job, const TimeMap& map);

}
