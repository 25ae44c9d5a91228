#include "media/ConversionGraph.h"

namespace pointloom::media {

namespace {

constexpr const char* failure = "the picture conversion could not be set up";

struct FilterEndDeleter {
    void operator()(AVFilterInOut* end) const { avfilter_inout_free(&end); }
};
using FilterEndPtr = std::unique_ptr<AVFilterInOut, FilterEndDeleter>;

FilterEndPtr makeEnd(const char* name, AVFilterContext* filter) {
    FilterEndPtr end = allocated(FilterEndPtr(avfilter_inout_alloc()));
    end->name = av_strdup(name);
    end->filter_ctx = filter;
    return end;
}

std::string sourceArguments(const FilterInput& input) {
    // The time base is a placeholder: frames are matched to their times by order, not by these numbers.
    std::string arguments = "width=" + std::to_string(input.width) +
                            ":height=" + std::to_string(input.height) +
                            ":pix_fmt=" + std::to_string(input.layout) + ":time_base=1/1000:sar=1/1";
#if LIBAVFILTER_VERSION_MAJOR >= 10
    arguments += ":colorspace=" + std::to_string(input.matrix) + ":range=" + std::to_string(input.range);
#endif
    return arguments;
}

}

FilterInput FilterInput::of(const AVFrame& frame) {
    return {frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.colorspace,
            frame.color_range};
}

FilterGraph::FilterGraph(const FilterInput& input, const std::string& chain)
    : m_graph(allocated(FilterGraphPtr(avfilter_graph_alloc()))) {
    m_graph->nb_threads = 0; // as many as there are cores
    check(avfilter_graph_create_filter(&m_source, avfilter_get_by_name("buffer"), "in",
                                       sourceArguments(input).c_str(), nullptr, m_graph.get()),
          failure);
    check(avfilter_graph_create_filter(&m_sink, avfilter_get_by_name("buffersink"), "out", nullptr, nullptr,
                                       m_graph.get()),
          failure);

    AVFilterInOut* outputs = makeEnd("in", m_source).release(); // as seen from the chain
    AVFilterInOut* inputs = makeEnd("out", m_sink).release();
    const int parsed = avfilter_graph_parse_ptr(m_graph.get(), chain.c_str(), &inputs, &outputs, nullptr);
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    check(parsed, failure);
    check(avfilter_graph_config(m_graph.get(), nullptr), failure);
}

void FilterGraph::push(AVFramePtr frame) {
    check(av_buffersrc_add_frame(m_source, frame.get()), "a picture could not be converted");
}

AVFramePtr FilterGraph::pull() {
    AVFramePtr frame = makeFrame();
    const int result = av_buffersink_get_frame(m_sink, frame.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
        return nullptr;
    check(result, "a picture could not be converted");
    return frame;
}

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

AVFramePtr convertFrame(AVFramePtr frame, const Conversion& conversion) {
    ConversionGraph graph(FilterInput::of(*frame), conversionChain(conversion));
    graph.push(std::move(frame));
    graph.push(nullptr);
    AVFramePtr converted = graph.pull();
    if (!converted)
        throw MediaError("a picture could not be converted");
    return converted;
}

}
