// The overlay alone, on a transparent ground, for people who finish their video elsewhere.
#pragma once

#include "export/ExportManager.h"

namespace pointloom::OverlayExport {

enum class Format {
    prores, // ProRes 4444 with straight alpha in a QuickTime movie
    png,    // a picture a frame in a folder: frame_000001.png and so on
};

/// Writes what `ExportManager::exportVideo` would draw over each picture, at the same times and upright, in
/// the size of the preset; without sound. `job.format` does not count. `job.outputPath` is a file that is
/// replaced, or for pictures a folder that is empty or not there yet. Throws ExportError, and
/// ExportCancelled when `isCancelled` said so; what was there stays in both cases. The report tells no
/// damage.
ExportReport run(const ExportJob& job, Format format, const ExportManager::CancelQuery& isCancelled,
                 const ExportManager::ProgressReport& onProgress);

}
