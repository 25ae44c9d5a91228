// The scissors: what each press makes of the cuts.
#pragma once

#include "model/Marker.h"

#include <span>

namespace pointloom {

struct CutStep {
    enum class Kind {
        added,  // a new cut from the playhead on
        ended,  // the cut around the playhead ends there
        chosen, // the cut that begins at the playhead is left as it is
    };

    Kind kind = Kind::added;
    CutZone cut;
};

/// `playhead` is in the clip. A new cut takes `length` seconds, or less where the clip or the space to the
/// next cut ends first, and `frame` at least.
CutStep cutStepAt(std::span<const CutZone> cuts, double playhead, double length, double frame,
                  double duration);

}
