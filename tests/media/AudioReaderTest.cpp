// Where sound lands and how loud it is.
#include "media/AudioReader.h"

#include "media/FFmpeg.h"
#include "support/TestClips.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace pointloom::test {

using namespace media;

namespace {

struct Sound {
    std::vector<float> left;
    std::vector<float> right;

    /// Seconds until the louder sound begins; negative when there is none.
    double onset() const {
        const float loud = 0.4F * peak();
        const auto found = std::ranges::find_if(left, [&](float sample) { return std::abs(sample) > loud; });
        return found == left.end() ? -1 : static_cast<double>(found - left.begin()) / audioSampleRate;
    }

    float peak() const {
        float highest = 0;
        for (const float sample : left)
            highest = std::max(highest, std::abs(sample));
        return highest;
    }

    double seconds() const { return static_cast<double>(left.size()) / audioSampleRate; }
};

Sound readSound(const QString& path, double start = 0, std::optional<double> end = std::nullopt) {
    AudioReader reader = AudioReader::open(path, start, end).value();
    Sound sound;
    while (const std::optional<AudioFrame> block = reader.read()) {
        EXPECT_EQ(block->firstSample, static_cast<std::int64_t>(sound.left.size()));
        EXPECT_EQ(block->frame->pts, block->firstSample);
        const auto* left = reinterpret_cast<const float*>(block->frame->extended_data[0]);
        const auto* right = reinterpret_cast<const float*>(block->frame->extended_data[1]);
        sound.left.insert(sound.left.end(), left, left + block->sampleCount);
        sound.right.insert(sound.right.end(), right, right + block->sampleCount);
    }
    return sound;
}

/// A tone of 1 kHz that begins at `onset` seconds; `channels` as aevalsrc wants them.
QString beep(const char* expressions, const char* options) {
    return QStringLiteral("aevalsrc=%1:%2").arg(QString::fromUtf8(expressions), QString::fromUtf8(options));
}

QStringList lavfi(const QString& source) {
    return {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), source};
}

QStringList words(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

constexpr const char* toneAtOne = "0.5*sin(2*PI*1000*t)*gte(t\\,1)";

}

TEST(AudioReader, ABeepIsHeardWhenItWasRecorded) {
    const ClipFolder folder;
    const struct {
        const char* options;
        const char* encoder;
        float level;
    } cases[] = {
        {"s=48000:c=mono:d=2", "-c:a aac -b:a 128k", 0.5F},
        {"s=8000:c=mono:d=2", "-c:a aac", 0.5F},
        {"s=44100:c=mono:d=2", "-c:a alac", 0.5F},
        {"s=32000:c=mono:d=2", "-c:a pcm_s16le", 0.5F},
    };
    for (const auto& each : cases) {
        const Sound sound = readSound(folder.make(
            QStringLiteral("beep.mov"), lavfi(beep(toneAtOne, each.options)) + words(each.encoder)));
        EXPECT_NEAR(sound.onset(), 1.0, 0.005) << each.options;
        EXPECT_NEAR(sound.peak(), each.level, 0.08) << each.options;
        EXPECT_NEAR(sound.seconds(), 2.0, 0.13) << each.options << ": a whole frame of AAC may follow";
        EXPECT_EQ(sound.left, sound.right) << "one channel goes to both sides";
    }
}

TEST(AudioReader, SurroundSoundIsMixedToBothSidesWithoutClipping) {
    const ClipFolder folder;
    const QString centre = QStringLiteral("0|0|0.5*sin(2*PI*1000*t)*gte(t\\,1)|0|0|0");
    const Sound voice = readSound(
        folder.make(QStringLiteral("c.mp4"), lavfi(beep(centre.toUtf8().constData(), "s=48000:c=5.1:d=2")) +
                                                 words("-c:a aac -b:a 384k")));
    EXPECT_NEAR(voice.onset(), 1.0, 0.005);
    EXPECT_GT(voice.peak(), 0.1F);
    EXPECT_NEAR(voice.left[60000], voice.right[60000], 0.01);

    const QString all = QStringLiteral("0.9*sin(2*PI*500*t)|0.9*sin(2*PI*500*t)|0.9*sin(2*PI*500*t)|0|"
                                       "0.9*sin(2*PI*500*t)|0.9*sin(2*PI*500*t)");
    const Sound loud = readSound(
        folder.make(QStringLiteral("l.mov"),
                    lavfi(beep(all.toUtf8().constData(), "s=44100:c=5.1:d=1")) + words("-c:a pcm_s16le")));
    EXPECT_NEAR(loud.peak(), 0.9, 0.02);
}

TEST(AudioReader, ALateStartIsSilence) {
    const ClipFolder folder;
    const QString path = folder.make(QStringLiteral("late.mp4"),
                                     words("-f lavfi -i color=s=64x64:d=3 -itsoffset 0.7") +
                                         lavfi(beep("0.5*sin(2*PI*1000*t)*gte(t\\,0.5)", "s=48000:d=2")) +
                                         words("-c:v libx264 -c:a aac"));
    EXPECT_NEAR(readSound(path).onset(), 1.2, 0.005);
    EXPECT_NEAR(readSound(path, 1.0).onset(), 0.2, 0.005);
}

TEST(AudioReader, ARangeIsCutToTheSample) {
    const ClipFolder folder;
    // A saw that climbs for ten seconds says where each sample was.
    const QString path = folder.make(QStringLiteral("ramp.mov"),
                                     lavfi(beep("t/20", "s=44100:c=mono:d=10")) + words("-c:a pcm_f32le"));
    const Sound cut = readSound(path, 4.3217, 5.4321);
    EXPECT_EQ(cut.left.size(), static_cast<std::size_t>(std::llround((5.4321 - 4.3217) * audioSampleRate)));
    EXPECT_NEAR(cut.left.front(), 4.3217 / 20, 2e-6);
    EXPECT_NEAR(cut.left.back(), 5.4321 / 20, 4e-6);
    EXPECT_TRUE(readSound(path, 11, 12).left.empty());
}

TEST(AudioReader, CuttingCompressedSoundGivesWhatTheWholeHasThere) {
    const ClipFolder folder;
    const QString path =
        folder.make(QStringLiteral("sweep.mp4"),
                    lavfi(beep("0.5*sin(2*PI*(200*t+60*t*t))", "s=48000:d=6")) + words("-c:a aac -b:a 160k"));
    const Sound whole = readSound(path);
    const Sound cut = readSound(path, 3.5, 4.5);
    ASSERT_EQ(cut.left.size(), 44100U);
    const auto offset = static_cast<std::size_t>(std::llround(3.5 * audioSampleRate));
    float difference = 0;
    for (std::size_t i = 0; i < cut.left.size(); ++i)
        difference = std::max(difference, std::abs(cut.left[i] - whole.left[offset + i]));
    EXPECT_LT(difference, 0.03F) << "at most half a sample apart";
}

TEST(AudioReader, TracksAreAddedEachAtItsOwnTime) {
    const ClipFolder folder;
    const QString path =
        folder.make(QStringLiteral("two.mov"), lavfi(beep("0.3*gte(t\\,0.25)", "s=44100:c=mono:d=1")) +
                                                   lavfi(beep("0.4*gte(t\\,0.5)|0", "s=44100:c=stereo:d=2")) +
                                                   words("-map 0 -map 1 -c:a pcm_f32le"));
    const Sound sound = readSound(path);
    EXPECT_NEAR(sound.seconds(), 2.0, 0.001);
    const auto at = [](const std::vector<float>& channel, double time) {
        return channel[static_cast<std::size_t>(time * audioSampleRate)];
    };
    EXPECT_NEAR(at(sound.left, 0.2), 0, 0.001);
    EXPECT_NEAR(at(sound.left, 0.4), 0.3, 0.001);
    EXPECT_NEAR(at(sound.left, 0.75), 0.7, 0.001) << "added, not averaged";
    EXPECT_NEAR(at(sound.right, 0.75), 0.3, 0.001);
    EXPECT_NEAR(at(sound.left, 1.5), 0.4, 0.001) << "the longer track goes on alone";
}

TEST(AudioReader, LoudTracksTogetherAreHeldAtFullLevel) {
    const ClipFolder folder;
    const QString path =
        folder.make(QStringLiteral("loud.mov"), lavfi(beep("0.8", "s=44100:c=mono:d=1")) +
                                                    lavfi(beep("0.7", "s=44100:c=mono:d=1")) +
                                                    words("-map 0 -map 1 -c:a pcm_f32le"));
    EXPECT_FLOAT_EQ(readSound(path).peak(), 1.0F);
}

TEST(AudioReader, AFileWithoutSoundHasNoReader) {
    const ClipFolder folder;
    EXPECT_FALSE(AudioReader::open(
        folder.make(QStringLiteral("mute.mp4"), "-f lavfi -i color=s=64x64:d=1 -c:v libx264"), 0,
        std::nullopt));
}

TEST(AudioReader, DamagedSoundStillEndsInPlace) {
    const ClipFolder folder;
    QByteArray clip =
        readFile(folder.make(QStringLiteral("s.mp4"), lavfi(beep(toneAtOne, "s=48000:c=mono:d=6")) +
                                                          words("-c:a aac -movflags +faststart")));
    for (auto i = clip.size() / 2; i < clip.size() * 2 / 3; ++i)
        clip[i] = static_cast<char>(i * 7919);
    const Sound sound = readSound(folder.write(QStringLiteral("damaged.mp4"), clip));
    EXPECT_NEAR(sound.onset(), 1.0, 0.005);
    EXPECT_NEAR(sound.seconds(), 6.0, 0.05);
}

}
