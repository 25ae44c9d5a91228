#include "media/FrameConverter.h"

#include "media/ColorTags.h"
#include "media/ConversionGraph.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace pointloom::media {

namespace {

struct FrameTime {
    std::int64_t timestamp;
    std::int64_t duration;
    Rational timeBase;
};

/// Decides whether the current graph can be reused for the next frame.
struct GraphKey {
    FilterInput input;
    ColorDescription color;

    bool operator==(const GraphKey&) const = default;
};

struct Span {
    int begin;
    int length;
};

Span alignedSpan(int begin, int length, int limit) {
    const auto even = [](int value) { return (value + 1) / 2 * 2; };
    const int first = std::clamp(even(begin), 0, std::max(limit - 2, 0));
    const int last = std::clamp(even(begin + length), first + 2, std::max(limit, first + 2));
    return {first, last - first};
}

/// `target.picture` inside of the frame, its edges on whole chroma samples, at least two pixels each way.
QRect alignedPicture(const FrameTarget& target) {
    const Span across = alignedSpan(target.picture.x(), target.picture.width(), target.size.width());
    const Span down = alignedSpan(target.picture.y(), target.picture.height(), target.size.height());
    return {across.begin, down.begin, across.length, down.length};
}

/// `picture` itself when it fills a frame of `size`, else a black frame with the picture at `place`.
VideoFrame placePicture(VideoFrame picture, QSize size, QRect place, const FrameFormat& format) {
    const AVFrame& source = *picture.handle();
    // A filter that flips may return rows from bottom to top; all that follows needs them from top to bottom.
    if (place == QRect(QPoint(), size) && source.linesize[0] > 0)
        return picture;

    VideoFrame frame = makeBlackFrame(size.width(), size.height(), format, picture.timeBase());
    check(av_frame_copy_props(frame.handle(), &source), "a picture could not be copied");
    const std::array<Plane, 3> from = picture.planes();
    const std::array<Plane, 3> to = frame.planes();
    const int bytesPerSample = format.bitDepth == 8 ? 1 : 2;
    for (std::size_t i = 0; i < to.size(); ++i) {
        const int left = i == 0 ? place.x() : place.x() >> format.chromaShiftX();
        const int top = i == 0 ? place.y() : place.y() >> format.chromaShiftY();
        const std::ptrdiff_t rowBytes = static_cast<std::ptrdiff_t>(from[i].width) * bytesPerSample;
        for (int y = 0; y < from[i].height; ++y)
            std::copy_n(from[i].data + y * from[i].bytesPerRow, rowBytes,
                        to[i].data + (top + y) * to[i].bytesPerRow + left * bytesPerSample);
    }
    return frame;
}

/// A part of the upright picture as the part of the stored one that becomes it; both in fractions.
QRectF unturned(const QRectF& upright, const Orientation& orientation) {
    QRectF part = upright;
    for (int turn = 0; turn < orientation.quarterTurns; ++turn)
        part = {part.y(), 1 - part.x() - part.width(), part.height(), part.width()};
    if (orientation.mirrored)
        part.moveLeft(1 - part.x() - part.width());
    return part;
}

/// Whole chroma samples, the nearest to `begin` and `length`, which are fractions of `whole` samples.
Span croppedSpan(double begin, double length, int whole) {
    const auto even = [whole](double fraction) {
        return 2 * static_cast<int>(std::lround(fraction * whole / 2));
    };
    const int limit = whole & ~1;
    const int size = std::clamp(even(length), 2, std::max(limit, 2));
    return {std::clamp(even(begin), 0, std::max(limit - size, 0)), size};
}

/// Null where all of the picture is seen.
QRect cropOf(const AVFrame& stored, const FrameTarget& target) {
    if (target.seen == wholePicture)
        return {};
    const QRectF part = unturned(target.seen, target.orientation);
    const Span across = croppedSpan(part.x(), part.width(), stored.width);
    const Span down = croppedSpan(part.y(), part.height(), stored.height);
    return {across.begin, down.begin, across.length, down.length};
}

Conversion conversionFrom(const AVFrame& stored) {
    Conversion conversion;
    conversion.sourceLayout = static_cast<AVPixelFormat>(stored.format);
    conversion.sourceColor =
        describeColor(tagsOf(stored), QSize(stored.width, stored.height), conversion.sourceLayout);
    conversion.sourcePeak = peakLight(stored);
    return conversion;
}

}

struct FrameConverter::State {
    VideoTrackInfo source;
    FrameTarget target;
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

FrameConverter::FrameConverter(const VideoTrackInfo& source, const FrameTarget& target)
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

/// Removes the last column or row where that alone makes the sides even, which encoders require.
void FrameConverter::State::cutOddEdge(AVFrame& frame) const {
    const QSize wanted = target.orientation.swapsSides() ? picture.size().transposed() : picture.size();
    if (frame.width == wanted.width() + 1)
        --frame.width;
    if (frame.height == wanted.height() + 1)
        --frame.height;
}

bool FrameConverter::State::isAlreadyRight(const VideoFrame& frame) const {
    return !source.interlaced && target.orientation.isIdentity() && target.seen == wholePicture &&
           QSize(frame.width(), frame.height()) == target.size && picture == QRect(QPoint(), target.size) &&
           frame.format() == target.format;
}

void FrameConverter::State::convert(VideoFrame frame) {
    prepareGraph(frame);
    times.push_back({frame.timestamp(), frame.duration(), frame.timeBase()});
    AVFramePtr entering = cloned(*frame.handle());
    entering->pts = pushed++; // the graph needs rising numbers, the times are in `times`
    entering->sample_aspect_ratio = {1, 1};
    graph->push(std::move(entering));
    while (AVFramePtr converted = graph->pull())
        deliver(std::move(converted));
}

void FrameConverter::State::prepareGraph(const VideoFrame& frame) {
    const AVFrame& stored = *frame.handle();
    Conversion conversion = conversionFrom(stored);
    const GraphKey key{FilterInput::of(stored), conversion.sourceColor};
    if (graph && key == graphKey)
        return;
    drainGraph();

    conversion.deinterlace = source.interlaced;
    conversion.crop = cropOf(stored, target);
    conversion.orientation = target.orientation;
    conversion.size = picture.size();
    conversion.layout = pixelFormat(target.format.subsampling, target.format.bitDepth);
    conversion.color = target.format.color;
    graph.emplace(key.input, conversionChain(conversion));
    graphKey = key;
}

/// Ends the current graph, if any, and delivers the frames in it.
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

RgbaImage toRgb(const VideoFrame& frame) {
    return toRgb(frame, QSize(frame.width(), frame.height()));
}

RgbaImage toRgb(const VideoFrame& frame, QSize size) {
    prepareFFmpeg();
    Conversion conversion = conversionFrom(*frame.handle());
    conversion.size = size;
    conversion.layout = AV_PIX_FMT_RGBA;
    const AVFramePtr converted = convertFrame(cloned(*frame.handle()), conversion);
    RgbaImage image{converted->width, converted->height, {}};
    const auto rowBytes = static_cast<std::size_t>(image.width) * 4;
    image.pixels.resize(rowBytes * static_cast<std::size_t>(image.height));
    for (int y = 0; y < image.height; ++y)
        std::copy_n(converted->data[0] + static_cast<std::ptrdiff_t>(y) * converted->linesize[0], rowBytes,
                    image.pixels.data() + static_cast<std::size_t>(y) * rowBytes);
    return image;
}

}
