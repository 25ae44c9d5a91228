// Clips of real cameras and odd writers, where the folder with them is at hand.
#include "playback/Watched.h"
#include "support/TestClips.h"

#include <gtest/gtest.h>

namespace pointloom::playback {

namespace {

struct RealClip {
    const char* name;
    QSize size;
};

void PrintTo(const RealClip& clip, std::ostream* stream) {
    *stream << clip.name;
}

class RealClipTest : public testing::TestWithParam<RealClip> {};

}

TEST_P(RealClipTest, TimesAreThoseThatFfmpegReads) {
    const auto path = test::realClip(QString::fromUtf8(GetParam().name));
    if (!path)
        GTEST_SKIP() << "no real clips here";
    const std::vector<double> times = test::frameTimes(*path);
    ASSERT_FALSE(times.empty());
    Watched watched(PlayerView::Rendering::software, {480, 270});
    ASSERT_TRUE(watched.load(*path)) << watched.failures.value(0).toStdString();
    EXPECT_EQ(watched.player.size(), GetParam().size);
    EXPECT_NEAR(watched.player.time(), times.front(), 0.001);
    for (const std::size_t index : {times.size() * 2 / 3, times.size() / 3, std::size_t{0}, std::size_t{1}}) {
        ASSERT_TRUE(watched.seek(times[index]));
        EXPECT_NEAR(watched.player.time(), times[index], 0.001) << "frame " << index;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, RealClipTest,
    testing::Values(RealClip{"bbb_800x640_768kbps_30fps_avc_2b_firstpts_10_sec.mp4", {1137, 640}},
                    RealClip{"sample_fragmented_seekable.mp4", {1080, 720}},
                    RealClip{"edit_list_positive_shift.mp4", {1920, 1080}},
                    RealClip{"sample_edit_list.mp4", {1080, 1920}},
                    RealClip{"iibbibb_editlist_videoonly.mp4", {704, 576}},
                    RealClip{"h265_bframes.mp4", {854, 480}}, RealClip{"sowt-with-video.mov", {1920, 1080}},
                    RealClip{"bt601.mov", {640, 428}}, RealClip{"sample_shorter_audio.mp4", {320, 240}},
                    RealClip{"sample_empty_track.mp4", {1080, 720}}),
    [](const testing::TestParamInfo<RealClip>& clip) {
        QString name = QString::fromUtf8(clip.param.name);
        for (QChar& letter : name)
            letter = letter.isLetterOrNumber() ? letter : u'_';
        return name.toStdString();
    });

}
