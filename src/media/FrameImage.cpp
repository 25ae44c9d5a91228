#include "media/FrameImage.h"

#include "media/ColorTags.h"
#include "media/ConversionGraph.h"
#include "media/FFmpegError.h"

#include <algorithm>

namespace pointloom::media {

namespace {

AVFramePtr convertToRgba(const AVFrame& stored, QSize size) {
    Conversion conversion;
    conversion.sourceLayout = static_cast<AVPixelFormat>(stored.format);
    conversion.size = size;
    conversion.sourceColor =
        describeColor(tagsOf(stored), QSize(stored.width, stored.height), conversion.sourceLayout);
    conversion.sourcePeak = peakLight(stored);
    conversion.layout = AV_PIX_FMT_RGBA;

    AVFramePtr entering(av_frame_clone(&stored));
    if (!entering)
        throw MediaError("out of memory");
    return convertPicture(std::move(entering), conversion);
}

}

RgbaPicture toRgb(const VideoFrame& frame) {
    return toRgb(frame, QSize(frame.width(), frame.height()));
}

RgbaPicture toRgb(const VideoFrame& frame, QSize size) {
    prepareFFmpeg();
    const AVFramePtr converted = convertToRgba(*frame.handle(), size);
    RgbaPicture picture{converted->width, converted->height, {}};
    const auto rowBytes = static_cast<std::size_t>(picture.width) * 4;
    picture.pixels.resize(rowBytes * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(converted->data[0] + static_cast<std::ptrdiff_t>(y) * converted->linesize[0], rowBytes,
                    picture.pixels.data() + static_cast<std::size_t>(y) * rowBytes);
    return picture;
}

}
