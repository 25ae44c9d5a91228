// Burns the scoreboard into a video: one call exports one file.
#pragma once

#include "export/ExportJob.h"
#include "media/VideoReader.h"

#include <QImage>

namespace pointloom::ExportManager {

/// Blocks until the file is complete. `isCancelled` is polled at each frame, at each run of sound and while a
/// frame is waited for. The file takes its place when it is whole and on the disk. Throws ExportError, and
/// ExportCancelled; what was there stays in both cases, and nothing else is left. A damaged video gives what
/// can be decoded. `source` may be the job's recording, open already, of which nothing was read.
ExportReport exportVideo(const ExportJob& job, const ExportControl& control = {},
                         std::optional<media::VideoReader> source = {});

/// The frame shown at `time` (seconds), upright, with the overlay that the export would give it.
/// Throws ExportError.
QImage renderStill(const ExportJob& job, double time);

/// A still whose picture is not cropped yet.
struct StillLayers {
    QImage picture; // the whole source, upright, without overlay
    QImage overlay; // of the exported frame, in its size
};

/// Throws ExportError.
StillLayers renderStillLayers(const ExportJob& job, double time);

}
