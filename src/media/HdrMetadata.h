// What an HDR master says of itself: the display it was graded on and how bright its pictures become.
#pragma once

#include <array>
#include <optional>

namespace pointloom::media {

/// CIE 1931 coordinates in units of 0.00002.
struct Chromaticity {
    int x = 0;
    int y = 0;

    bool operator==(const Chromaticity&) const = default;
};

/// SMPTE ST 2086.
struct MasteringDisplay {
    std::array<Chromaticity, 3> primaries; // red, green, blue
    Chromaticity white;
    int darkest = 0;   // 0.0001 cd/m2
    int brightest = 0; // 0.0001 cd/m2

    bool operator==(const MasteringDisplay&) const = default;
};

/// CTA-861.3, cd/m2; 0 when unknown.
struct ContentLight {
    int brightestPixel = 0;   // MaxCLL
    int brightestAverage = 0; // MaxFALL

    bool operator==(const ContentLight&) const = default;
};

struct HdrMetadata {
    std::optional<MasteringDisplay> display;
    std::optional<ContentLight> light;

    bool operator==(const HdrMetadata&) const = default;
};

}
