// The sound of the sample: rackets, bounces, the crowd.
#pragma once

#include "Match.h"

#include <QByteArray>

namespace pointloom::samples {

/// A WAV file of `seconds`: 16 bits, stereo, 48000 Hz.
QByteArray matchSound(const Match& match, double seconds);

}
