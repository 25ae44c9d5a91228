// Which files beside a video are offered as parts of the same recording.
#include "media/SisterFiles.h"

#include "support/TestClips.h"

#include <gtest/gtest.h>
#include <QFileInfo>

namespace pointloom::test {

using namespace media;

namespace {

QStringList names(const char* text) {
    return QString::fromUtf8(text).split(QStringLiteral(", "));
}

QString clip(const ClipFolder& folder, const char* name, const char* createdAt, const char* size = "64x64") {
    return folder.make(QString::fromUtf8(name),
                       {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                        QStringLiteral("testsrc=s=%1:r=10:d=2").arg(QString::fromUtf8(size)),
                        QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-metadata"),
                        QStringLiteral("creation_time=") + QString::fromUtf8(createdAt)});
}

QStringList namesOf(const Recording& recording) {
    QStringList found;
    for (const QString& path : recording.files())
        found += QFileInfo(path).fileName();
    return found;
}

}

TEST(SisterFiles, NamesOfCamerasContinueWithoutAGap) {
    struct Case {
        const char* name;
        const char* folder;
        const char* sisters;
    };
    for (const auto& [name, folder, sisters] : {
             Case{"GX020123.MP4", "GX010123.MP4, GX010124.MP4, GX020123.MP4, GX030123.MP4, GH040123.MP4",
                  "GX010123.MP4, GX020123.MP4, GX030123.MP4"},
             Case{"GOPR0123.MP4", "GP010123.MP4, GP020123.MP4, GOPR0123.MP4, GP010124.MP4",
                  "GOPR0123.MP4, GP010123.MP4, GP020123.MP4"},
             Case{"DJI_0009.MP4", "DJI_0007.MP4, DJI_0009.MP4, DJI_0010.MP4, DJI_0010.JPG",
                  "DJI_0009.MP4, DJI_0010.MP4"},
             Case{"DJI_20240511140000_0001_D.MP4",
                  "DJI_20240511140000_0001_D.MP4, DJI_20240511141203_0002_D.MP4, "
                  "DJI_20240511141203_0003_W.MP4",
                  "DJI_20240511140000_0001_D.MP4, DJI_20240511141203_0002_D.MP4"},
             Case{"C0012.MP4", "C0011.MP4, C0012.MP4, C0014.MP4", "C0011.MP4, C0012.MP4"},
             Case{"20240511_140000_002.mp4", "20240511_140000_001.mp4, 20240511_140000_002.mp4",
                  "20240511_140000_001.mp4, 20240511_140000_002.mp4"},
             Case{"VID_9.mp4", "VID_10.mp4, VID_9.mp4, VID_11.mp4", "VID_9.mp4, VID_10.mp4, VID_11.mp4"},
             Case{"Halle (1).mp4", "Halle.mp4, Halle (1).mp4, Halle (3).mp4", "Halle.mp4, Halle (1).mp4"},
             Case{"final part2 b.mov", "final part1 b.mov, final part2 b.mov, final part2 c.mov",
                  "final part1 b.mov, final part2 b.mov"},
             Case{"match.mp4", "match.mp4, other.mp4, match.mov", "match.mp4"},
         })
        EXPECT_EQ(sisterNames(QString::fromUtf8(name), names(folder)), names(sisters)) << name;
}

TEST(SisterFiles, FilesMustAgreeAndFollowOnInTime) {
    const ClipFolder folder;
    clip(folder, "GX010007.MP4", "2024-05-11T14:00:00Z");
    const QString second = clip(folder, "GX020007.MP4", "2024-05-11T14:00:02Z");
    clip(folder, "GX030007.MP4", "2024-05-11T14:00:04Z");
    clip(folder, "GX040007.MP4", "2024-05-11T14:00:06Z", "96x64");
    EXPECT_EQ(namesOf(recordingOf(second)), names("GX010007.MP4, GX020007.MP4, GX030007.MP4"));

    // A counter counts clips of their own, too.
    const QString counted = clip(folder, "C0001.MP4", "2024-05-11T15:00:00Z");
    clip(folder, "C0002.MP4", "2024-05-11T15:00:03Z");
    clip(folder, "C0003.MP4", "2024-05-11T15:10:00Z");
    EXPECT_EQ(namesOf(recordingOf(counted)), names("C0001.MP4, C0002.MP4"));
    EXPECT_NEAR(gapBetween(factsOf(folder.path(QStringLiteral("C0002.MP4"))),
                           factsOf(folder.path(QStringLiteral("C0003.MP4"))))
                    .value(),
                595, 0.01);
}

TEST(SisterFiles, FilesChosenTogetherComeInTheirOrder) {
    const ClipFolder folder;
    const QString late = clip(folder, "a.mp4", "2024-05-11T15:00:00Z");
    const QString early = clip(folder, "b.mp4", "2024-05-11T14:00:00Z");
    EXPECT_EQ(namesOf(inOrder({late, early})), names("b.mp4, a.mp4"));
    const QString tenth = clip(folder, "set 10.mp4", "2024-05-11T14:00:00Z");
    const QString ninth = clip(folder, "set 9.mp4", "2024-05-11T15:00:00Z");
    EXPECT_EQ(namesOf(inOrder({tenth, ninth})), names("set 9.mp4, set 10.mp4"));
}

}
