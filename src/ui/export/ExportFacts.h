// What the disk has to say about an export: the source's rate and the room that is left.
#pragma once

#include "export/ExportSettings.h"

#include <optional>
#include <QString>

namespace pointloom {

struct ExportFacts {
    std::optional<SourceRate> source;      // absent when the video cannot be read
    bool isFolderThere = false;            // that the output goes into
    std::optional<std::int64_t> freeBytes; // where that folder is or would be
};

/// Reads both files' surroundings: for a worker thread, as disks may sleep.
ExportFacts gatherFacts(const QString& videoPath, const QString& outputPath);

}
