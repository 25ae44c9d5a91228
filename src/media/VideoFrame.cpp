#include "media/VideoFrame.h"

#include "media/ColorTags.h"
#include "media/FFmpeg.h"

#include <algorithm>

namespace pointloom::media {

namespace {

void paintBlack(VideoFrame& frame, const FrameFormat& format) {
    const int blackLuma = format.color.range == Range::full ? 0 : 16 << (format.bitDepth - 8);
    const int noChroma = 128 << (format.bitDepth - 8);
    std::array<Plane, 3> planes = frame.planes();
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const int value = i == 0 ? blackLuma : noChroma;
        for (int y = 0; y < planes[i].height; ++y) {
            std::byte* row = planes[i].data + y * planes[i].bytesPerRow;
            if (format.bitDepth == 8)
                std::fill_n(row, planes[i].width, static_cast<std::byte>(value));
            else
                std::fill_n(reinterpret_cast<std::uint16_t*>(row), planes[i].width,
                            static_cast<std::uint16_t>(value));
        }
    }
}

}

void AVFrameDeleter::operator()(AVFrame* frame) const {
    av_frame_free(&frame);
}

VideoFrame::VideoFrame(AVFramePtr frame, Rational timeBase)
    : m_frame(std::move(frame))
    , m_timeBase(timeBase) {}

int VideoFrame::width() const {
    return m_frame->width;
}

int VideoFrame::height() const {
    return m_frame->height;
}

std::optional<FrameFormat> VideoFrame::format() const {
    const auto layout = static_cast<AVPixelFormat>(m_frame->format);
    const std::optional<SampleLayout> samples = sampleLayout(layout);
    if (!samples)
        return std::nullopt;
    return FrameFormat{samples->subsampling, samples->bitDepth,
                       describeColor(tagsOf(*m_frame), QSize(width(), height()), layout)};
}

std::int64_t VideoFrame::timestamp() const {
    return m_frame->pts;
}

std::int64_t VideoFrame::duration() const {
    return frameDuration(*m_frame);
}

void VideoFrame::setTimestamp(std::int64_t timestamp, std::int64_t duration) {
    m_frame->pts = timestamp;
    setFrameDuration(*m_frame, duration);
}

double VideoFrame::time() const {
    return static_cast<double>(m_frame->pts) * m_timeBase.value();
}

void VideoFrame::makeWritable() {
    check(av_frame_make_writable(m_frame.get()), "a picture could not be copied");
}

std::array<Plane, 3> VideoFrame::planes() const {
    std::array<Plane, 3> planes;
    const auto* descriptor = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(m_frame->format));
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const int shiftX = i == 0 ? 0 : descriptor->log2_chroma_w;
        const int shiftY = i == 0 ? 0 : descriptor->log2_chroma_h;
        planes[i].data = reinterpret_cast<std::byte*>(m_frame->data[i]);
        planes[i].bytesPerRow = m_frame->linesize[i];
        planes[i].width = AV_CEIL_RSHIFT(width(), shiftX);
        planes[i].height = AV_CEIL_RSHIFT(height(), shiftY);
    }
    return planes;
}

VideoFrame makeBlackFrame(int width, int height, const FrameFormat& format, Rational timeBase) {
    AVFramePtr black = makeFrame();
    black->format = pixelFormat(format.subsampling, format.bitDepth);
    black->width = width;
    black->height = height;
    black->sample_aspect_ratio = {1, 1};
    setTags(*black, tagsFor(format.color));
    check(av_frame_get_buffer(black.get(), 0), "a picture could not be made");

    VideoFrame frame(std::move(black), timeBase);
    frame.setTimestamp(0, 0);
    paintBlack(frame, format);
    return frame;
}

}
