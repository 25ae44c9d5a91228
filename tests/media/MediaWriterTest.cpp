// What others find in the files that we write.
#include "media/MediaWriter.h"

#include "media/AlphaMovie.h"
#include "media/FFmpeg.h"
#include "media/FrameConverter.h"
#include "media/MediaError.h"
#include "media/VideoReader.h"
#include "support/TestClips.h"
#include "TestFrames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <QFileInfo>
#include <QtEndian>
#include <set>

namespace pointloom::test {

using namespace media;
using testing::HasSubstr;

namespace {

constexpr FrameFormat plainFormat{};

/// Frames at `times` (ticks), each shown until the next, the last for `lastDuration`.
void writeFrames(MediaWriter& writer, const VideoSettings& settings, const std::vector<std::int64_t>& times,
                 std::int64_t lastDuration) {
    for (std::size_t i = 0; i < times.size(); ++i) {
        VideoFrame frame = solidFrame(settings.size, settings.format, {static_cast<int>(40 + i), 128, 128},
                                      settings.timeBase, times[i]);
        frame.setTimestamp(times[i], i + 1 < times.size() ? times[i + 1] - times[i] : lastDuration);
        writer.writeVideo(frame);
    }
}

AudioFrame tone(std::int64_t firstSample, int count) {
    AVFramePtr frame(av_frame_alloc());
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->sample_rate = audioSampleRate;
    frame->nb_samples = count;
    av_channel_layout_default(&frame->ch_layout, audioChannels);
    av_frame_get_buffer(frame.get(), 0);
    for (int channel = 0; channel < audioChannels; ++channel)
        for (int i = 0; i < count; ++i)
            reinterpret_cast<float*>(frame->extended_data[channel])[i] =
                0.5F * static_cast<float>(std::sin(static_cast<double>(firstSample + i) * 0.14));
    return {std::move(frame), firstSample, count};
}

std::vector<std::int64_t> readTicks(const QString& path) {
    VideoReader reader = VideoReader::open(path);
    std::vector<std::int64_t> ticks;
    while (const std::optional<VideoFrame> frame = reader.read())
        ticks.push_back(frame->timestamp());
    return ticks;
}

// The duration of the movie header (ISO/IEC 14496-12, 8.2.2): what ffprobe tells depends on its version.
double movieSeconds(const QString& path) {
    const QByteArray content = readFile(path);
    const char* header = content.constData() + content.indexOf("mvhd") + 4; // of version 0
    return static_cast<double>(qFromBigEndian<quint32>(header + 16)) / qFromBigEndian<quint32>(header + 12);
}

}

TEST(MediaWriter, TimesOfEveryCodecAreKeptToTheTick) {
    const ClipFolder folder;
    const std::vector<std::int64_t> times = {0,    1000,  1001,  2500,  9000,  9100,
                                             9200, 30000, 30001, 45000, 60000, 60007};
    for (const VideoCodec codec : {VideoCodec::h264, VideoCodec::hevc, VideoCodec::prores}) {
        for (const std::int64_t start : {0, 7}) {
            VideoSettings settings = settingsFor(solidFrame(QSize(128, 96), plainFormat, {}), codec);
            settings.format = encodableFormat(codec, plainFormat);
            settings.timeBase = {1, 30011};
            settings.encoderPreset.clear(); // the default has B-frames
            std::vector<std::int64_t> shifted = times;
            for (std::int64_t& time : shifted)
                time += start;
            const QString path = folder.path(QStringLiteral("out.mp4"));
            MediaWriter writer = MediaWriter::create(path, settings, false);
            writeFrames(writer, settings, shifted, 993);
            writer.finish();

            EXPECT_EQ(readTicks(path), shifted) << int(codec);
            const nlohmann::json stream = probe(path).at("streams").at(0);
            EXPECT_EQ(stream.at("time_base"), "1/30011");
            EXPECT_NEAR(movieSeconds(path), static_cast<double>(61000 + start) / 30011, 1e-4);
        }
    }
}

TEST(MediaWriter, ClipsOfAFewFramesAreWholeToo) {
    const ClipFolder folder;
    for (const VideoCodec codec : {VideoCodec::h264, VideoCodec::hevc, VideoCodec::prores}) {
        for (const std::size_t count : {1U, 2U, 3U, 4U}) {
            VideoSettings settings = settingsFor(solidFrame(QSize(64, 48), plainFormat, {}), codec);
            settings.format = encodableFormat(codec, plainFormat);
            settings.timeBase = {1, 600};
            std::vector<std::int64_t> times = {0, 24, 30, 54};
            times.resize(count);
            const QString path = folder.path(QStringLiteral("short.mov"));
            MediaWriter writer = MediaWriter::create(path, settings, false);
            writeFrames(writer, settings, times, 24);
            writer.finish();
            EXPECT_EQ(readTicks(path), times) << int(codec);
        }
    }
}

TEST(MediaWriter, PicturesAreNotHeldBackWhenTheSoundIsOver) {
    const ClipFolder folder;
    VideoSettings settings = settingsFor(solidFrame(QSize(1920, 1080), plainFormat, {}), VideoCodec::prores);
    settings.format = encodableFormat(VideoCodec::prores, plainFormat);
    settings.timeBase = {1, 25};
    std::vector<std::int64_t> times(125); // five seconds, half of what FFmpeg waits for by itself
    std::iota(times.begin(), times.end(), 0);
    const QString path = folder.path(QStringLiteral("out.mov"));
    MediaWriter writer = MediaWriter::create(path, settings, true);
    writeFrames(writer, settings, times, 1);
    const qint64 early = QFileInfo(path).size();
    writer.finish();
    EXPECT_GT(early, QFileInfo(path).size() / 4); // written in blocks of 256 KiB
}

TEST(MediaWriter, AnOverlayMayBeAsLargeAsCamerasGo) {
    const ClipFolder folder;
    constexpr QSize size(8192, 4320);
    const QString path = folder.path(QStringLiteral("overlay.mov"));
    AlphaMovie movie = AlphaMovie::create(path, size, {1, 25}, {25, 1});
    movie.setImage(std::vector<std::uint8_t>(std::size_t{4} * size.width() * size.height()));
    movie.write(0, 1);
    movie.finish();
    EXPECT_EQ(probe(path).at("streams").at(0).at("nb_frames"), "1");
}

TEST(MediaWriter, AConstantRateIsWrittenAsOne) {
    const ClipFolder folder;
    VideoSettings settings = settingsFor(solidFrame(QSize(128, 96), plainFormat, {}), VideoCodec::h264);
    settings.encoderPreset.clear();
    settings.timeBase = {1001, 30000};
    settings.frameRate = {30000, 1001};
    std::vector<std::int64_t> times(90);
    std::iota(times.begin(), times.end(), 0);
    const QString path = folder.path(QStringLiteral("out.mp4"));
    MediaWriter writer = MediaWriter::create(path, settings, false);
    writeFrames(writer, settings, times, 0);
    writer.finish();
    const nlohmann::json stream = probe(path).at("streams").at(0);
    EXPECT_EQ(stream.at("avg_frame_rate"), "30000/1001");
    EXPECT_EQ(stream.at("nb_frames"), "90");
    EXPECT_NEAR(std::stod(stream.at("duration").get<std::string>()), 3.003, 1e-6);
    std::set<int> durations;
    for (const nlohmann::json& packet : probePackets(path))
        durations.insert(packet.at("duration").get<int>());
    EXPECT_THAT(durations, testing::ElementsAre(1001));
}

TEST(MediaWriter, EachCodecHasItsTagItsContainerAndItsLayout) {
    const ClipFolder folder;
    const FrameFormat hdr{
        Subsampling::s420,
        10,
        {Matrix::bt2020, Range::limited, Transfer::hlg, Primaries::bt2020, ChromaLocation::left}};
    const struct {
        VideoCodec codec;
        const char* name;
        const char* tag;
        const char* layout;
        const char* transfer;
    } cases[] = {
        {VideoCodec::h264, "out.mp4", "avc1", "yuv420p", "bt709"},
        {VideoCodec::hevc, "out.mp4", "hvc1", "yuv420p10le", "arib-std-b67"},
        {VideoCodec::prores, "out.mov", "apcn", "yuv422p10le", "arib-std-b67"},
    };
    for (const auto& expected : cases) {
        VideoSettings settings = settingsFor(makeBlackFrame(64, 48, plainFormat, {1, 600}), expected.codec);
        settings.format = encodableFormat(expected.codec, hdr);
        settings.sampleAspectRatio = {4, 3};
        settings.lossless = false;
        const QString path = folder.path(QString::fromLatin1(expected.name));
        MediaWriter writer = MediaWriter::create(path, settings, true);
        ASSERT_TRUE(writer.hasAudio());
        writeFrames(writer, settings, {0, 24, 48}, 24);
        EXPECT_TRUE(writer.writeAudio(tone(0, 5000)));
        writer.finish();

        const nlohmann::json video = probe(path).at("streams").at(0);
        EXPECT_EQ(video.at("codec_tag_string"), expected.tag);
        EXPECT_EQ(video.at("pix_fmt"), expected.layout);
        EXPECT_EQ(video.at("color_transfer"), expected.transfer);
        EXPECT_EQ(video.value("color_range", "tv"), "tv") << "newer versions tell none of ProRes";
        EXPECT_EQ(video.at("sample_aspect_ratio"), "4:3");
        const nlohmann::json audio = probe(path).at("streams").at(1);
        EXPECT_EQ(audio.at("codec_name"), "aac");
        EXPECT_EQ(audio.at("sample_rate"), "44100");
        EXPECT_EQ(audio.at("channels"), 2);
        EXPECT_EQ(audio.at("start_time"), "0.000000") << "the encoder's own delay is taken off";
        const QByteArray content = readFile(path);
        EXPECT_LT(content.indexOf("moov"), content.indexOf("mdat")) << "the index stands at the front";
    }
}

TEST(MediaWriter, ColoursOfEveryKindComeBackAsTheyWere) {
    const ClipFolder folder;
    const std::array colors = {
        ColorDescription{Matrix::bt601, Range::limited, Transfer::sdr, Primaries::bt601_525,
                         ChromaLocation::left},
        ColorDescription{Matrix::bt601, Range::full, Transfer::sdr, Primaries::bt601_625,
                         ChromaLocation::center},
        ColorDescription{Matrix::bt709, Range::full, Transfer::sdr, Primaries::displayP3,
                         ChromaLocation::left},
        ColorDescription{Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020,
                         ChromaLocation::topLeft},
    };
    for (const ColorDescription& color : colors) {
        for (const VideoCodec codec : {VideoCodec::h264, VideoCodec::hevc, VideoCodec::prores}) {
            const FrameFormat format = encodableFormat(codec, {Subsampling::s420, 8, color});
            VideoSettings settings = settingsFor(makeBlackFrame(64, 48, format, {1, 600}), codec);
            const QString path = folder.path(QStringLiteral("out.mov"));
            MediaWriter writer = MediaWriter::create(path, settings, false);
            writeFrames(writer, settings, {0, 24}, 24);
            writer.finish();
            VideoReader reader = VideoReader::open(path);
            EXPECT_EQ(reader.track().format, format) << "codec " << int(codec) << ", matrix "
                                                     << int(color.matrix) << ", range " << int(color.range);
            if (codec != VideoCodec::prores) {
                EXPECT_EQ(sampleAt(*reader.read(), 5, 5).y, 40);
            }
        }
    }
}

TEST(MediaWriter, AllEightOrientationsAreShownAsMeant) {
    const ClipFolder folder;
    for (const bool mirrored : {false, true}) {
        for (int turns = 0; turns < 4; ++turns) {
            const Orientation orientation{mirrored, turns};
            VideoFrame stored = quarteredFrame(QSize(64, 48), plainFormat);
            VideoSettings settings = settingsFor(stored, VideoCodec::h264);
            settings.orientation = orientation;
            const QString path = folder.path(QStringLiteral("turned.mp4"));
            MediaWriter writer = MediaWriter::create(path, settings, false);
            writer.writeVideo(stored);
            writer.finish();

            VideoReader reader = VideoReader::open(path);
            EXPECT_EQ(reader.track().orientation, orientation);

            FrameTarget target;
            target.size = reader.track().uprightSize();
            target.picture = QRect(QPoint(), target.size);
            target.orientation = orientation;
            target.format = plainFormat;
            FrameConverter converter(reader.track(), target);
            converter.push(std::move(stored));
            converter.finish();
            const VideoFrame ours = converter.pull().value();

            const QByteArray theirs = firstPicture(path, QStringLiteral("yuv420p"));
            ASSERT_GE(theirs.size(), target.size.width() * target.size.height());
            for (const QPoint point : {QPoint(8, 8), QPoint(40, 8), QPoint(8, 40), QPoint(40, 40)})
                EXPECT_EQ(static_cast<unsigned char>(theirs.at(point.y() * target.size.width() + point.x())),
                          sampleAt(ours, point.x(), point.y()).y)
                    << "mirrored " << mirrored << ", turns " << turns;
        }
    }
}

TEST(MediaWriter, SoundComesBackInItsPlace) {
    const ClipFolder folder;
    const VideoSettings settings =
        settingsFor(makeBlackFrame(64, 48, plainFormat, {1, 25}), VideoCodec::h264);
    const QString path = folder.path(QStringLiteral("out.mp4"));
    MediaWriter writer = MediaWriter::create(path, settings, true);
    std::vector<std::int64_t> times(50);
    std::iota(times.begin(), times.end(), 0);
    writeFrames(writer, settings, times, 1);
    EXPECT_TRUE(writer.writeAudio(tone(22050, 22050))); // half a second of silence comes first
    writer.finish();

    AudioReader reader = AudioReader::open(path, 0, std::nullopt).value();
    std::int64_t onset = -1;
    std::int64_t total = 0;
    while (const std::optional<AudioFrame> block = reader.read()) {
        for (int i = 0; i < block->sampleCount && onset < 0; ++i)
            if (std::abs(reinterpret_cast<const float*>(block->frame->extended_data[1])[i]) > 0.15F)
                onset = block->firstSample + i;
        total += block->sampleCount;
    }
    EXPECT_NEAR(static_cast<double>(onset), 22050, 100);
    EXPECT_NEAR(static_cast<double>(total), 44100, 1024);
}

TEST(MediaWriter, WhatCannotBeWrittenIsSaid) {
    const ClipFolder folder;
    const VideoSettings settings =
        settingsFor(makeBlackFrame(64, 48, plainFormat, {1, 25}), VideoCodec::h264);
    auto fault = MediaFault::other;
    const auto errorOf = [&](const QString& path) -> std::string {
        try {
            MediaWriter writer = MediaWriter::create(path, settings, false);
            writeFrames(writer, settings, {0, 1, 2, 3}, 1);
            writer.finish();
        } catch (const MediaError& error) {
            fault = error.fault();
            return error.what();
        }
        return "no error";
    };
    EXPECT_THAT(errorOf(folder.path(QStringLiteral("no/such/folder.mp4"))),
                HasSubstr("No such file or directory"));
    EXPECT_THAT(errorOf(QStringLiteral("/dev/full")), HasSubstr("No space left on device"));
    EXPECT_EQ(fault, MediaFault::diskFull);

    MediaWriter writer = MediaWriter::create(folder.path(QStringLiteral("out.mp4")), settings, false);
    writeFrames(writer, settings, {5}, 1);
    EXPECT_THROW(writeFrames(writer, settings, {5}, 1), MediaError) << "times must rise";
    EXPECT_THROW(writer.writeVideo(makeBlackFrame(32, 48, plainFormat, {1, 25})), MediaError);
}

TEST(EncodableFormat, KeepsWhatTheCodecCanHold) {
    const ColorDescription pq{Matrix::bt2020, Range::limited, Transfer::pq, Primaries::bt2020,
                              ChromaLocation::left};
    const ColorDescription wide{Matrix::bt2020, Range::full, Transfer::sdr, Primaries::bt2020,
                                ChromaLocation::left};
    EXPECT_EQ(encodableFormat(VideoCodec::h264, {Subsampling::s422, 10, pq}),
              (FrameFormat{Subsampling::s420, 8, {}}));
    EXPECT_EQ(encodableFormat(VideoCodec::h264, {Subsampling::s420, 8, wide}),
              (FrameFormat{Subsampling::s420, 8, wide}));
    EXPECT_EQ(encodableFormat(VideoCodec::hevc, {Subsampling::s422, 12, pq}),
              (FrameFormat{Subsampling::s420, 10, pq}));
    EXPECT_EQ(encodableFormat(VideoCodec::hevc, {Subsampling::s420, 8, wide}),
              (FrameFormat{Subsampling::s420, 8, wide}));
    EXPECT_EQ(encodableFormat(VideoCodec::prores, {Subsampling::s420, 8, wide}).color.range, Range::limited);
}

}
