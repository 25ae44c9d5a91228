// Several files read as one video: the frames, times and sound are those of the clip before it was cut.
#include "media/AudioReader.h"
#include "media/FrameTimes.h"
#include "media/VideoReader.h"

#include "support/TestClips.h"
#include "TestFrames.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <QFile>

namespace pointloom::test {

using namespace media;

namespace {

// Frame n has brightness 16 + 2 n; the sound is noise, in which any shift shows. 6 s.
const QStringList numbered{
    QStringLiteral("-f"),
    QStringLiteral("lavfi"),
    QStringLiteral("-i"),
    QStringLiteral("color=s=64x64:r=50/3:d=6,format=yuv420p,geq=lum='16+2*N':cb=128:cr=128"),
    QStringLiteral("-f"),
    QStringLiteral("lavfi"),
    QStringLiteral("-i"),
    QStringLiteral("anoisesrc=r=48000:a=0.3:seed=7:d=6"),
    QStringLiteral("-c:v"),
    QStringLiteral("libx264"),
    QStringLiteral("-bf"),
    QStringLiteral("2"),
    QStringLiteral("-g"),
    QStringLiteral("15"),
    QStringLiteral("-qp"),
    QStringLiteral("2"),
    QStringLiteral("-c:a"),
    QStringLiteral("aac"),
    QStringLiteral("-b:a"),
    QStringLiteral("256k")};

class SplitClip {
public:
    SplitClip() {
        m_whole = m_folder.make(QStringLiteral("whole.mp4"), numbered);
        // At key frames 15 and 60 of 100: 0.9 s and 3.6 s.
        m_folder.make(QStringLiteral("part%d.mp4"),
                      {QStringLiteral("-i"), m_whole, QStringLiteral("-c"), QStringLiteral("copy"),
                       QStringLiteral("-f"), QStringLiteral("segment"), QStringLiteral("-segment_times"),
                       QStringLiteral("0.9,3.6"), QStringLiteral("-segment_format_options"),
                       QStringLiteral("avoid_negative_ts=disabled"), QStringLiteral("-avoid_negative_ts"),
                       QStringLiteral("disabled"), QStringLiteral("-reset_timestamps"), QStringLiteral("1")});
        for (const char* name : {"part0.mp4", "part1.mp4", "part2.mp4"})
            m_parts.push_back(m_folder.path(QString::fromLatin1(name)));
    }

    const ClipFolder& folder() const { return m_folder; }
    const QString& whole() const { return m_whole; }
    const std::vector<QString>& parts() const { return m_parts; }
    Recording recording() const { return Recording(m_parts.front(), m_parts); }

private:
    ClipFolder m_folder;
    QString m_whole;
    std::vector<QString> m_parts;
};

int numberIn(const VideoFrame& frame) {
    return static_cast<int>(std::lround((sampleAt(frame, 32, 32).y - 16) / 2.0));
}

std::vector<float> soundOf(const Recording& recording, double start) {
    AudioReader reader = AudioReader::open(recording, start, std::nullopt).value();
    std::vector<float> sound;
    while (const auto block = reader.read())
        sound.insert(sound.end(), block->channel(0).begin(), block->channel(0).end());
    return sound;
}

/// The shift in samples by which `shifted` fits best to `sound` around the sample `at`.
int lagAt(const std::vector<float>& sound, const std::vector<float>& shifted, std::size_t at) {
    constexpr int most = 1000;
    constexpr std::size_t length = 2000;
    int best = 0;
    double highest = 0;
    for (int lag = -most; lag <= most; ++lag) {
        double sum = 0;
        for (std::size_t i = at; i < at + length; ++i)
            sum += static_cast<double>(sound[i]) *
                   static_cast<double>(shifted[i + static_cast<std::size_t>(lag)]);
        if (sum > highest) {
            highest = sum;
            best = lag;
        }
    }
    return best;
}

}

TEST(Recording, FramesAndTheirTimesAreThoseOfTheUncutClip) {
    const SplitClip clip;
    VideoReader reader = VideoReader::open(clip.recording());
    EXPECT_NEAR(reader.info().duration, 6.0, 0.03);
    for (int number = 0; number < 100; ++number) {
        const auto frame = reader.read();
        ASSERT_TRUE(frame) << number;
        EXPECT_EQ(numberIn(*frame), number);
        EXPECT_NEAR(frame->time(), number * 0.06, 1e-6);
    }
    EXPECT_FALSE(reader.read());
    EXPECT_EQ(reader.damage(), Damage{});
}

TEST(Recording, SeeksLandOnTheShownFrameOnBothSidesOfASeam) {
    const SplitClip clip;
    VideoReader reader = VideoReader::open(clip.recording());
    for (const int number : {60, 14, 15, 59, 61, 99, 0, 16}) {
        reader.seek(number * 0.06 + 0.04);
        const auto frame = reader.read();
        ASSERT_TRUE(frame) << number;
        EXPECT_EQ(numberIn(*frame), number);
        EXPECT_NEAR(frame->time(), number * 0.06, 1e-6);
    }
    reader.seekToKeyFrame(3.7);
    EXPECT_EQ(numberIn(*reader.read()), 60);
}

TEST(Recording, TimesAreReadWithoutDecodingAndSeamsAreAmongTheKeyFrames) {
    const SplitClip clip;
    FrameTimes times = FrameTimes::open(clip.recording(), 0);
    const double tick = times.timeBase().value();
    for (int number = 0; number < 100; ++number) {
        const auto time = times.next();
        ASSERT_TRUE(time) << number;
        EXPECT_NEAR(static_cast<double>(*time) * tick, number * 0.06, 1e-6);
    }
    EXPECT_FALSE(times.next());
    std::vector<double> keyFrames;
    for (const std::int64_t ticks : times.keyFramesFrom({0.5, 1.5, 2.5, 3.3}))
        keyFrames.push_back(static_cast<double>(ticks) * tick);
    ASSERT_EQ(keyFrames.size(), 4U);
    const double expected[] = {0.9, 1.8, 2.7, 3.6};
    for (std::size_t i = 0; i < keyFrames.size(); ++i)
        EXPECT_NEAR(keyFrames[i], expected[i], 1e-6);
}

TEST(Recording, SoundStaysInItsPlaceAcrossSeams) {
    const SplitClip clip;
    const std::vector<float> whole = soundOf(clip.whole(), 0);
    const std::vector<float> split = soundOf(clip.recording(), 0);
    EXPECT_NEAR(static_cast<double>(split.size()), static_cast<double>(whole.size()), 1024);
    for (const double seconds : {0.5, 0.95, 1.5, 3.4, 3.65, 5.7})
        EXPECT_LE(std::abs(lagAt(whole, split, static_cast<std::size_t>(seconds * audioSampleRate))), 1)
            << seconds << " s";
    // From the middle, in the file before a seam and after it.
    for (const double start : {0.7, 3.61}) {
        const std::vector<float> rest = soundOf(clip.recording(), start);
        const auto skipped = static_cast<std::ptrdiff_t>(std::llround(start * audioSampleRate));
        const std::vector<float> expected(whole.begin() + skipped, whole.end());
        for (const double seconds : {0.1, 0.4, 2.0})
            EXPECT_LE(std::abs(lagAt(expected, rest, static_cast<std::size_t>(seconds * audioSampleRate))), 1)
                << start << " s + " << seconds << " s";
    }
}

TEST(Recording, SoundThatIsLongerOrShorterThanItsPicturesMovesNothingAfterIt) {
    const ClipFolder folder;
    const auto file = [&](const char* name, const char* sound) {
        return folder.make(QString::fromLatin1(name),
                           {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                            QStringLiteral("testsrc=s=64x64:r=25:d=1"), QStringLiteral("-f"),
                            QStringLiteral("lavfi"), QStringLiteral("-i"), QString::fromLatin1(sound),
                            QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-c:a"),
                            QStringLiteral("pcm_s16le")});
    };
    // Clicks at 0.5 s of each file.
    const std::vector<QString> files{
        file("long.mov", "aevalsrc=eq(n\\,24000):s=48000:d=1.4"),
        file("short.mov", "aevalsrc=eq(n\\,24000):s=48000:d=0.7"),
        file("last.mov", "aevalsrc=eq(n\\,22050):s=44100:d=1"),
    };
    const std::vector<float> sound = soundOf(Recording(files.front(), files), 0);
    for (const double expected : {0.5, 1.5, 2.5}) {
        const auto from = sound.begin() + static_cast<std::ptrdiff_t>((expected - 0.4) * audioSampleRate);
        const auto loudest = std::max_element(from, from + audioSampleRate * 8 / 10);
        EXPECT_GT(*loudest, 0.3F);
        EXPECT_NEAR(static_cast<double>(loudest - sound.begin()) / audioSampleRate, expected, 0.0005);
    }
}

TEST(Recording, FilesOfOtherClocksRatesAndCodecsRunOnFromFrameToFrame) {
    const ClipFolder folder;
    const QString first =
        folder.make(QStringLiteral("a.mp4"), "-f lavfi -i testsrc=s=64x64:r=24:d=1 -c:v libx264 -bf 2");
    const QString second = folder.make(
        QStringLiteral("b.mov"),
        "-f lavfi -i testsrc=s=128x128:r=30000/1001:d=1.001 -c:v mpeg4 -video_track_timescale 30000");
    VideoReader reader = VideoReader::open(Recording(first, std::vector{first, second}));
    std::vector<double> times;
    while (const auto frame = reader.read())
        times.push_back(frame->time());
    ASSERT_EQ(times.size(), 54U);
    EXPECT_NEAR(times[23], 23.0 / 24, 1e-4);
    EXPECT_NEAR(times[24], 1.0, 1e-4);
    EXPECT_NEAR(times[53], 1 + 29 * 1001.0 / 30000, 1e-4);
}

TEST(Recording, AMissingFileIsNamed) {
    const SplitClip clip;
    QFile::remove(clip.parts()[1]);
    try {
        VideoReader::open(clip.recording());
        FAIL() << "opened";
    } catch (const MediaError& error) {
        EXPECT_EQ(error.fault(), MediaFault::missing);
        EXPECT_STREQ(error.what(), "part1.mp4: the file does not exist");
    }
}

TEST(Recording, AListThatBelongsToAnotherFileIsIgnored) {
    const std::vector<QString> files{QStringLiteral("/a.mp4"), QStringLiteral("/b.mp4")};
    EXPECT_EQ(Recording(QStringLiteral("/c.mp4"), files), Recording(QStringLiteral("/c.mp4")));
    EXPECT_EQ(Recording(QStringLiteral("/a.mp4"), files).files(), files);
}

}
