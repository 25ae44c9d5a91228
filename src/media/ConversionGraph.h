// Runs conversions of frames: FFmpeg's filters, with the mapping of light between two chains of them where
// the light changes.
#pragma once

#include "media/ConversionChain.h"
#include "media/FFmpeg.h"

#include <optional>
#include <string>

namespace pointloom::media {

/// The properties that all frames entering a chain have in common.
struct FilterInput {
    int width = 0;
    int height = 0;
    AVPixelFormat layout = AV_PIX_FMT_NONE;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;

    static FilterInput of(const AVFrame& frame);
    bool operator==(const FilterInput&) const = default;
};

/// A chain of FFmpeg's video filters with one input and one output.
class FilterGraph {
public:
    /// `chain` as avfilter_graph_parse reads it, for example "hflip,scale=640:360". Throws MediaError.
    FilterGraph(const FilterInput& input, const std::string& chain);

    /// Takes a frame; null flushes. Throws MediaError.
    void push(AVFramePtr frame);

    /// The next frame; null when another one must be pushed first, or at the end. Throws MediaError.
    AVFramePtr pull();

private:
    FilterGraphPtr m_graph;
    AVFilterContext* m_source = nullptr; // owned by the graph
    AVFilterContext* m_sink = nullptr;   // owned by the graph
};

/// A whole conversion, used as `FilterGraph` is.
class ConversionGraph {
public:
    /// Throws MediaError.
    ConversionGraph(const FilterInput& input, const ConversionChain& chain);

    /// Takes a frame; null flushes. Throws MediaError.
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

/// Converts a single frame. Throws MediaError.
AVFramePtr convertFrame(AVFramePtr frame, const Conversion& conversion);

}
