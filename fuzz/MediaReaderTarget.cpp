// Reads any bytes as a video: what it contains, its times, its pictures and its sound. All of it ends in data
// or in MediaError.
#include "FuzzTarget.h"
#include "media/AudioReader.h"
#include "media/FrameConverter.h"
#include "media/FrameTimes.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"
#include "media/VideoReader.h"
#include "MemoryFile.h"

#include <optional>

extern "C" {
#include <libavutil/cpu.h>
}

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

/// Half of the duration, seconds.
double readVideo(const QString& path) {
    VideoReader reader = VideoReader::open(path);
    (void)reader.track().uprightSize();
    const double middle = reader.info().duration / 2;
    try {
        readPictures(reader);
        reader.seek(middle);
        readPictures(reader);
        reader.seekToKeyFrame(0);
        readPictures(reader);
    } catch (const MediaError& error) {
        requireReadable(error.what());
    }
    return middle;
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
bool tryReading(const Reading& reading) {
    try {
        reading();
        return true;
    } catch (const MediaError& error) {
        requireReadable(error.what());
        return false;
    }
}

/// Each reader opens the file by itself, which takes longest: no more of them than needed.
void readEverything(const QString& path, bool fromTheMiddle) {
    double middle = 0;
    const bool hasPictures = tryReading([&] { middle = readVideo(path); });
    if (!hasPictures && !tryReading([&] { middle = readMediaInfo(path).duration / 2; }))
        return; // the others open files alike
    const double start = fromTheMiddle ? middle : 0;
    if (hasPictures)
        tryReading([&] { readTimes(path, start); });
    tryReading([&] { readSound(path, start); });
}

}

}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static pointloom::fuzz::MemoryFile file;
    file.replace(pointloom::fuzz::bytesOf(data, size));
    pointloom::fuzz::readEverything(file.path(), size % 2 == 0);
    return 0;
}

/// One thread a decoder: starting several for each input takes longer than decoding it.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    av_cpu_force_count(1);
    return 0;
}
