// HDR as SDR where nobody else sees to it.
#pragma once

#include <QByteArray>

namespace pointloom::playback {

/// libmpv's list of filters that shows HDR as exports to H.264 show it. `peak` is the brightest light of the
/// source as libmpv tells it, in units of 203 cd/m2 (BT.2408).
QByteArray toneMappingFilters(double peak);

}
