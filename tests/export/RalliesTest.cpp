// Exports that keep only some parts of their range, compared with the export of all of it.
#include "export/ExportTimeline.h"
#include "export/OverlayExport.h"
#include "ExportJobs.h"
#include "support/TestClips.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <QDir>
#include <QProcess>

namespace pointloom {

namespace {

using test::ClipFolder;

Marker markerAt(double time, std::int64_t games, const char* label = nullptr) {
    return {QUuid::createUuid(), time, ScoreState{{{games, 0, {}}}, {}, 1},
            label ? std::optional(QString::fromUtf8(label)) : std::nullopt};
}

// Check sums of all pictures, in the order in which they are shown.
QList<QByteArray> pictures(const QString& path) {
    QList<QByteArray> sums;
    for (const QByteArray& line :
         test::decode(path,
                      QProcess::splitCommand(QStringLiteral("-map 0:v -fps_mode passthrough -f framemd5")))
             .split('\n')) {
        if (!line.startsWith('#') && !line.isEmpty())
            sums += line.split(',').last().trimmed();
    }
    return sums;
}

std::vector<float> soundOf(const QString& path, const QString& filter) {
    const QByteArray bytes =
        test::decode(path, QStringList{QStringLiteral("-filter_complex"), QStringLiteral("[0:a]") + filter} +
                               QProcess::splitCommand(QStringLiteral("-ac 1 -ar 44100 -f f32le")));
    std::vector<float> samples(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
    return samples;
}

double loudness(const std::vector<float>& samples, std::size_t from, std::size_t to) {
    double sum = 0;
    for (std::size_t i = from; i < to; ++i)
        sum += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    return std::sqrt(sum / static_cast<double>(to - from));
}

struct Rallies : testing::Test {
    const ClipFolder folder;
    // 200 pictures that all differ; a rising tone, so that no shift of the sound goes unnoticed.
    const QString clip = folder.make(
        QStringLiteral("match.mp4"),
        "-f lavfi -i testsrc2=s=160x96:r=25:d=8 -f lavfi -i aevalsrc=0.4*sin(2*PI*(300+150*t)*t):d=8 "
        "-c:v libx264 -preset ultrafast -qp 0 -g 50 -pix_fmt yuv420p -c:a pcm_s16le -f mov");

    ExportJob job(const char* name) const {
        ExportJob job = test::jobFor(clip, folder.path(QString::fromUtf8(name)));
        job.lossless = true;
        job.overlay.markers = {markerAt(6, 2, "Late"), markerAt(2.5, 1, "Early")};
        return job;
    }

    QList<QByteArray> exported(const ExportJob& job) const {
        ExportManager::exportVideo(job);
        return pictures(job.outputPath);
    }
};

}

TEST_F(Rallies, KeepTheFramesAroundEachMarkerWithTheirScoresAndSound) {
    const QList<QByteArray> whole = exported(job("whole.mp4"));
    ASSERT_EQ(whole.size(), 200);
    ExportJob rallies = job("rallies.mp4");
    rallies.settings.rallies = {1, 0.5};
    const QList<QByteArray> kept = exported(rallies);
    // 1.5 s is in the middle of picture 37, 6.5 s in that of 162; those that begin within are kept.
    EXPECT_EQ(kept, whole.sliced(38, 75 - 38) + whole.sliced(125, 163 - 125));

    const auto packets = test::probePackets(rallies.outputPath);
    QList<double> times;
    for (const auto& packet : packets)
        times += std::stod(packet.at("pts_time").get<std::string>());
    std::ranges::sort(times);
    for (qsizetype i = 0; i < times.size(); ++i)
        EXPECT_NEAR(times[i], static_cast<double>(i) * 0.04, 1e-6) << "no gap at the seam";

    const auto sound = soundOf(rallies.outputPath, QStringLiteral("anull"));
    const auto expected = soundOf(folder.path(QStringLiteral("whole.mp4")),
                                  QStringLiteral("asplit[a][b];[a]atrim=1.52:3,asetpts=N/SR/TB[c];"
                                                 "[b]atrim=5:6.52,asetpts=N/SR/TB[d];[c][d]concat=v=0:a=1"));
    ASSERT_NEAR(static_cast<double>(sound.size()), static_cast<double>(expected.size()), 2048);
    const std::size_t count = std::min(sound.size(), expected.size());
    std::vector<float> difference(count);
    for (std::size_t i = 0; i < count; ++i)
        difference[i] = sound[i] - expected[i];
    const auto seam = static_cast<std::size_t>(1.48 * 44100);
    constexpr std::size_t around = 1500; // samples: the fade, and what the encoder smears
    EXPECT_LT(loudness(difference, 0, seam - around), 0.02);
    EXPECT_LT(loudness(difference, seam + around, count - around), 0.02);
    EXPECT_LT(loudness(sound, seam - 30, seam + 30), 0.15) << "faded at the seam";
}

TEST_F(Rallies, WhatIsLeftOutIsMissingAndChaptersFollow) {
    const QList<QByteArray> whole = exported(job("whole.mp4"));
    ExportJob cut = job("cut.mp4");
    cut.leftOut = {{5, 5.52}, {2, 2.52}, {2.2, 2.3}, {7.9, 99}};
    EXPECT_EQ(exported(cut), whole.sliced(0, 50) + whole.sliced(63, 62) + whole.sliced(138, 60));
    const auto chapters = chaptersOf(cut, exportTimeline(cut, media::readMediaInfo(clip)).map);
    ASSERT_EQ(chapters.size(), 3U);
    EXPECT_NEAR(chapters[1].start, 2, 1e-9) << "its moment is left out: the next that is kept";
    EXPECT_NEAR(chapters[2].start, 6 - 2 * 0.52, 1e-9);

    cut.settings.rallies = {0.1, 0.1};
    cut.trimStart = 5;
    cut.leftOut = {{5.5, 6.5}};
    EXPECT_THROW(ExportManager::exportVideo(cut), ExportError) << "nothing is kept";
}

TEST_F(Rallies, AnOverlayAloneHasTheSameFrames) {
    ExportJob overlay = job("pictures");
    overlay.settings.rallies = {1, 0.5};
    exportOverlay(overlay, OverlayFormat::png);
    EXPECT_EQ(QDir(overlay.outputPath).entryList({QStringLiteral("*.png")}).size(), (75 - 38) + (163 - 125));
}

TEST(TimeMap, PartsAreJoinedCutAndCounted) {
    const std::vector<Marker> markers{markerAt(50, 1), markerAt(20, 0), markerAt(27, 0), markerAt(99, 0),
                                      markerAt(130, 0)};
    const TimeSpan range{5, 100};
    const std::vector<TimeSpan> expected{{10, 29}, {40, 52}, {89, 100}};
    EXPECT_EQ(keptParts(range, markers, RallyMargins{}, {}), expected);
    const std::vector<TimeSpan> holes{{95, 200}, {15, 16}, {28, 41}, {7, 3}};
    const std::vector<TimeSpan> rest{{10, 15}, {16, 28}, {41, 52}, {89, 95}};
    EXPECT_EQ(keptParts(range, markers, RallyMargins{}, holes), rest);
    EXPECT_EQ(keptParts(range, markers, {}, {}), std::vector<TimeSpan>{range});

    const TimeMap map(rest);
    EXPECT_DOUBLE_EQ(map.length(), 5 + 12 + 11 + 6);
    for (const auto& [source, there] :
         {std::pair(0.0, 0.0), {12, 2}, {15, 5}, {15.5, 5}, {17, 6}, {30, 17}, {90, 29}, {95, 34}, {500, 34}})
        EXPECT_DOUBLE_EQ(map.newTime(source), there) << source;
    for (const double time : {0.0, 4.5, 5.0, 17.0, 33.0})
        EXPECT_DOUBLE_EQ(map.newTime(map.sourceTime(time)), time);
}

}
