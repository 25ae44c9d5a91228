// The size of an export's file, judged by encoding some of its frames.
#pragma once

#include "export/ExportJob.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace pointloom {

/// Bytes of the file that the export would write, mostly within a quarter. Encodes up to 192 frames and 16 s
/// of sound from all over the range, which takes seconds: for a background thread. `isStopped` is polled at
/// each frame. Empty when it was stopped, or the export would fail.
std::optional<std::int64_t> estimatedBytes(const ExportJob& job, const std::function<bool()>& isStopped = {});

}
