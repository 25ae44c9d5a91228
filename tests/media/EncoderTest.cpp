// Which encoders work on this machine, and how pictures reach those in hardware.
#include "media/EncoderProbe.h"
#include "media/HardwareInput.h"
#include "support/TestClips.h"
#include "TestFrames.h"

#include <gtest/gtest.h>

namespace pointloom::media {

namespace {

using test::ClipFolder;

constexpr QSize size(320, 180);
constexpr FrameFormat tenBits{Subsampling::s420, 10, {}};
constexpr EncoderKind hardware[] = {EncoderKind::vaapi, EncoderKind::nvenc, EncoderKind::qsv,
                                    EncoderKind::videotoolbox};

std::string faultOfWriting(const QString& path, const VideoSettings& settings, const VideoFrame& frame) {
    try {
        MediaWriter writer = MediaWriter::create(path, settings, false);
        writer.writeVideo(frame);
        writer.finish();
    } catch (const MediaError& error) {
        return error.what();
    }
    return {};
}

std::uint16_t sampleOfPlane(const AVFrame& picture, int plane, int x, int y) {
    return reinterpret_cast<const std::uint16_t*>(picture.data[plane] + y * picture.linesize[plane])[x];
}

}

TEST(Encoder, SoftwareWorksForEveryFormatAndQuality) {
    for (const VideoCodec codec : {VideoCodec::h264, VideoCodec::hevc, VideoCodec::prores}) {
        const FrameFormat format = encodableFormat(codec, tenBits);
        VideoSettings settings = test::settingsFor(test::solidFrame(size, format, {}), codec);
        for (const auto quality : {EncodingQuality::standard, EncodingQuality::fast, EncodingQuality::smaller,
                                   EncodingQuality::better}) {
            settings.quality = quality;
            EXPECT_EQ(encoderFault(settings), std::nullopt) << static_cast<int>(codec);
        }
    }
}

// True of every machine: of one without a graphics card it tells the faults.
TEST(Encoder, WhatTheProbeSaysIsWhatAFileGets) {
    const ClipFolder folder;
    for (const EncoderKind kind : hardware) {
        for (const FrameFormat& format : {FrameFormat{}, tenBits}) {
            SCOPED_TRACE(nameOf(kind));
            const VideoFrame frame = test::solidFrame(size, format, {300, 200, 100});
            VideoSettings settings = test::settingsFor(frame, VideoCodec::hevc);
            settings.encoder = kind;
            const QString path = folder.path(QStringLiteral("out.mp4"));
            const auto fault = encoderFault(settings);
            EXPECT_EQ(faultOfWriting(path, settings, frame), fault.value_or(QString()).toStdString());
            if (!fault) {
                EXPECT_EQ(test::probe(path)["streams"][0]["nb_frames"], "1");
            }
        }
    }
}

TEST(Encoder, HardwareHasNoProres) {
    VideoSettings settings = test::settingsFor(
        test::solidFrame(size, encodableFormat(VideoCodec::prores, tenBits), {}), VideoCodec::prores);
    settings.encoder = EncoderKind::vaapi;
    EXPECT_EQ(encoderFault(settings), QStringLiteral("it has no encoder for this format"));
}

TEST(Encoder, ColoursOfHardwarePicturesAreInterleavedAndTenBitsStandHigh) {
    const AVFramePtr eight = interleaved(*test::solidFrame(size, {}, {90, 40, 200}).handle());
    EXPECT_EQ(eight->data[0][179 * eight->linesize[0] + 319], 90);
    const std::uint8_t* lastPair = eight->data[1] + 89 * eight->linesize[1] + 318;
    EXPECT_EQ(lastPair[0], 40);
    EXPECT_EQ(lastPair[1], 200);

    const AVFramePtr ten = interleaved(*test::solidFrame(size, tenBits, {940, 65, 1022}).handle());
    EXPECT_EQ(sampleOfPlane(*ten, 0, 319, 179), 940 << 6);
    EXPECT_EQ(sampleOfPlane(*ten, 1, 318, 89), 65 << 6);
    EXPECT_EQ(sampleOfPlane(*ten, 1, 319, 89), 1022 << 6);
}

}
