// Exports the overlay alone, on a transparent background, for users who finish their video elsewhere.
#pragma once

#include "export/ExportJob.h"
#include "export/PictureLayout.h"

#include <QImage>

namespace pointloom {

enum class OverlayFormat {
    prores, // ProRes 4444 with straight alpha in a QuickTime movie
    png,    // a PNG per frame in a folder: frame_000001.png and so on
};

/// Writes what `ExportManager::exportVideo` would draw over each frame, at the same times and upright, in the
/// size of the preset; without sound. The job's format is ignored. `job.outputPath` is a file that is
/// replaced, or for PNG a folder that is empty or does not exist yet. Throws ExportError, and
/// ExportCancelled; what was there stays in both cases. The report tells no damage.
ExportReport exportOverlay(const ExportJob& job, OverlayFormat format, const ExportControl& control = {});

/// One picture of it, with the score that holds at `time` (seconds of the source).
QImage renderOverlay(const ExportJob& job, const PictureLayout& layout, double time);

}
