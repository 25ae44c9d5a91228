#include "media/ConversionGraph.h"

#include "media/FFmpegError.h"

namespace pointloom::media {

ConversionGraph::ConversionGraph(const FilterInput& input, const ConversionChain& chain)
    : m_first(input, chain.first)
    , m_secondChain(chain.second) {
    if (chain.tonePeak)
        m_tones.emplace(*chain.tonePeak);
}

void ConversionGraph::push(AVFramePtr frame) {
    const bool isEnd = frame == nullptr;
    m_first.push(std::move(frame));
    if (!m_tones)
        return;
    while (AVFramePtr light = m_first.pull())
        mapTones(std::move(light));
    if (isEnd && m_second)
        m_second->push(nullptr);
}

AVFramePtr ConversionGraph::pull() {
    if (!m_tones)
        return m_first.pull();
    return m_second ? m_second->pull() : nullptr;
}

void ConversionGraph::mapTones(AVFramePtr light) {
    check(av_frame_make_writable(light.get()), "a picture could not be converted");
    m_tones->apply(*light);
    if (!m_second)
        m_second.emplace(FilterInput::of(*light), m_secondChain);
    m_second->push(std::move(light));
}

AVFramePtr convertPicture(AVFramePtr picture, const Conversion& conversion) {
    ConversionGraph graph(FilterInput::of(*picture), conversionChain(conversion));
    graph.push(std::move(picture));
    graph.push(nullptr);
    AVFramePtr converted = graph.pull();
    if (!converted)
        throw MediaError("a picture could not be converted");
    return converted;
}

}
