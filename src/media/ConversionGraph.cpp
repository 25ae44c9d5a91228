#include "media/ConversionGraph.h"

#include "media/FFmpegError.h"

namespace pointloom::media {

ConversionGraph::ConversionGraph(const FilterInput& input, const ConversionChain& chain)
    : m_first(input, chain.first)
    , m_light(chain.light)
    , m_secondChain(chain.second) {}

void ConversionGraph::push(AVFramePtr frame) {
    const bool isEnd = frame == nullptr;
    m_first.push(std::move(frame));
    if (!m_light)
        return;
    while (AVFramePtr light = m_first.pull())
        mapLight(std::move(light));
    if (isEnd && m_second)
        m_second->push(nullptr);
}

AVFramePtr ConversionGraph::pull() {
    if (!m_light)
        return m_first.pull();
    return m_second ? m_second->pull() : nullptr;
}

void ConversionGraph::mapLight(AVFramePtr light) {
    check(av_frame_make_writable(light.get()), "a picture could not be converted");
    m_light->apply(*light);
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
