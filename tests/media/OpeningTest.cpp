// Files that are not what their name says end in a clear error, at once and without touching anything else.
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"
#include "media/VideoReader.h"
#include "support/TestClips.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pointloom::test {

using namespace media;
using testing::HasSubstr;

namespace {

/// The message of the error that every way of opening the file ends in; they must agree.
std::string openingError(const QString& path) {
    const auto messageOf = [](const auto& open) -> std::string {
        try {
            open();
        } catch (const MediaError& error) {
            return error.what();
        }
        return "no error";
    };
    const auto begin = std::chrono::steady_clock::now();
    const std::string message = messageOf([&] { (void)readMediaInfo(path); });
    EXPECT_EQ(messageOf([&] { (void)VideoReader::open(path); }), message);
    EXPECT_EQ(messageOf([&] { (void)AudioReader::open(path, 0, std::nullopt); }), message);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    return message;
}

QByteArray simpleClip(const ClipFolder& folder) {
    return readFile(folder.make(QStringLiteral("simple.mp4"),
                                "-f lavfi -i testsrc2=s=128x96:r=25:d=1 -f lavfi -i "
                                "sine=d=1 -pix_fmt yuv420p -c:v libx264 -c:a aac"));
}

}

TEST(Opening, ThingsThatAreNoFilesAreNamed) {
    const ClipFolder folder;
    EXPECT_THAT(openingError(folder.path(QStringLiteral("missing.mp4"))), HasSubstr("does not exist"));
    EXPECT_THAT(openingError(folder.path(QString())), HasSubstr("folder"));
    EXPECT_THAT(openingError(folder.write(QStringLiteral("empty.mp4"), {})), HasSubstr("empty"));

    const QString pipe = folder.path(QStringLiteral("pipe.mp4"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_THAT(openingError(pipe), HasSubstr("not a regular file"));
}

TEST(Opening, OtherFormatsUnderTheNameOfAMovieAreRefused) {
    const ClipFolder folder;
    const QString secret =
        folder.make(QStringLiteral("secret.ts"), "-f lavfi -i testsrc2=d=1 -c:v mpeg2video");
    const QByteArray playlist =
        "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + secret.toUtf8() + "\n#EXT-X-ENDLIST\n";
    const QByteArray list = "ffconcat version 1.0\nfile '" + secret.toUtf8() + "'\n";
    const QByteArray png = readFile(folder.make(QStringLiteral("a.png"), "-f lavfi -i color -frames:v 1"));
    const QByteArray matroska =
        readFile(folder.make(QStringLiteral("a.mkv"), "-f lavfi -i testsrc2=d=1 -c:v mpeg4"));
    for (const QByteArray& content : {playlist, list, png, matroska, QByteArray("just a text"),
                                      QByteArray(3, '\0'), QByteArray(100'000, '\0')})
        EXPECT_THAT(openingError(folder.write(QStringLiteral("disguised.mp4"), content)),
                    HasSubstr("not an MP4 or MOV video"))
            << content.left(20).constData();
}

TEST(Opening, ARecordingWithoutItsIndexIsCalledCutShort) {
    const ClipFolder folder;
    const QByteArray clip = simpleClip(folder); // its index is at the end
    EXPECT_THAT(openingError(folder.write(QStringLiteral("cut.mp4"), clip.left(clip.size() / 2))),
                HasSubstr("index is missing"));
}

TEST(Opening, AFileCutAnywhereOpensOrFailsInWords) {
    const ClipFolder folder;
    simpleClip(folder);
    const QByteArray clip = readFile(
        folder.make(QStringLiteral("fast.mp4"),
                    {QStringLiteral("-i"), folder.path(QStringLiteral("simple.mp4")), QStringLiteral("-c"),
                     QStringLiteral("copy"), QStringLiteral("-movflags"), QStringLiteral("+faststart")}));
    int opened = 0;
    for (int part = 1; part < 16; ++part) {
        const QString path = folder.write(QStringLiteral("part.mp4"), clip.left(clip.size() * part / 16));
        try {
            VideoReader reader = VideoReader::open(path);
            while (reader.read())
                ++opened;
        } catch (const MediaError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
    EXPECT_GT(opened, 0) << "what is there of a cut file should be shown";
}

// FFmpeg spends a second of processor time on each of its fragments without polling the deadline.
TEST(Opening, AFragmentedMovieWithoutTrackNumbersIsRefused) {
    const ClipFolder folder;
    const QByteArray clip = readFile(folder.make(QStringLiteral("fragments.mp4"),
                                                 "-f lavfi -i testsrc2=s=64x48:r=25:d=0.2 -c:v libx264 "
                                                 "-movflags +frag_keyframe+empty_moov"));
    EXPECT_TRUE(readMediaInfo(folder.path(QStringLiteral("fragments.mp4"))).video);
    constexpr qsizetype numberAt = 16; // bytes after the box's type
    const qsizetype header = clip.indexOf("tkhd");
    QByteArray negative = clip;
    negative[header + numberAt] = '\x80';
    QByteArray missing = clip;
    missing.replace(header, 4, "free");
    for (const QByteArray& content : {negative, missing})
        EXPECT_THAT(openingError(folder.write(QStringLiteral("changed.mp4"), content)), HasSubstr("damaged"));
}

// FFmpeg takes 56 bytes of memory for each.
TEST(Opening, AFragmentWithMoreSamplesThanTheFileHasBytesIsRefused) {
    const ClipFolder folder;
    QByteArray clip = readFile(folder.make(QStringLiteral("fragments.mp4"),
                                           "-f lavfi -i testsrc2=s=64x48:r=25:d=0.4 -c:v libx264 -g 5 "
                                           "-movflags +frag_keyframe+empty_moov"));
    const qsizetype run = clip.lastIndexOf("trun");
    ASSERT_GT(run, 0);
    clip.replace(run + 4, 8, QByteArray::fromHex("0000000001350000"));
    EXPECT_THAT(openingError(folder.write(QStringLiteral("changed.mp4"), clip)), HasSubstr("damaged"));
}

TEST(Opening, FaultsAreToldApart) {
    const ClipFolder folder;
    const auto errorOf = [](const QString& path) {
        try {
            (void)VideoReader::open(path);
        } catch (const MediaError& error) {
            return error;
        }
        return MediaError("no error");
    };
    const auto faultOf = [&](const QString& path) { return errorOf(path).fault(); };
    const QByteArray clip = simpleClip(folder);
    EXPECT_EQ(faultOf(folder.path(QStringLiteral("missing.mp4"))), MediaFault::missing);
    EXPECT_EQ(faultOf(folder.write(QStringLiteral("text.mp4"), "a text")), MediaFault::notAVideo);
    EXPECT_EQ(faultOf(folder.write(QStringLiteral("cut.mp4"), clip.left(clip.size() / 2))),
              MediaFault::cutShort);
    EXPECT_EQ(faultOf(folder.make(QStringLiteral("sound.mp4"), "-f lavfi -i sine=d=1 -c:a aac")),
              MediaFault::noPicture);
    QByteArray unknown = clip;
    for (const auto& [known, name] : {std::pair("avc1", "zzz1"), std::pair("mp4a", "zzz2")}) {
        unknown.replace(known, name); // first the picture's, then the sound's as well
        const MediaError error = errorOf(folder.write(QStringLiteral("unknown.mp4"), unknown));
        EXPECT_EQ(error.fault(), MediaFault::unsupportedCodec);
        EXPECT_THAT(error.what(), HasSubstr("no decoder for zzz1"));
    }
}

TEST(Opening, SoundAloneHasNoVideo) {
    const ClipFolder folder;
    const QString path = folder.make(QStringLiteral("sound.mp4"), "-f lavfi -i sine=d=1 -c:a aac");
    const MediaInfo info = readMediaInfo(path);
    EXPECT_FALSE(info.video);
    EXPECT_EQ(info.audioTracks, 1);
    EXPECT_NEAR(info.duration, 1.0, 0.03);
    EXPECT_THROW((void)VideoReader::open(path), MediaError);
}

TEST(Opening, ACoverPictureIsNoVideo) {
    const ClipFolder folder;
    const QString cover = folder.make(QStringLiteral("cover.png"), "-f lavfi -i color=s=64x64 -frames:v 1");
    const QString path = folder.make(QStringLiteral("song.mp4"),
                                     {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                      QStringLiteral("sine=d=1"), QStringLiteral("-i"), cover,
                                      QStringLiteral("-map"), QStringLiteral("0"), QStringLiteral("-map"),
                                      QStringLiteral("1"), QStringLiteral("-c:v"), QStringLiteral("copy"),
                                      QStringLiteral("-disposition:v:0"), QStringLiteral("attached_pic")});
    EXPECT_FALSE(readMediaInfo(path).video);
}

TEST(Opening, NamesWithColonsAndSpacesAreFiles) {
    const ClipFolder folder;
    const QByteArray clip = simpleClip(folder);
    const QString path = folder.write(QStringLiteral("http: match: 1%d.mp4"), clip);
    EXPECT_TRUE(readMediaInfo(path).video);
}

}
