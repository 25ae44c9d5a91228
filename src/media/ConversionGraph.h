// Runs a conversion: FFmpeg's filters, with the mapping of light between them where that changes.
#pragma once

#include "media/ConversionChain.h"
#include "media/FilterGraph.h"

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
    void mapLight(AVFramePtr light);

    FilterGraph m_first;
    std::optional<LightMapping> m_light;
    std::string m_secondChain;
    std::optional<FilterGraph> m_second; // made for the first frame that gets there
};

/// One picture alone. Throws MediaError.
AVFramePtr convertPicture(AVFramePtr picture, const Conversion& conversion);

}
