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

TEST_F(VideoImportTest, FilesThatContinueEachOtherAreTakenTogetherWhenTheUserSaysSo) {
    const QString first = clip(QStringLiteral("GX010042.MP4"), "160x90", 2);
    const QString second = clip(QStringLiteral("GX020042.MP4"), "160x90", 1);
    screen.dialogs.confirms = false;
    import.start(second);
    ASSERT_TRUE(imported.wait(patience));
    ASSERT_EQ(screen.dialogs.shown.size(), 2);
    EXPECT_EQ(screen.dialogs.shown[0], QStringLiteral("Take 2 files as one match?"));
    EXPECT_TRUE(screen.dialogs.shown[1].contains(QStringLiteral("GX010042.MP4   ·   0:02")));
    EXPECT_EQ(screen.dialogs.buttons,
              (QStringList{QStringLiteral("Only GX020042.MP4"), QStringLiteral("Take Together")}));
    EXPECT_EQ(screen.state.recording()->files(), (std::vector{first, second}));
    EXPECT_NEAR(screen.state.videoDuration, 3, 0.05);

    screen.dialogs.confirms = true;
    import.start(second);
    ASSERT_TRUE(imported.wait(patience));
    EXPECT_EQ(screen.state.recording(), media::Recording(second));
}

TEST_F(VideoImportTest, WhatWasPutAtAPictureStaysThereWhenAFileOfTheRecordingIsLeftOutOrAdded) {
    const QString warmUp = clip(QStringLiteral("GX010042.MP4"), "160x90", 2);
    const QString match = clip(QStringLiteral("GX020042.MP4"), "160x90", 1);
    const auto take = [&](const std::vector<QString>& files) {
        import.take({files.front(), files});
        return imported.wait(patience);
    };
    ASSERT_TRUE(take({warmUp, match}));
    AppState& state = screen.state;
    const auto marker = [](double time) { return Marker{QUuid::createUuid(), time, ScoreState{}, {}}; };
    const std::vector before{marker(0.5), marker(1), marker(2.4)};
    state.markers = before;
    state.cuts = std::vector<CutZone>{{QUuid::createUuid(), 0.2, 0.4}, {QUuid::createUuid(), 1.9, 2.6}};
    state.trimStart = 1;
    state.trimEnd = 2.8;

    ASSERT_TRUE(take({match}));
    ASSERT_EQ(state.markers.value().size(), 2U);
    EXPECT_EQ(state.markers.value()[0].id, before[1].id) << "its score holds when the match begins";
    EXPECT_EQ(state.markers.value()[0].startTime, 0);
    EXPECT_EQ(state.markers.value()[1].id, before[2].id);
    EXPECT_NEAR(state.markers.value()[1].startTime, 0.4, 1e-6);
    ASSERT_EQ(state.cuts.value().size(), 1U);
    EXPECT_EQ(state.cuts.value()[0].start, 0);
    EXPECT_NEAR(state.cuts.value()[0].end, 0.6, 1e-6);
    EXPECT_EQ(state.trimStart.value(), 0);
    EXPECT_NEAR(state.trimEnd.value().value_or(0), 0.8, 1e-6);

    ASSERT_TRUE(take({warmUp, match}));
    EXPECT_NEAR(state.markers.value()[1].startTime, 2.4, 1e-6);
    screen.undo.undo();
    screen.undo.undo();
    EXPECT_EQ(state.markers.value(), before);

    ASSERT_TRUE(take({warmUp}));
    ASSERT_EQ(state.markers.value().size(), 2U);
    EXPECT_EQ(state.markers.value()[1].startTime, 1);
    EXPECT_EQ(state.trimStart.value(), 0) << "its range was in the match";
    EXPECT_EQ(state.trimEnd.value(), std::nullopt);
    const QString other = clip(QStringLiteral("other.mp4"), "160x90", 1);
    ASSERT_TRUE(take({other}));
    EXPECT_EQ(state.markers.value()[1].startTime, 1) << "a film of its own";
}

TEST_F(VideoImportTest, OfFilesChosenTogetherThoseThatFitAreTakenAndTheOthersExplained) {
    const QString wide = clip(QStringLiteral("a.mp4"), "160x90", 1);
    const QString square = clip(QStringLiteral("b.mp4"), "64x64", 1);
    const QString large = clip(QStringLiteral("c.mp4"), "320x180", 1);
    const QString broken = clips.write(QStringLiteral("d.mp4"), "not a video");
    screen.dialogs.confirms = false;
    import.start(QStringList{wide, square, large, broken});
    ASSERT_TRUE(imported.wait(patience));
    const QStringList lines = screen.dialogs.shown.last().split(u'\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[1].contains(QStringLiteral("does not fit the others: another shape of picture")));
    EXPECT_TRUE(lines[2].contains(QStringLiteral("unlike a.mp4: 320 × 180")));
    EXPECT_TRUE(lines[3].contains(QStringLiteral("d.mp4 is not an MP4 or MOV video")));
    EXPECT_EQ(screen.state.recording()->files(), (std::vector{wide, large}));
}

TEST_F(VideoImportTest, ARecordingThatMissesAFileIsPutTogetherAgain) {
    const QString first = clip(QStringLiteral("one.mp4"), "64x64", 1);
    const QString second = clip(QStringLiteral("two.mp4"), "64x64", 1);
    screen.state.videoFiles = {first, QStringLiteral("/gone/two.mp4")};
    screen.state.absentVideo = QStringLiteral("/gone/two.mp4");
    import.start(second);
    ASSERT_TRUE(imported.wait(patience));
    EXPECT_EQ(screen.state.recording()->files(), (std::vector{first, second}));
    EXPECT_TRUE(screen.dialogs.shown.isEmpty());
}

}
