// What of a video could not be read.
#pragma once

#include <cstdint>

namespace pointloom::media {

struct Damage {
    std::int64_t lostPictures = 0;   // could not be decoded and were left out
    std::int64_t faultyPictures = 0; // were decoded with faults that may be seen
    double secondsMissing = 0;       // at the end: named by the file's index, but not there

    bool operator==(const Damage&) const = default;
};

}
