// How fast an export is and how long it still takes.
#pragma once

#include "export/ExportManager.h"

#include <optional>

namespace pointloom {

/// Averages over the whole export, which keeps both numbers calm.
struct ExportPace {
    double framesPerSecond = 0;
    double secondsLeft = 0;
};

/// Empty until there is something to judge by.
inline std::optional<ExportPace> paceOf(const ExportProgress& progress, double elapsedSeconds) {
    if (elapsedSeconds <= 0 || progress.fraction <= 0)
        return std::nullopt;
    return ExportPace{static_cast<double>(progress.frames) / elapsedSeconds,
                      elapsedSeconds * (1 - progress.fraction) / progress.fraction};
}

}
