#include "playback/SourceLight.h"

#include "media/ToneLevels.h"

namespace pointloom::playback {

namespace {

using media::Primaries;
using media::Transfer;

Transfer transferNamed(const QByteArray& name) {
    if (name == "pq")
        return Transfer::pq;
    return name == "hlg" ? Transfer::hlg : Transfer::sdr;
}

Primaries primariesNamed(const QByteArray& name, Primaries otherwise) {
    if (name == "bt.2020")
        return Primaries::bt2020;
    if (name == "display-p3" || name == "dci-p3")
        return Primaries::displayP3;
    return name == "bt.709" ? Primaries::bt709 : otherwise;
}

}

std::optional<SourceLight> sourceLightOf(const QByteArray& transfer, const QByteArray& primaries,
                                         double peak) {
    using namespace media::ToneLevels;
    SourceLight light;
    light.transfer = transferNamed(transfer);
    const bool isHdr = light.transfer != Transfer::sdr;
    light.primaries = primariesNamed(primaries, isHdr ? Primaries::bt2020 : Primaries::bt709);
    if (!isHdr)
        return light.primaries == Primaries::bt709 ? std::nullopt : std::optional(light);
    // What libmpv takes when the file does not say: all that SMPTE ST 2084 can hold.
    constexpr double highest = 9'999; // cd/m2
    light.peak = peak > 1 && peak * referenceWhite < highest ? peak * referenceWhite : usualPeak;
    return light;
}

}
