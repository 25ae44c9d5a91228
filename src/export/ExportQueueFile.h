// The file in which the queue of exports is kept.
#pragma once

#include "export/ExportQueue.h"

namespace pointloom {

struct StoredQueue {
    bool isPaused = false;
    std::vector<QueuedExport> entries;
};

/// Empty when there is no file. Throws FileError and json::DecodingError.
StoredQueue readQueue(const QString& path);

/// Whole or not at all, and on the disk when it returns. Throws FileError.
void writeQueue(const QString& path, const StoredQueue& queue);

}
