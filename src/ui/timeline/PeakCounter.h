// Counts a run of sound down to its peaks.
#pragma once

#include "media/AudioReader.h"

#include <QByteArray>

namespace pointloom {

class PeakCounter {
public:
    /// Adds the peaks that are whole by now to `peaks`, one byte each.
    void add(const media::AudioFrame& sound, QByteArray& peaks);

private:
    float m_loudest = 0; // of the peak that is being counted, 0..1
    int m_samples = 0;
};

}
