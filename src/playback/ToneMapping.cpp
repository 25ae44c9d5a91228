#include "playback/ToneMapping.h"

#include "media/ToneLevels.h"

namespace pointloom::playback {

namespace {

using namespace media::ToneLevels;

constexpr double highestOfPq = 10'000; // cd/m2, SMPTE ST 2084: what libmpv takes when the file does not say

}

QByteArray toneMappingFilters(double peak) {
    constexpr double rounding = 0.01;
    const double told = peak > highestOfPq / referenceWhite - rounding ? usualPeak / referenceWhite : peak;
    const QByteArray white = QByteArray::number(referenceWhite);
    return "lavfi=[zscale=transfer=linear:npl=" + white +
           ",format=gbrpf32le,zscale=primaries=bt709,tonemap=tonemap=mobius:param=" +
           QByteArray::number(knee) + ":desat=" + QByteArray::number(colorLimit) +
           ":peak=" + QByteArray::number(told, 'f', 4) + ",zscale=npl=" + white +
           ":transfer=bt709:matrix=bt709:range=limited,format=yuv420p]";
}

}
