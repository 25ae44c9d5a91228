#include "playback/ToneMapping.h"

namespace pointloom::playback {

namespace {

constexpr double referenceWhite = 203; // cd/m2, BT.2408
constexpr double highestOfPq = 10'000; // cd/m2, SMPTE ST 2084: what libmpv takes when the file does not say
constexpr double usualPeak = 1000;     // cd/m2, of most PQ masters

}

QByteArray toneMappingFilters(double peak) {
    constexpr double rounding = 0.01;
    const double told = peak > highestOfPq / referenceWhite - rounding ? usualPeak / referenceWhite : peak;
    return "lavfi=[zscale=transfer=linear:npl=203,format=gbrpf32le,zscale=primaries=bt709,"
           "tonemap=tonemap=mobius:param=0.5:desat=2:peak=" +
           QByteArray::number(told, 'f', 4) +
           ",zscale=npl=203:transfer=bt709:matrix=bt709:range=limited,format=yuv420p]";
}

}
