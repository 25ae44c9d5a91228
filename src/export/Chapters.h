// Labelled markers as chapters of the exported video.
#pragma once

#include "export/TimeMap.h"
#include "media/MediaWriter.h"
#include "model/Marker.h"
#include "model/MatchConfig.h"

#include <vector>

namespace pointloom {

/// One chapter for each labelled marker from its time to the next one's, in times of the new file that `map`
/// describes. The time before the first is a chapter named by the match. Empty without labels; the phrases of
/// a count (rules/CountLabel.h) are none. `markers` may be in any order; of several labelled ones at one time
/// the first in the list holds.
std::vector<media::Chapter> chaptersOf(const std::vector<Marker>& markers, const MatchConfig& match,
                                       const TimeMap& map);

/// The list that video sites read from a description, a line each: "0:00 Dravnik - Solvane".
QString chapterList(const std::vector<media::Chapter>& chapters);

}
