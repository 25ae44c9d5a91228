#include "sample/SampleClip.h"

#include "files/NewFile.h"
#include "media/MediaWriter.h"
#include "sample/FramePainter.h"
#include "sample/MatchSound.h"

#include <algorithm>

namespace pointloom::sample {
namespace {

using media::AudioFrame;
using media::MediaWriter;
using media::VideoFrame;

constexpr media::ColorDescription color{.chromaLocation = media::ChromaLocation::center};

// Levels of BT.709 in limited range, in units of 1/256: ITU-R BT.709, sections 3 and 4.
int lumaOf(QRgb pixel) {
    return 16 + ((47 * qRed(pixel) + 157 * qGreen(pixel) + 16 * qBlue(pixel) + 128) >> 8);
}
int blueDifferenceOf(int red, int green, int blue) {
    return 128 + ((-26 * red - 86 * green + 112 * blue + 128) >> 8);
}
int redDifferenceOf(int red, int green, int blue) {
    return 128 + ((112 * red - 102 * green - 10 * blue + 128) >> 8);
}

std::byte* rowOf(const media::Plane& plane, int y) {
    return plane.data + y * plane.bytesPerRow;
}

void convertLuma(const QImage& image, const media::Plane& plane) {
    for (int y = 0; y < plane.height; ++y) {
        const auto* pixels = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        std::byte* row = rowOf(plane, y);
        for (int x = 0; x < plane.width; ++x)
            row[x] = static_cast<std::byte>(lumaOf(pixels[x]));
    }
}

// The mean of four pixels each.
void convertChroma(const QImage& image, const media::Plane& blueDifference,
                   const media::Plane& redDifference) {
    for (int y = 0; y < blueDifference.height; ++y) {
        const auto* upper = reinterpret_cast<const QRgb*>(image.constScanLine(2 * y));
        const auto* lower = reinterpret_cast<const QRgb*>(image.constScanLine(2 * y + 1));
        std::byte* blueRow = rowOf(blueDifference, y);
        std::byte* redRow = rowOf(redDifference, y);
        for (int x = 0; x < blueDifference.width; ++x) {
            const QRgb four[] = {upper[2 * x], upper[2 * x + 1], lower[2 * x], lower[2 * x + 1]};
            const auto mean = [&](int (*part)(QRgb)) {
                return (part(four[0]) + part(four[1]) + part(four[2]) + part(four[3]) + 2) / 4;
            };
            const int red = mean(qRed);
            const int green = mean(qGreen);
            const int blue = mean(qBlue);
            blueRow[x] = static_cast<std::byte>(blueDifferenceOf(red, green, blue));
            redRow[x] = static_cast<std::byte>(redDifferenceOf(red, green, blue));
        }
    }
}

VideoFrame frameOf(const QImage& image, media::Rational timeBase) {
    VideoFrame frame = media::makeBlackFrame(image.width(), image.height(), {.color = color}, timeBase);
    const auto [luma, blueDifference, redDifference] = frame.planes();
    convertLuma(image, luma);
    convertChroma(image, blueDifference, redDifference);
    return frame;
}

// The sound up to that sample; a clip without it shows the match as well.
class SoundFeed {
public:
    SoundFeed(const Match& match, double seconds)
        : m_sound(matchSound(match, seconds)) {}

    void write(MediaWriter& writer, std::size_t end) {
        constexpr std::size_t most = 4096;
        while (m_written < std::min(end, m_sound.left.size())) {
            const std::size_t count = std::min(most, m_sound.left.size() - m_written);
            AudioFrame frame{media::makeSilence(static_cast<int>(count)),
                             static_cast<std::int64_t>(m_written), static_cast<int>(count)};
            for (const auto& [channel, samples] : {std::pair(0, &m_sound.left), std::pair(1, &m_sound.right)})
                std::copy_n(samples->begin() + static_cast<std::ptrdiff_t>(m_written), count,
                            frame.channel(channel).begin());
            m_isTaken = m_isTaken && writer.writeAudio(frame);
            m_written += count;
        }
    }

private:
    MatchSound m_sound;
    std::size_t m_written = 0;
    bool m_isTaken = true;
};

}

bool writeClip(const QString& path, const Match& match, const ClipOptions& options,
               const std::function<bool(double)>& goOn) {
    const int frames = std::max(1, static_cast<int>(options.seconds * options.framesPerSecond));
    constexpr int ticksPerFrame = 1000;
    media::VideoSettings video;
    video.size = options.size;
    video.format = {.color = color};
    video.timeBase = {1, options.framesPerSecond * ticksPerFrame};
    video.frameRate = {options.framesPerSecond, 1};
    if (options.cameraNoise)
        video.quality = media::EncodingQuality::better; // as cameras encode

    NewFile file(path);
    MediaWriter writer = MediaWriter::create(file.temporaryPath(), video, true);
    FramePainter painter(match, options.size, options.framesPerSecond, options.cameraNoise);
    SoundFeed sound(match, options.seconds);
    for (int number = 0; number < frames; ++number) {
        VideoFrame frame = frameOf(painter.paint(number), video.timeBase);
        frame.setTimestamp(std::int64_t{number} * ticksPerFrame, ticksPerFrame);
        writer.writeVideo(frame);
        const double end = (number + 1.0) / options.framesPerSecond;
        sound.write(writer, static_cast<std::size_t>(end * media::audioSampleRate));
        if (!goOn((number + 1.0) / frames))
            return false;
    }
    writer.finish();
    file.keep();
    return true;
}

}
