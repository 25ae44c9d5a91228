// The numbers by which HDR becomes SDR: exports and the player, which have different means, follow the same
// ones.
#pragma once

namespace pointloom::media::ToneLevels {

constexpr double referenceWhite = 203; // cd/m2, BT.2408: HDR light that becomes SDR white
constexpr double usualPeak = 1000;     // cd/m2, of an HLG display and of most PQ masters
constexpr double knee = 0.5;           // in units of SDR white: light below stays as it is
constexpr double colorLimit = 2;       // in units of SDR white: colours above it fade

}
