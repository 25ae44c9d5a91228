// Reads any bytes as a video: what it contains, its times, its pictures and its sound. All of it ends in data
// or in MediaError.
#include "FuzzTarget.h"
#include "media/AudioReader.h"
#include "media/FrameImage.h"
#include "media/FrameTimes.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"
#include "media/VideoReader.h"
#include "MemoryFile.h"

#include <optional>

namespace pointloom::fuzz {

namespace {

using namespace media;

// Enough to come past what decoders hold back, and little enough for many inputs a second.
constexpr int picturesAtAPlace = 8;
constexpr int soundBlocksAtAPlace = 64;
constexpr int timesRead = 256;
constexpr int largestAreaShown = 512 * 512; // pixels

void readPictures(VideoReader& reader) {
    for (int i = 0; i < picturesAtAPlace; ++i) {
        const std::optional<VideoFrame> frame = reader.read();
        if (!frame)
            break;
        if (i == 0 && frame->width() * frame->height() <= largestAreaShown)
            (void)toRgb(*frame, QSize(32, 32));
    }
    (void)reader.damage();
}

void readVideo(const QString& path, double middle) {
    VideoReader reader = VideoReader::open(path);
    (void)reader.track().uprightSize();
    readPictures(reader);
    reader.seek(middle);
    readPictures(reader);
    reader.seekToKeyFrame(0);
    readPictures(reader);
}

void readTimes(const QString& path, double start) {
    FrameTimes times = FrameTimes::open(path, start);
    for (int i = 0; i < timesRead && times.next(); ++i)
        ;
}

void readSound(const QString& path, double start) {
    std::optional<AudioReader> reader = AudioReader::open(path, start, std::nullopt);
    for (int i = 0; reader && i < soundBlocksAtAPlace && reader->read(); ++i)
        ;
}

/// What one reader cannot read, the next one may.
template <typename Reading>
void tryReading(const Reading& reading) {
    try {
        reading();
    } catch (const MediaError&) {
    }
}

void readEverything(const QString& path) {
    double middle = 0;
    try {
        middle = readMediaInfo(path).duration / 2;
    } catch (const MediaError&) {
        return; // the others open files alike
    }
    tryReading([&] { readVideo(path, middle); });
    tryReading([&] { readTimes(path, middle); });
    for (const double start : {0.0, middle})
        tryReading([&] { readSound(path, start); });
}

}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static pointloom::fuzz::MemoryFile file;
    file.replace({data, static_cast<qsizetype>(size)});
    pointloom::fuzz::readEverything(file.path());
    return 0;
}
