// Buffers of stereo sound.
#pragma once

#include "media/AudioReader.h"

namespace pointloom::media {

/// A frame of `sampleCount` silent samples in the one format that this module passes sound in.
AVFramePtr makeSilence(int sampleCount);

}
