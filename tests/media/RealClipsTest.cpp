// Clips of real cameras and of other programs' makers, where they are at hand.
#include "media/AudioReader.h"
#include "media/FrameConverter.h"
#include "media/MediaError.h"
#include "media/VideoReader.h"
#include "support/TestClips.h"

#include <gtest/gtest.h>

namespace pointloom::test {

using namespace media;

namespace {

constexpr int framesLookedAt = 40;

void readSome(const QString& path) {
    const MediaInfo info = readMediaInfo(path);
    EXPECT_GT(info.duration, 0);
    if (info.video) {
        VideoReader reader = VideoReader::open(path);
        double last = -1e9;
        for (int i = 0; i < framesLookedAt; ++i) {
            const std::optional<VideoFrame> frame = reader.read();
            if (!frame)
                break;
            EXPECT_GT(frame->time(), last);
            EXPECT_LE(frame->time(), info.duration);
            last = frame->time();
        }
        reader.seek(info.duration / 2);
        const std::optional<VideoFrame> middle = reader.read();
        ASSERT_TRUE(middle);
        EXPECT_EQ(middle->format(), reader.track().format);
        EXPECT_EQ(reader.damage(), Damage{});
    }
    if (std::optional<AudioReader> sound = AudioReader::open(path, info.duration / 2, info.duration)) {
        while (sound->read()) {
        }
    }
}

VideoReader openClip(const char* name) {
    return VideoReader::open(realClip(QString::fromLatin1(name)).value());
}

}

class RealClips : public testing::Test {
protected:
    void SetUp() override {
        if (realClips().isEmpty())
            GTEST_SKIP() << "the real clips are not here; POINTLOOM_MEDIA can name their folder";
    }
};

TEST_F(RealClips, EveryOneIsReadOrRefusedInWords) {
    for (const QString& path : realClips()) {
        SCOPED_TRACE(path.toStdString());
        if (path.contains(QStringLiteral("malformed_free_box")))
            EXPECT_THROW((void)readMediaInfo(path), MediaError);
        else
            readSome(path);
    }
}

TEST_F(RealClips, TimesAreThoseOfThePlayer) {
    EXPECT_NEAR(openClip("bbb_800x640_768kbps_30fps_avc_2b_firstpts_10_sec.mp4").read()->time(), 10.0, 1e-6);
    EXPECT_NEAR(openClip("edit_list_positive_shift.mp4").read()->time(), 1.0, 1e-6);
    EXPECT_NEAR(openClip("sample_fragmented_seekable.mp4").read()->time(), 0.066733, 1e-5);
    EXPECT_NEAR(openClip("sample_edit_list.mp4").info().duration, 2.5483, 1e-3);
}

TEST_F(RealClips, PhonesAndHdrAreRecognised) {
    const VideoReader phone = openClip("sample_edit_list.mp4");
    EXPECT_EQ(phone.track().orientation, (Orientation{false, 1}));
    EXPECT_EQ(phone.track().uprightSize(), QSize(1080, 1920));
    EXPECT_EQ(phone.track().color.transfer, Transfer::hlg);
    EXPECT_EQ(phone.track().bitDepth, 10);
    EXPECT_EQ(openClip("hdr10-video-with-sdr-container.mp4").track().color.transfer, Transfer::pq);
    EXPECT_EQ(openClip("portrait_4k60.mp4").track().color.range, Range::full);
    EXPECT_EQ(openClip("bbb_800x640_768kbps_30fps_avc_2b_firstpts_10_sec.mp4").track().uprightSize(),
              QSize(1137, 640));
    EXPECT_EQ(openClip("iibbibb_editlist_videoonly.mp4").track().format->subsampling, Subsampling::s444);
}

}
