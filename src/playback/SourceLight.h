// What libmpv tells of the light and the colours of a file, where a screen cannot show them as they are.
#pragma once

#include "media/FrameFormat.h"

#include <optional>
#include <QByteArray>

namespace pointloom::playback {

/// What the numbers of a picture stand for that holds more light or more colours than a screen.
struct SourceLight {
    media::Transfer transfer = media::Transfer::sdr;
    media::Primaries primaries = media::Primaries::bt2020;
    double peak = 0; // brightest light of HDR, cd/m2

    bool operator==(const SourceLight&) const = default;
};

/// From libmpv's names and `peak` in units of SDR white; empty for what a screen shows as it is.
std::optional<SourceLight> sourceLightOf(const QByteArray& transfer, const QByteArray& primaries,
                                         double peak);

}
