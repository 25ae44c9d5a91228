#include "ui/common/VideoImport.h"
#include "support/TestClips.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QSignalSpy>
#include <QThreadPool>

namespace pointloom {

namespace {

constexpr int patience = 30'000; // milliseconds

class VideoImportTest : public testing::Test {
protected:
    QString clip(const QString& name, const char* size, double seconds) {
        return clips.make(name, {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                 QStringLiteral("testsrc=size=%1:rate=25").arg(QString::fromUtf8(size)),
                                 QStringLiteral("-t"), QString::number(seconds), QStringLiteral("-pix_fmt"),
                                 QStringLiteral("yuv420p")});
    }

    QString failureOf(const QString& path) {
        import.start(path);
        return failed.wait(patience) ? failed.takeFirst().at(0).toString() : QString();
    }

    test::ClipFolder clips;
    test::ScreenContext screen;
    VideoImport import{screen.context};
    QSignalSpy imported{&import, &VideoImport::imported};
    QSignalSpy failed{&import, &VideoImport::failed};
};

}

TEST_F(VideoImportTest, ImportSetsVideoAndKeepsOnlyTrimsThatFit) {
    screen.state.currentTime = 50;
    screen.state.trimStart = 0.5;
    screen.state.trimEnd = 7.0;
    screen.state.step = Screen::video;
    const QString path = clip(QStringLiteral("two seconds.mp4"), "160x90", 2);
    import.start(path);
    EXPECT_TRUE(import.isReading());
    ASSERT_TRUE(imported.wait(patience));

    EXPECT_FALSE(import.isReading());
    EXPECT_EQ(screen.state.videoURL.value(), QUrl::fromLocalFile(path));
    EXPECT_NEAR(screen.state.videoDuration, 2, 0.05);
    EXPECT_EQ(QSize(screen.state.videoWidth, screen.state.videoHeight), QSize(160, 90));
    EXPECT_EQ(screen.state.currentTime, 0);
    EXPECT_EQ(screen.state.trimStart, 0.5);
    EXPECT_EQ(screen.state.trimEnd.value(), std::nullopt);
    EXPECT_EQ(screen.state.step, Screen::video);
}

TEST_F(VideoImportTest, LaterStartReplacesAnEarlierOne) {
    const QString first = clip(QStringLiteral("first.mp4"), "160x90", 1);
    const QString second = clip(QStringLiteral("second.mp4"), "64x64", 1);
    import.start(first);
    import.start(second);
    ASSERT_TRUE(imported.wait(patience));
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(imported.count(), 1);
    EXPECT_EQ(screen.state.videoURL.value(), QUrl::fromLocalFile(second));
}

TEST_F(VideoImportTest, NothingHappensAfterItsEnd) {
    const QString path = clip(QStringLiteral("clip.mp4"), "64x64", 1);
    {
        VideoImport shortLived{screen.context};
        shortLived.start(path);
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(screen.state.videoURL.value());
}

TEST_F(VideoImportTest, FailuresNameFileAndReasonAndLeaveTheSessionAlone) {
    const QString good = clip(QStringLiteral("good.mp4"), "64x64", 1);
    import.start(good);
    ASSERT_TRUE(imported.wait(patience));

    EXPECT_EQ(failureOf(clips.path(QStringLiteral("gone.mp4"))),
              QStringLiteral("gone.mp4 is not there any more: it was moved or deleted."));
    const QString text = clips.write(QStringLiteral("notes.mp4"), "not a video at all");
    EXPECT_EQ(failureOf(text), QStringLiteral("notes.mp4 is not an MP4 or MOV video, or it is damaged."));
    const QString sound = clips.make(QStringLiteral("sound.mp4"), "-f lavfi -i sine=duration=1");
    screen.state.language = Language::german;
    EXPECT_EQ(failureOf(sound), QStringLiteral("sound.mp4 enthält keine abspielbare Videospur."));

    EXPECT_EQ(screen.state.videoURL.value(), QUrl::fromLocalFile(good));
    EXPECT_EQ(screen.state.videoWidth, 64);
}

}
