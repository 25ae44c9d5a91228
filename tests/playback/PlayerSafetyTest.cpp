#include "playback/NumberedClip.h"
#include "playback/Watched.h"
#include "support/LoopbackServer.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <sys/stat.h>

namespace pointloom::playback {

namespace {

QByteArray answerAnything(const test::HttpRequest&) {
    return test::httpAnswer(200);
}

class PlayerSafetyTest : public testing::Test {
protected:
    test::ClipFolder folder;
    Watched watched;
};

}

TEST_F(PlayerSafetyTest, APlaylistDressedAsAClipReachesNothing) {
    const test::LoopbackServer server(answerAnything);
    const QString clip = makeNumberedClip(folder, QStringLiteral("secret.mp4"), {.frames = 5});
    const QString target = server.url(QStringLiteral("/clip.mp4")).toString();
    const QString playlists[] = {
        QStringLiteral("#EXTM3U\n#EXTINF:1,\n%1\n"),
        QStringLiteral("#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n%1\n#EXT-X-ENDLIST\n"),
        QStringLiteral("[playlist]\nFile1=%1\nNumberOfEntries=1\n"),
        QStringLiteral("ffconcat version 1.0\nfile '%1'\n"),
        QStringLiteral("# mpv EDL v0\n%1,0,1\n"),
        QStringLiteral("%1\n"),
    };
    for (const QString& playlist : playlists) {
        for (const QString& entry : {target, clip, QStringLiteral("secret.mp4")}) {
            const QString path = folder.write(QStringLiteral("dressed.mp4"), playlist.arg(entry).toUtf8());
            EXPECT_FALSE(watched.load(path)) << playlist.arg(entry).toStdString();
        }
    }
    Watched::settle(200);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(PlayerSafetyTest, FilesBesideTheClipAreLeftAlone) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"));
    folder.write(QStringLiteral("clip.mp4.conf"), QByteArrayLiteral("pause=no\nspeed=3\nstart=1\n"));
    folder.write(QStringLiteral("clip.srt"),
                 QByteArrayLiteral("1\n00:00:00,000 --> 00:00:02,000\nXXXXXXXXXXXXXXXXXXXX\n"));
    folder.write(QStringLiteral("mpv.conf"), QByteArrayLiteral("start=1\n"));
    ASSERT_TRUE(watched.load(clip));
    Watched::settle();
    EXPECT_DOUBLE_EQ(watched.player.time(), 0);
    EXPECT_EQ(watched.frameNumber(), 0);
}

TEST_F(PlayerSafetyTest, StrangeNamesAreNamesOfFiles) {
    const QString clip = makeNumberedClip(folder, QStringLiteral("clip.mp4"), {.frames = 5});
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path({})));
    for (const QString& name :
         {QStringLiteral("-pause.mp4"), QStringLiteral("--vo=gpu"), QStringLiteral("-"),
          QStringLiteral("memory:"), QStringLiteral("edl%41.mp4"), QStringLiteral("~.mp4"),
          QStringLiteral(":qrc.mp4"), QStringLiteral("two\nlines, and 'quotes'.mp4"),
          QStringLiteral("$HOME ${path}.mp4"), QStringLiteral("écran 日本.mp4"),
          QStringLiteral("list.m3u")}) {
        ASSERT_EQ(::link("clip.mp4", QFile::encodeName(name).constData()), 0) << name.toStdString();
        EXPECT_TRUE(watched.load(name))
            << name.toStdString() << ": " << watched.failures.value(0).toStdString();
    }
    // A folder called "http:" with the file in it, which as an address would be http://clip.mp4.
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("http:")));
    ASSERT_EQ(::link("clip.mp4", "http:/clip.mp4"), 0);
    EXPECT_TRUE(watched.load(QStringLiteral("http://clip.mp4")));
    EXPECT_TRUE(watched.load(folder.path({}) + QStringLiteral("/http://clip.mp4")));
    QDir::setCurrent(before);
}

TEST_F(PlayerSafetyTest, AddressesAreNotFollowed) {
    const test::LoopbackServer server(answerAnything);
    for (const QString& address : {server.url(QStringLiteral("/clip.mp4")).toString(),
                                   QStringLiteral("edl://") + server.url(QStringLiteral("/")).toString(),
                                   QStringLiteral("lavf://") + server.url(QStringLiteral("/")).toString(),
                                   QStringLiteral("av://lavfi:testsrc"), QStringLiteral("memory://x"),
                                   QStringLiteral("fd://0"), QStringLiteral("file:///etc/passwd")}) {
        EXPECT_FALSE(watched.load(address)) << address.toStdString();
    }
    Watched::settle(200);
    EXPECT_TRUE(server.requests().empty());
}

}
