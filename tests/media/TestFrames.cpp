#include "TestFrames.h"

#include <cmath>
#include <QRect>

namespace pointloom::test {

using namespace media;

namespace {

int valueAt(const Plane& plane, int bitDepth, int x, int y) {
    const std::byte* row = plane.data + y * plane.bytesPerRow;
    return bitDepth == 8 ? static_cast<int>(row[x]) : reinterpret_cast<const std::uint16_t*>(row)[x];
}

void fill(const Plane& plane, int bitDepth, QRect area, int value) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        std::byte* row = plane.data + y * plane.bytesPerRow;
        for (int x = area.left(); x <= area.right(); ++x) {
            if (bitDepth == 8)
                row[x] = static_cast<std::byte>(value);
            else
                reinterpret_cast<std::uint16_t*>(row)[x] = static_cast<std::uint16_t>(value);
        }
    }
}

}

Sample encode(const std::array<double, 3>& rgb, const FrameFormat& format) {
    const Matrix matrix = format.color.matrix;
    const double kr = matrix == Matrix::bt601 ? 0.299 : matrix == Matrix::bt709 ? 0.2126 : 0.2627;
    const double kb = matrix == Matrix::bt601 ? 0.114 : matrix == Matrix::bt709 ? 0.0722 : 0.0593;
    const double luma = kr * rgb[0] + (1 - kr - kb) * rgb[1] + kb * rgb[2];
    const double cb = (rgb[2] - luma) / (2 * (1 - kb));
    const double cr = (rgb[0] - luma) / (2 * (1 - kr));
    const int unit = 1 << (format.bitDepth - 8);
    const auto round = [](double value) { return static_cast<int>(std::lround(value)); };
    if (format.color.range == Range::limited)
        return {round((16 + 219 * luma) * unit), round((128 + 224 * cb) * unit),
                round((128 + 224 * cr) * unit)};
    const double largest = 256.0 * unit - 1;
    return {round(luma * largest), round(128.0 * unit + cb * largest), round(128.0 * unit + cr * largest)};
}

VideoFrame solidFrame(QSize size, const FrameFormat& format, const Sample& sample, Rational timeBase,
                      std::int64_t timestamp) {
    VideoFrame frame = makeBlackFrame(size.width(), size.height(), format, timeBase);
    const std::array<Plane, 3> planes = frame.planes();
    const std::array<int, 3> values = {sample.y, sample.cb, sample.cr};
    for (std::size_t i = 0; i < planes.size(); ++i)
        fill(planes[i], format.bitDepth, QRect(0, 0, planes[i].width, planes[i].height), values[i]);
    frame.setTimestamp(timestamp, 0);
    return frame;
}

VideoFrame quarteredFrame(QSize size, const FrameFormat& format) {
    VideoFrame frame = makeBlackFrame(size.width(), size.height(), format, {1, 90000});
    const Plane luma = frame.planes()[0];
    const int halfWidth = size.width() / 2;
    const int halfHeight = size.height() / 2;
    const int unit = 1 << (format.bitDepth - 8);
    fill(luma, format.bitDepth, QRect(0, 0, halfWidth, halfHeight), 40 * unit);
    fill(luma, format.bitDepth, QRect(halfWidth, 0, halfWidth, halfHeight), 90 * unit);
    fill(luma, format.bitDepth, QRect(0, halfHeight, halfWidth, halfHeight), 140 * unit);
    fill(luma, format.bitDepth, QRect(halfWidth, halfHeight, halfWidth, halfHeight), 190 * unit);
    return frame;
}

Sample sampleAt(const VideoFrame& frame, int x, int y) {
    const FrameFormat format = frame.format().value();
    const std::array<Plane, 3> planes = frame.planes();
    const int chromaX = x >> format.chromaShiftX();
    const int chromaY = y >> format.chromaShiftY();
    return {valueAt(planes[0], format.bitDepth, x, y), valueAt(planes[1], format.bitDepth, chromaX, chromaY),
            valueAt(planes[2], format.bitDepth, chromaX, chromaY)};
}

std::array<int, 4> quarters(const VideoFrame& frame) {
    const int w = frame.width();
    const int h = frame.height();
    return {sampleAt(frame, w / 4, h / 4).y, sampleAt(frame, 3 * w / 4, h / 4).y,
            sampleAt(frame, w / 4, 3 * h / 4).y, sampleAt(frame, 3 * w / 4, 3 * h / 4).y};
}

VideoSettings settingsFor(const VideoFrame& frame, VideoCodec codec) {
    VideoSettings settings;
    settings.codec = codec;
    settings.size = QSize(frame.width(), frame.height());
    settings.format = frame.format().value();
    settings.timeBase = frame.timeBase();
    settings.frameRate = {25, 1};
    settings.lossless = true;
    settings.encoderPreset = "ultrafast";
    return settings;
}

}
