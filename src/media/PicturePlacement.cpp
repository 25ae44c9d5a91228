#include "media/PicturePlacement.h"

#include "media/FFmpegError.h"
#include "media/FFmpegHandles.h"

#include <algorithm>

namespace pointloom::media {

namespace {

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

}

QRect alignedPicture(const PictureTarget& target) {
    const Span across = alignedSpan(target.picture.x(), target.picture.width(), target.size.width());
    const Span down = alignedSpan(target.picture.y(), target.picture.height(), target.size.height());
    return {across.begin, down.begin, across.length, down.length};
}

VideoFrame placePicture(VideoFrame picture, QSize size, QRect place, const FrameFormat& format) {
    const AVFrame& source = *picture.handle();
    // A filter that flips may hand out rows from bottom to top; everything after us wants them downwards.
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

}
