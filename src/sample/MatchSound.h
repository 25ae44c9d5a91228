// The sound of the sample: rackets, bounces, the crowd.
#pragma once

#include "sample/Match.h"

#include <vector>

namespace pointloom::sample {

/// Samples from -1 to 1 at `media::audioSampleRate`.
struct MatchSound {
    std::vector<float> left;
    std::vector<float> right;
};

MatchSound matchSound(const Match& match, double seconds);

}
