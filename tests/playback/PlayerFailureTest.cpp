#include "playback/NumberedClip.h"
#include "playback/Watched.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

namespace pointloom::playback {

namespace {

class PlayerFailureTest : public testing::Test {
protected:
    // The one message that loading the file brings.
    std::string failureOf(const QString& path) {
        watched.failures.clear();
        EXPECT_FALSE(watched.load(path)) << path.toStdString();
        EXPECT_FALSE(watched.player.isLoaded());
        EXPECT_EQ(watched.failures.size(), 1);
        return watched.failures.value(0).toStdString();
    }

    test::ClipFolder folder;
    Watched watched;
};

using testing::HasSubstr;

}

TEST_F(PlayerFailureTest, FilesThatCannotBeOpenedAreNamedWithTheReason) {
    EXPECT_EQ(failureOf(folder.path(QStringLiteral("gone.mp4"))),
              "“gone.mp4” cannot be opened: there is no such file.");
    EXPECT_THAT(failureOf(folder.path({})), HasSubstr("it is not a file"));
    EXPECT_THAT(failureOf(folder.write(QStringLiteral("empty.mp4"), {})), HasSubstr("it is empty"));
    EXPECT_THAT(failureOf(folder.write(QStringLiteral("text.mp4"), QByteArray(10'000, 'x'))),
                HasSubstr("not an MP4 or MOV file"));
    EXPECT_THAT(failureOf(QString()), HasSubstr("no file is named"));
    const QString pipe = folder.path(QStringLiteral("pipe.mp4"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_THAT(failureOf(pipe), HasSubstr("it is not a file"));
}

TEST_F(PlayerFailureTest, OtherKindsOfVideoAreRefused) {
    const QString matroska = makeNumberedClip(folder, QStringLiteral("clip.mkv"), {.frames = 5});
    const QString dressed = folder.path(QStringLiteral("dressed.mp4"));
    ASSERT_TRUE(QFile::rename(matroska, dressed));
    EXPECT_THAT(failureOf(dressed), HasSubstr("not an MP4 or MOV file"));
}

TEST_F(PlayerFailureTest, SoundAloneIsRefused) {
    const QString sound = folder.make(QStringLiteral("sound.m4a"), "-f lavfi -i sine=duration=1");
    EXPECT_THAT(failureOf(sound), HasSubstr("it holds no picture"));
    EXPECT_EQ(watched.lastFault, media::MediaFault::noPicture);
}

TEST_F(PlayerFailureTest, AFileCutOffAnywhereFailsOrPlaysButNeverHangs) {
    const QString clip = makeNumberedClip(
        folder, QStringLiteral("clip.mp4"),
        {.sound = true, .more = {QStringLiteral("-movflags"), QStringLiteral("+faststart")}});
    const QByteArray whole = test::readFile(clip);
    for (const int percent : {1, 5, 20, 50, 80, 99}) {
        const QString cut =
            folder.write(QStringLiteral("cut%1.mp4").arg(percent), whole.left(whole.size() * percent / 100));
        const qsizetype failuresBefore = watched.failures.size();
        if (!watched.load(cut)) {
            EXPECT_EQ(watched.failures.size(), failuresBefore + 1)
                << percent << " per cent neither opened nor failed";
            continue;
        }
        EXPECT_TRUE(watched.seek(1.9)) << percent;
        EXPECT_TRUE(watched.seek(0)) << percent;
        watched.player.stepBackward();
        EXPECT_TRUE(Watched::waitFor([this] { return !watched.player.isSeeking(); })) << percent;
    }
}

TEST_F(PlayerFailureTest, DamagedFilesNeverHang) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.sound = true});
    const QByteArray whole = test::readFile(clip);
    for (int round = 0; round < 8; ++round) {
        QByteArray damaged = whole;
        for (qsizetype i = 40 + round; i < damaged.size(); i += 211 + 37 * round)
            damaged[i] = static_cast<char>(damaged[i] ^ (i % 255));
        const QString path = folder.write(QStringLiteral("damaged%1.mp4").arg(round), damaged);
        const qsizetype failuresBefore = watched.failures.size();
        if (watched.load(path))
            EXPECT_TRUE(watched.seek(1)) << round;
        else
            EXPECT_EQ(watched.failures.size(), failuresBefore + 1) << round;
    }
}

TEST_F(PlayerFailureTest, AFileThatChangesWhileOpenIsGivenUpWithAMessage) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    const QString other = makeNumberedClip(folder, QStringLiteral("other.mp4"), {.frames = 60});
    const QString open = folder.path(QStringLiteral("open.mp4"));
    struct Case {
        const char* what;
        std::function<void()> change;
        const char* reason;
        media::MediaFault fault;
    };
    using media::MediaFault;
    const Case cases[] = {
        {"deleted", [&] { QFile::remove(open); }, "was moved or deleted", MediaFault::missing},
        {"moved", [&] { QFile::rename(open, open + QStringLiteral(".away")); }, "was moved or deleted",
         MediaFault::missing},
        {"cut", [&] { QFile::resize(open, 2000); }, "was changed by another program", MediaFault::replaced},
        {"replaced",
         [&] { ::rename(QFile::encodeName(other).constData(), QFile::encodeName(open).constData()); },
         "was changed by another program", MediaFault::replaced},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        QFile::remove(open);
        ASSERT_TRUE(QFile::copy(clip, open));
        ASSERT_TRUE(watched.load(open));
        watched.failures.clear();
        watched.player.play();
        one.change();
        ASSERT_TRUE(Watched::waitFor([this] { return !watched.failures.isEmpty(); }));
        EXPECT_EQ(watched.failures.join(u'|').toStdString(),
                  std::string("“open.mp4” can no longer be played: it ") + one.reason + ".");
        EXPECT_EQ(watched.lastFault, one.fault);
        EXPECT_FALSE(watched.player.isLoaded());
        EXPECT_FALSE(watched.player.isPlaying());
    }
}

TEST_F(PlayerFailureTest, ANewDateOrPermissionsChangeNothing) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    ASSERT_TRUE(watched.load(clip));
    ASSERT_EQ(::chmod(QFile::encodeName(clip).constData(), 0640), 0);
    Watched::settle(200);
    EXPECT_TRUE(watched.player.isLoaded());
    EXPECT_TRUE(watched.failures.isEmpty());
}

TEST_F(PlayerFailureTest, AGoodFileLoadsAfterABadOne) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    failureOf(folder.write(QStringLiteral("text.mp4"), QByteArray(10'000, 'x')));
    EXPECT_TRUE(watched.load(clip));
    EXPECT_TRUE(watched.seek(1));
    EXPECT_TRUE(watched.showsFrame(25));
}

}
