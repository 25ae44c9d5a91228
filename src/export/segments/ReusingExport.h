// Exports that encode only what no export before has encoded.
#pragma once

#include "export/ExportJob.h"
#include "export/segments/SegmentCache.h"

namespace pointloom {

struct ReuseChoices {
    int atOnce = 0;       // segments that are encoded at the same time; 0: as this machine does it best
    bool isFresh = false; // uses no part that was kept, and replaces them
    double spacing = 8;   // seconds of the source between the cuts; tests of short clips take less
};

/// As ExportManager::exportVideo. Encodes segments on threads of their own, as many at a time as fill the
/// processors, takes those that the cache holds from there, and keeps the others there, each as soon as it is
/// finished, so that an export that was cancelled or killed goes on where it was. A video that cannot be cut
/// is exported in one piece, as is one whose segments do not come out.
ExportReport exportReusing(const ExportJob& job, const SegmentCache& cache, const ExportControl& control = {},
                           const ReuseChoices& choices = {});

}
