// Exports cut into segments, and the comparison of a joined video with a single run.
#pragma once

#include "export/segments/SegmentExport.h"
#include "ExportJobs.h"
#include "support/TestClips.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <QDir>
#include <QProcess>

namespace pointloom {

inline const QString version = QStringLiteral("1.2.3");

inline ExportJob markedJob(const QString& video, const QString& output) {
    ExportJob job = test::jobFor(video, output);
    job.overlay.markers = {
        {QUuid::createUuid(), 3.1, ScoreState{{{4, 0, {}}}, {}, 2}, QStringLiteral("break")}};
    return job;
}

// Times of all pictures as ffprobe sees them: of showing in their order, or of decoding. Which picture is
// decoded first is the encoder's choice.
inline QList<qint64> pictureTimes(const QString& path, const char* which) {
    QList<qint64> times;
    for (const auto& packet : test::probePackets(path))
        times.push_back(packet.at(which).get<qint64>());
    if (QByteArrayView(which) == "pts")
        std::sort(times.begin(), times.end());
    return times;
}

// Times and check sums of all packets of sound.
inline QByteArray soundPackets(const QString& path) {
    return test::decode(path, QProcess::splitCommand(QStringLiteral("-map 0:a -c copy -f framecrc")));
}

// The smallest likeness, in decibel, of two pictures that are shown at the same time.
inline double smallestLikeness(const QString& a, const QString& b) {
    const QByteArray statistics =
        test::decode(a, QStringList{QStringLiteral("-i"), b} +
                            QProcess::splitCommand(QStringLiteral("-lavfi psnr=stats_file=- -f null")));
    double smallest = 1000;
    for (const QByteArray& line : statistics.split('\n')) {
        const qsizetype at = line.indexOf("psnr_avg:");
        if (at < 0)
            continue;
        const QByteArray number = line.mid(at + 9).split(' ').first();
        smallest = std::min(smallest, number == "inf" ? 1000 : number.toDouble());
    }
    return smallest;
}

class Segments : public testing::Test {
protected:
    QString makeClip(const char* encoding) const {
        const QString arguments =
            QStringLiteral("-f lavfi -i testsrc2=s=320x180:r=25:d=6 -f lavfi -i sine=f=440:d=6 %1 -c:a aac");
        return folder.make(QStringLiteral("clip.mov"),
                           QProcess::splitCommand(arguments.arg(QLatin1String(encoding))));
    }

    SegmentPlan planFor(const ExportJob& job, int count) const {
        SegmentPlan::make(job, count, version).save(planPath());
        return SegmentPlan::load(planPath(), version);
    }

    QString planPath() const { return folder.path(QStringLiteral("match.json")); }

    QString joinAll(const SegmentPlan& plan) const {
        const SegmentFolder segments = SegmentFolder::beside(planPath(), plan);
        segments.create();
        for (int number = plan.count(); number >= 1; --number) // in any order
            encodeSegment(plan, number, segments.segment(number));
        const QString joined =
            folder.path(QStringLiteral("joined.") + fileExtension(plan.job.settings.format));
        joinSegments(plan, segments, joined);
        return joined;
    }

    void expectJoinedLikeSingleRun(const ExportJob& job, int count) const {
        const SegmentPlan plan = planFor(job, count);
        ASSERT_EQ(plan.count(), count);
        expectLikeSingleRun(joinAll(plan), job);
    }

    void expectLikeSingleRun(const QString& joined, ExportJob job) const {
        job.outputPath = folder.path(QStringLiteral("single.") + fileExtension(job.settings.format));
        ExportManager::exportVideo(job);

        for (const char* which : {"pts", "dts"})
            EXPECT_EQ(pictureTimes(joined, which), pictureTimes(job.outputPath, which)) << which;
        EXPECT_GT(pictureTimes(joined, "pts").size(), 50);
        EXPECT_EQ(soundPackets(joined), soundPackets(job.outputPath));
        constexpr double encoderNoise = 28; // dB; a picture that is one frame off has less than 20
        EXPECT_GT(smallestLikeness(joined, job.outputPath), encoderNoise);
        const auto whole = test::probe(job.outputPath);
        const auto again = test::probe(joined);
        for (const char* key : {"codec_name", "codec_tag_string", "profile", "width", "height", "pix_fmt",
                                "start_pts", "duration_ts", "nb_frames", "r_frame_rate", "color_space"})
            EXPECT_EQ(again["streams"][0].value(key, nlohmann::json()),
                      whole["streams"][0].value(key, nlohmann::json()))
                << key;
        EXPECT_EQ(again["format"]["duration"], whole["format"]["duration"]);
        EXPECT_EQ(again["format"]["nb_streams"], whole["format"]["nb_streams"]);
    }

    // What does not belong to the clip, a plan or a finished export.
    QStringList unfinished() const {
        return QDir(folder.path(QString()))
            .entryList({QStringLiteral("*.unfinished")}, QDir::Files | QDir::Dirs | QDir::Hidden);
    }

    template <class Call>
    static QString errorOf(const Call& call) {
        try {
            call();
        } catch (const std::runtime_error& error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    test::ClipFolder folder;
};

}
