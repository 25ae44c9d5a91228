// A chain of FFmpeg's video filters with one way in and one way out.
#pragma once

#include "media/FFmpegHandles.h"

#include <optional>
#include <string>

namespace pointloom::media {

/// What the frames that enter a chain have in common.
struct FilterInput {
    int width = 0;
    int height = 0;
    AVPixelFormat layout = AV_PIX_FMT_NONE;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;

    static FilterInput of(const AVFrame& frame);
    bool operator==(const FilterInput&) const = default;
};

class FilterGraph {
public:
    /// `chain` as avfilter_graph_parse reads it, for example "hflip,scale=640:360". Throws MediaError.
    FilterGraph(const FilterInput& input, const std::string& chain);

    /// Null means the end. Throws MediaError.
    void push(AVFramePtr frame);

    /// The next frame; null when another one must be pushed first, or at the end. Throws MediaError.
    AVFramePtr pull();

private:
    FilterGraphPtr m_graph;
    AVFilterContext* m_source = nullptr; // owned by the graph
    AVFilterContext* m_sink = nullptr;   // owned by the graph
};

}
