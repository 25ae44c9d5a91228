#include "export/SizeEstimate.h"
#include "ExportJobs.h"
#include "support/TestClips.h"

#include <gtest/gtest.h>
#include <QFileInfo>

namespace pointloom {

namespace {

double ratioToTruth(const ExportJob& job) {
    ExportManager::exportVideo(job);
    return static_cast<double>(estimatedBytes(job).value_or(0)) /
           static_cast<double>(QFileInfo(job.outputPath).size());
}

}

TEST(SizeEstimate, IsNearTheSizeOfTheFileWhateverTheSettings) {
    const test::ClipFolder folder;
    const QString clip = folder.make(QStringLiteral("clip.mp4"),
                                     "-f lavfi -i testsrc2=s=320x180:r=30000/1001:d=15 -f lavfi -i "
                                     "anoisesrc=d=15 -c:v libx264 -pix_fmt yuv420p -c:a aac -b:a 64k");
    ExportJob job = test::jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    EXPECT_NEAR(ratioToTruth(job), 1, 0.3);
    job.settings.quality = media::EncodingQuality::smaller;
    job.trimStart = 9.7; // five seconds
    EXPECT_NEAR(ratioToTruth(job), 1, 0.3);
    job.trimEnd = 11;
    EXPECT_NEAR(ratioToTruth(job), 1, 0.3) << "fewer frames than are tried";
    job.settings = {.format = ExportFormat::prores};
    job.outputPath = folder.path(QStringLiteral("out.mov"));
    EXPECT_NEAR(ratioToTruth(job), 1, 0.3);
}

TEST(SizeEstimate, SilenceAndPicturesThatBeginLateTakeLittle) {
    const test::ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("late.mp4"),
                    "-itsoffset 10 -f lavfi -i testsrc2=s=320x180:r=25:d=4 -f lavfi -i anullsrc=d=14 "
                    "-shortest -c:v libx264 -pix_fmt yuv420p -c:a aac");
    ExportJob job = test::jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    EXPECT_NEAR(ratioToTruth(job), 1, 0.3);
}

TEST(SizeEstimate, NothingIsSaidOfWhatCannotBeExportedOrWasStopped) {
    const test::ClipFolder folder;
    ExportJob job = test::jobFor(folder.path(QStringLiteral("none.mp4")), {});
    EXPECT_FALSE(estimatedBytes(job));
    job.videoPath = folder.make(QStringLiteral("clip.mp4"), "-f lavfi -i color=red:s=64x64:d=1");
    EXPECT_TRUE(estimatedBytes(job));
    EXPECT_FALSE(estimatedBytes(job, [] { return true; }));
    job.trimStart = 7;
    EXPECT_FALSE(estimatedBytes(job));
}

}
