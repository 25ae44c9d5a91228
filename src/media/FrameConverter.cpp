#include "media/FrameConverter.h"

#include "media/ColorTags.h"
#include "media/ConversionChain.h"
#include "media/ConversionGraph.h"
#include "media/FFmpegError.h"
#include "media/PicturePlacement.h"

#include <deque>
#include <optional>

namespace pointloom::media {

namespace {

struct FrameTime {
    std::int64_t timestamp;
    std::int64_t duration;
    Rational timeBase;
};

/// What decides whether a graph that stands can take the next frame.
struct GraphKey {
    FilterInput input;
    ColorDescription color;

    bool operator==(const GraphKey&) const = default;
};

}

struct FrameConverter::State {
    VideoTrackInfo source;
    PictureTarget target;
    QRect picture; // of the target, aligned to whole chroma samples
    std::optional<ConversionGraph> graph;
    GraphKey graphKey;
    std::deque<FrameTime> times; // of the frames inside of the graph
    std::int64_t pushed = 0;
    std::deque<VideoFrame> results;

    void cutOddEdge(AVFrame& frame) const;
    bool isAlreadyRight(const VideoFrame& frame) const;
    void convert(VideoFrame frame);
    void prepareGraph(const VideoFrame& frame);
    void drainGraph();
    void deliver(AVFramePtr converted);
};

FrameConverter::FrameConverter(const VideoTrackInfo& source, const PictureTarget& target)
    : m_state(std::make_unique<State>(State{source, target, alignedPicture(target), {}, {}, {}, 0, {}})) {
    prepareFFmpeg();
    if (pixelFormat(target.format.subsampling, target.format.bitDepth) == AV_PIX_FMT_NONE)
        throw MediaError("pictures cannot be converted to the wanted sample layout");
}

FrameConverter::FrameConverter(FrameConverter&&) noexcept = default;
FrameConverter& FrameConverter::operator=(FrameConverter&&) noexcept = default;
FrameConverter::~FrameConverter() = default;

void FrameConverter::push(VideoFrame frame) {
    m_state->cutOddEdge(*frame.handle());
    if (!m_state->isAlreadyRight(frame)) {
        m_state->convert(std::move(frame));
        return;
    }
    m_state->drainGraph();
    frame.handle()->sample_aspect_ratio = toAv(m_state->target.sampleAspectRatio);
    m_state->results.push_back(std::move(frame));
}

void FrameConverter::finish() {
    m_state->drainGraph();
}

std::optional<VideoFrame> FrameConverter::pull() {
    if (m_state->results.empty())
        return std::nullopt;
    VideoFrame frame = std::move(m_state->results.front());
    m_state->results.pop_front();
    return frame;
}

/// Encoders want even sides: where only that makes the difference, the last column or row goes.
void FrameConverter::State::cutOddEdge(AVFrame& frame) const {
    const QSize wanted = target.orientation.swapsSides() ? picture.size().transposed() : picture.size();
    if (frame.width == wanted.width() + 1)
        --frame.width;
    if (frame.height == wanted.height() + 1)
        --frame.height;
}

bool FrameConverter::State::isAlreadyRight(const VideoFrame& frame) const {
    return !source.interlaced && target.orientation.isIdentity() &&
           QSize(frame.width(), frame.height()) == target.size && picture == QRect(QPoint(), target.size) &&
           frame.format() == target.format;
}

void FrameConverter::State::convert(VideoFrame frame) {
    prepareGraph(frame);
    times.push_back({frame.timestamp(), frame.duration(), frame.timeBase()});
    AVFramePtr entering(av_frame_clone(frame.handle()));
    if (!entering)
        throw MediaError("out of memory");
    entering->pts = pushed++; // the graph needs rising numbers, the times are kept aside
    entering->sample_aspect_ratio = {1, 1};
    graph->push(std::move(entering));
    while (AVFramePtr converted = graph->pull())
        deliver(std::move(converted));
}

void FrameConverter::State::prepareGraph(const VideoFrame& frame) {
    const AVFrame& stored = *frame.handle();
    const auto layout = static_cast<AVPixelFormat>(stored.format);
    const QSize size(stored.width, stored.height);
    const GraphKey key{FilterInput::of(stored), describeColor(tagsOf(stored), size, layout)};
    if (graph && key == graphKey)
        return;
    drainGraph();

    Conversion conversion;
    conversion.sourceLayout = layout;
    conversion.sourceColor = key.color;
    conversion.sourcePeak = peakLight(stored);
    conversion.deinterlace = source.interlaced;
    conversion.orientation = target.orientation;
    conversion.size = picture.size();
    conversion.layout = pixelFormat(target.format.subsampling, target.format.bitDepth);
    conversion.color = target.format.color;
    graph.emplace(key.input, conversionChain(conversion));
    graphKey = key;
}

/// Ends the graph that stands, if any, and delivers what it still holds.
void FrameConverter::State::drainGraph() {
    if (!graph)
        return;
    graph->push(nullptr);
    while (AVFramePtr converted = graph->pull())
        deliver(std::move(converted));
    graph.reset();
    times.clear();
}

void FrameConverter::State::deliver(AVFramePtr converted) {
    if (times.empty())
        return;
    const FrameTime time = times.front();
    times.pop_front();
    converted->sample_aspect_ratio = toAv(target.sampleAspectRatio);
    setTags(*converted, tagsFor(target.format.color));
    VideoFrame frame =
        placePicture(VideoFrame(std::move(converted), time.timeBase), target.size, picture, target.format);
    frame.setTimestamp(time.timestamp, time.duration);
    results.push_back(std::move(frame));
}

}
