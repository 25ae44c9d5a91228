// The export of a match in several files, compared with that of the clip before it was cut.
#include "ExportJobs.h"
#include "support/TestClips.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <QFile>
#include <QProcess>

namespace pointloom {

namespace {

QList<QByteArray> framesOf(const QString& path) {
    QList<QByteArray> frames; // time and check sum
    for (const QByteArray& line :
         test::decode(path,
                      QProcess::splitCommand(QStringLiteral("-map 0:v -fps_mode passthrough -f framemd5")))
             .split('\n')) {
        const QList<QByteArray> columns = line.split(',');
        if (columns.size() > 5)
            frames += columns[2].trimmed() + ' ' + columns[5].trimmed();
    }
    return frames;
}

std::vector<float> monoOf(const QString& path) {
    const QByteArray bytes =
        test::decode(path, QProcess::splitCommand(QStringLiteral("-map 0:a -ac 1 -ar 44100 -f f32le")));
    std::vector<float> samples(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
    return samples;
}

/// The shift in samples by which `shifted`, which is noise, fits best to `sound` at a time.
int shiftAt(const std::vector<float>& sound, const std::vector<float>& shifted, double time) {
    const auto from = static_cast<int>(time * 44100);
    int best = 0;
    double highest = 0;
    for (int shift = -500; shift <= 500; ++shift) {
        double sum = 0;
        for (int i = from; i < from + 2000; ++i)
            sum += static_cast<double>(sound[static_cast<std::size_t>(i)]) *
                   static_cast<double>(shifted[static_cast<std::size_t>(i + shift)]);
        if (sum > highest) {
            highest = sum;
            best = shift;
        }
    }
    return best;
}

class SplitRecording : public testing::Test {
protected:
    void SetUp() override {
        whole = clips.make(QStringLiteral("whole.mp4"),
                           "-f lavfi -i testsrc=s=96x64:r=30000/1001:d=4 -f lavfi -i "
                           "anoisesrc=r=48000:a=0.3:seed=3:d=4 -c:v libx264 -qp 4 -g 30 -c:a aac");
        clips.make(QStringLiteral("part%d.mp4"),
                   {QStringLiteral("-i"), whole, QStringLiteral("-c"), QStringLiteral("copy"),
                    QStringLiteral("-f"), QStringLiteral("segment"), QStringLiteral("-segment_times"),
                    QStringLiteral("1,3"), QStringLiteral("-reset_timestamps"), QStringLiteral("1"),
                    QStringLiteral("-avoid_negative_ts"), QStringLiteral("disabled"),
                    QStringLiteral("-segment_format_options"), QStringLiteral("avoid_negative_ts=disabled")});
        for (const char* name : {"part0.mp4", "part1.mp4", "part2.mp4"})
            parts.push_back(clips.path(QString::fromUtf8(name)));
    }

    ExportJob jobOf(const std::vector<QString>& files, const char* output) const {
        ExportJob job = test::jobFor(files.front(), clips.path(QString::fromUtf8(output)));
        if (files.size() > 1)
            job.videoFiles = files;
        job.lossless = true;
        for (const double time : {0.5, 1.1, 2.9, 3.05})
            job.overlay.markers.push_back(
                {QUuid::createUuid(), time, ScoreState{{{static_cast<int>(time * 10), 0, {}}}, {}, 1}, {}});
        return job;
    }

    test::ClipFolder clips;
    QString whole;
    std::vector<QString> parts;
};

}

TEST_F(SplitRecording, ItsExportHasTheFramesTimesScoresAndSoundOfTheUncutClips) {
    ExportManager::exportVideo(jobOf({whole}, "a.mp4"), {});
    ExportManager::exportVideo(jobOf(parts, "b.mp4"), {});
    const auto frames = framesOf(clips.path(QStringLiteral("a.mp4")));
    EXPECT_GE(frames.size(), 119);
    EXPECT_EQ(framesOf(clips.path(QStringLiteral("b.mp4"))), frames);

    const auto expected = monoOf(clips.path(QStringLiteral("a.mp4")));
    const auto actual = monoOf(clips.path(QStringLiteral("b.mp4")));
    ASSERT_NEAR(static_cast<double>(actual.size()), static_cast<double>(expected.size()), 1024);
    for (const double time : {0.2, 0.9, 1.06, 2.0, 2.9, 3.07, 3.8})
        EXPECT_LE(std::abs(shiftAt(expected, actual, time)), 1) << time << " s";
}

TEST_F(SplitRecording, ARangeOverSeamsAndAStillAreThoseOfTheUncutClip) {
    ExportJob ofWhole = jobOf({whole}, "a.mp4");
    ExportJob ofParts = jobOf(parts, "b.mp4");
    for (ExportJob* job : {&ofWhole, &ofParts}) {
        job->trimStart = 0.8;
        job->trimEnd = 3.4;
        job->leftOut = {{1.5, 2.2}};
        ExportManager::exportVideo(*job, {});
    }
    EXPECT_EQ(framesOf(ofParts.outputPath), framesOf(ofWhole.outputPath));
    EXPECT_EQ(ExportManager::renderStill(ofParts, 3.1), ExportManager::renderStill(ofWhole, 3.1));
}

TEST_F(SplitRecording, AMissingFileIsNamedBeforeAnythingIsWritten) {
    QFile::remove(parts[2]);
    try {
        ExportManager::exportVideo(jobOf(parts, "b.mp4"), {});
        FAIL() << "exported";
    } catch (const ExportError& error) {
        EXPECT_NE(std::string(error.what()).find("part2.mp4: the file does not exist"), std::string::npos)
            << error.what();
    }
    EXPECT_FALSE(QFile::exists(clips.path(QStringLiteral("b.mp4"))));
}

}
