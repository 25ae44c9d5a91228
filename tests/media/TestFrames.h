// Pictures that tests paint and read back.
#pragma once

#include "media/MediaWriter.h"
#include "media/VideoFrame.h"

#include <array>

namespace pointloom::test {

struct Sample {
    int y = 0;
    int cb = 0;
    int cr = 0;

    bool operator==(const Sample&) const = default;
};

/// The numbers for non-linear R'G'B' in 0..1, by the definitions of BT.601, BT.709 and BT.2020.
Sample encode(const std::array<double, 3>& rgb, const media::FrameFormat& format);

media::VideoFrame solidFrame(QSize size, const media::FrameFormat& format, const Sample& sample,
                             media::Rational timeBase = {1, 90000}, std::int64_t timestamp = 0);

/// Four quarters of different brightness, so that every way of turning and mirroring looks different.
media::VideoFrame quarteredFrame(QSize size, const media::FrameFormat& format);

Sample sampleAt(const media::VideoFrame& frame, int x, int y);

/// Brightness in the middle of the quarters: top left, top right, bottom left, bottom right.
std::array<int, 4> quarters(const media::VideoFrame& frame);

/// What the file's frames are about, for the frames that the tests write.
media::VideoSettings settingsFor(const media::VideoFrame& frame, media::VideoCodec codec);

}
