// Runs a conversion: FFmpeg's filters, with the mapping of tones between them where HDR becomes SDR.
#pragma once

#include "media/ConversionChain.h"
#include "media/FilterGraph.h"
#include "media/ToneCurve.h"

namespace pointloom::media {

/// Fed and emptied as `FilterGraph` is.
class ConversionGraph {
public:
    ConversionGraph(const FilterInput& input, const ConversionChain& chain);

    /// Null means the end. Throws MediaError.
    void push(AVFramePtr frame);

    /// The next frame; null when another one must be pushed first, or at the end. Throws MediaError.
    AVFramePtr pull();

private:
    void mapTones(AVFramePtr light);

    FilterGraph m_first;
    std::optional<ToneCurve> m_tones;
    std::string m_secondChain;
    std::optional<FilterGraph> m_second; // stands when the first frame has come to it
};

/// One picture alone. Throws MediaError.
AVFramePtr convertPicture(AVFramePtr picture, const Conversion& conversion);

}
