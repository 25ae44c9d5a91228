// Small copies of videos, in which the preview finds any picture quickly: the frames of the original at the
// times of the original.
#pragma once

#include "export/ExportJob.h"
#include "export/segments/SegmentCache.h"
#include "media/Recording.h"

namespace pointloom {

namespace QuickCopy {

/// Seconds that a seek may take without being felt while the playhead is dragged.
constexpr double slowSeek = 0.06;

/// The median time of a few exact seeks in the video on this machine, seconds. Throws MediaError and
/// ExportCancelled.
double seekTime(const media::Recording& video, const ExportControl& control = {});

/// The copy that the camera recorded beside a file, if it has the same frames at the same times, the same
/// shape and the same colours.
std::optional<QString> ofCamera(const QString& video);

/// Names the video's copy in the cache. Throws ExportError when the video cannot be read.
QString keyOf(const media::Recording& video);

/// Makes a copy at `path`: at most 720 lines, a key frame every few frames, HDR shown as the preview does,
/// no sound. Throws MediaError and ExportCancelled.
void make(const media::Recording& video, const QString& path, const ExportControl& control);

/// The copy that the preview of a video should show: the cached one, the camera's or one that is made now and
/// kept. Empty when the video needs none, since seeks in it take less than `slow` seconds, and when there is
/// no space for one. Also when it fails, which is no fault of the video's. Takes as long as it takes.
std::optional<QString> find(const media::Recording& video, const SegmentCache& cache,
                            const ExportControl& control, double slow = slowSeek);

}

}
