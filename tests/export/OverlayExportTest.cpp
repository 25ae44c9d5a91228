// The overlay without its video, decoded again by ffmpeg's own tools.
#include "export/OverlayExport.h"
#include "DecodedFrame.h"
#include "ExportJobs.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QPainter>

namespace pointloom {

namespace {

using Format = OverlayFormat;
using test::ClipFolder;

// B-frames, so that the packets of the file are not in the order of their times; a phone's turned
// picture.
QString turnedClip(const ClipFolder& folder) {
    const QString clip =
        folder.make(QStringLiteral("stored.mp4"),
                    "-f lavfi -i testsrc2=s=640x360:r=25:d=2 -pix_fmt yuv420p -c:v libx264 -bf 3");
    return test::makeTurned(test::counterclockwise, folder, clip, QStringLiteral("turned.mp4"));
}

ExportJob markedJob(const QString& video, const QString& output) {
    ExportJob job = test::jobFor(video, output);
    job.overlay.markers = {{QUuid::createUuid(), 3.7, ScoreState{{{4, 0, {}}}, {}, 2}, {}}};
    return job;
}

struct Difference {
    double alpha = 0; // greatest, 0..255
    double color = 0; // greatest where both are opaque
    int opaque = 0;   // pixels
};

Difference compare(const QImage& a, const QImage& b) {
    Difference difference;
    if (a.size() != b.size())
        return {255, 255, 0};
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor left = a.pixelColor(x, y);
            const QColor right = b.pixelColor(x, y);
            difference.alpha = std::max<double>(difference.alpha, std::abs(left.alpha() - right.alpha()));
            if (left.alpha() < 255 || right.alpha() < 255)
                continue;
            ++difference.opaque;
            difference.color += std::abs(left.red() - right.red()) + std::abs(left.green() - right.green()) +
                                std::abs(left.blue() - right.blue());
        }
    }
    difference.color /= 3.0 * std::max(difference.opaque, 1); // in the mean
    return difference;
}

}

TEST(OverlayExport, MovieAndPicturesHoldTheScoreboardOnATransparentGround) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i testsrc2=s=640x360:r=30:d=4 -pix_fmt yuv420p -c:v libx264 -bf 3");
    ExportJob job = markedJob(clip, folder.path(QStringLiteral("board.mov")));
    const std::array strongColors{qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(200, 30, 160)};
    QImage mark(2, 2, QImage::Format_RGB32);
    for (int i = 0; i < 4; ++i)
        mark.setPixel(i % 2, i / 2, strongColors[static_cast<std::size_t>(i)]);
    job.overlay.watermarkPath = folder.path(QStringLiteral("mark.png"));
    ASSERT_TRUE(mark.scaled(400, 400).save(*job.overlay.watermarkPath));
    exportOverlay(job, Format::prores);
    const auto streams = test::probe(job.outputPath).at("streams");
    ASSERT_EQ(streams.size(), 1U);
    EXPECT_EQ(streams[0].at("codec_tag_string"), "ap4h");
    EXPECT_EQ(streams[0].at("color_space"), "bt709");
    const auto written = test::probePackets(job.outputPath);
    ASSERT_EQ(written.size(), 120U);
    for (std::size_t i = 0; i < written.size(); ++i)
        EXPECT_NEAR(std::stod(written[i].at("pts_time").get<std::string>()), static_cast<double>(i) / 30,
                    1e-6);
    EXPECT_TRUE(streams[0].at("pix_fmt").get<std::string>().starts_with("yuva444p")) << "with alpha";

    job.outputPath = folder.path(QStringLiteral("board"));
    exportOverlay(job, Format::png);
    const QDir pictures(job.outputPath);
    ASSERT_EQ(pictures.entryList(QDir::Files).size(), 120);
    const QImage before(pictures.filePath(QStringLiteral("frame_000111.png")));
    const QImage after(pictures.filePath(QStringLiteral("frame_000112.png")));
    ASSERT_EQ(before.size(), QSize(640, 360));
    EXPECT_EQ(before.pixelColor(5, 5).alpha(), 0);
    EXPECT_GT(before.pixelColor(330, 190).alpha(), 200) << "the scoreboard";
    EXPECT_NE(before, after) << "the marker at 3.7 s, which is frame 111 from 0";
    EXPECT_EQ(after, QImage(pictures.filePath(QStringLiteral("frame_000120.png"))));

    for (const auto& [picture, time] : {std::pair(before, 3.65), std::pair(after, 3.7)}) {
        const QImage frame = test::frameAt(folder.path(QStringLiteral("board.mov")), time,
                                           {QStringLiteral("-pix_fmt"), QStringLiteral("rgba")});
        for (int i = 0; i < 4; ++i) { // the watermark lies from (576.8, 296.8) to (620, 340)
            const QColor shown = frame.pixelColor(588 + i % 2 * 21, 308 + i / 2 * 21);
            const QColor expected(strongColors[static_cast<std::size_t>(i)]);
            EXPECT_NEAR(shown.red(), expected.red(), 4) << "part " << i;
            EXPECT_NEAR(shown.green(), expected.green(), 4) << "part " << i;
            EXPECT_NEAR(shown.blue(), expected.blue(), 4) << "part " << i;
        }
        const Difference difference = compare(picture, frame);
        EXPECT_LE(difference.alpha, 2);
        EXPECT_LT(difference.color, 3);
        EXPECT_GT(difference.opaque, 1000);
    }
}

TEST(OverlayExport, LaidOverTheVideoItLooksLikeTheExport) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=0x606060:s=640x360:r=25:d=0.2 -pix_fmt yuv420p -c:v libx264");
    ExportJob job = markedJob(clip, folder.path(QStringLiteral("board")));
    job.overlay.isLicensed = false;
    job.settings.preset = ExportPreset::twitter1080p;
    exportOverlay(job, Format::png);
    const QImage still = ExportManager::renderStill(job, 0);
    QImage laid(still.size(), QImage::Format_RGB32);
    laid.fill(qRgb(0x60, 0x60, 0x60));
    QPainter(&laid).drawImage(0, 0, QImage(folder.path(QStringLiteral("board/frame_000001.png"))));
    const Difference difference = compare(still, laid);
    EXPECT_EQ(difference.opaque, 1920 * 1080);
    EXPECT_LT(difference.color, 1.5);
}

TEST(OverlayExport, KeepsTheTrimmedRangeOfATurnedVideoUpright) {
    const ClipFolder folder;
    ExportJob job = markedJob(turnedClip(folder), folder.path(QStringLiteral("board.mov")));
    job.trimStart = 0.4;
    job.trimEnd = 1.4;
    std::vector<double> fractions;
    exportOverlay(job, Format::prores,
                  {{}, [&](const ExportProgress& progress) { fractions.push_back(progress.fraction); }});
    const auto video = test::probe(job.outputPath).at("streams")[0];
    EXPECT_EQ(video.at("nb_frames"), "25");
    EXPECT_EQ(video.at("width"), 360);
    EXPECT_EQ(video.at("height"), 640);
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_EQ(fractions.back(), 1);
}

TEST(OverlayExport, WhatWasWrittenGoesWhenItIsCancelled) {
    const ClipFolder folder;
    const QString clip = turnedClip(folder);
    for (const Format format : {Format::prores, Format::png}) {
        const ExportJob job = markedJob(clip, folder.path(QStringLiteral("board")));
        int polls = 0;
        EXPECT_THROW(exportOverlay(job, format, {[&] { return ++polls > 5; }}), ExportCancelled);
        EXPECT_FALSE(QFile::exists(job.outputPath));
    }
    const QString full = QFileInfo(clip).absolutePath();
    EXPECT_THROW(exportOverlay(markedJob(clip, full), Format::png), ExportError);
    EXPECT_TRUE(QFile::exists(clip)) << "a folder with files is left alone";
}

}
