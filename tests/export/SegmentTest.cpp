// An export that is cut into segments and joined again, compared with a single run.
#include "export/segments/ParallelExport.h"
#include "export/segments/SegmentExport.h"
#include "ExportJobs.h"
#include "support/TestClips.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <sys/resource.h>

namespace pointloom {

namespace {

using test::ClipFolder;

const QString version = QStringLiteral("1.2.3");

ExportJob markedJob(const QString& video, const QString& output) {
    ExportJob job = test::jobFor(video, output);
    job.overlay.markers = {
        {QUuid::createUuid(), 3.1, ScoreState{{{4, 0, {}}}, {}, 2}, QStringLiteral("break")}};
    return job;
}

// Times of all pictures as ffprobe sees them: of showing in their order, or of decoding. Which picture is
// decoded first is the encoder's choice.
QList<qint64> pictureTimes(const QString& path, const char* which) {
    QList<qint64> times;
    for (const auto& packet : test::probePackets(path))
        times.push_back(packet.at(which).get<qint64>());
    if (QByteArrayView(which) == "pts")
        std::sort(times.begin(), times.end());
    return times;
}

// Times and check sums of all packets of sound.
QByteArray soundPackets(const QString& path) {
    return test::decode(path, QProcess::splitCommand(QStringLiteral("-map 0:a -c copy -f framecrc")));
}

// The smallest likeness, in decibel, of two pictures that are shown at the same time.
double smallestLikeness(const QString& a, const QString& b) {
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  QStringList{QStringLiteral("-i"), a, QStringLiteral("-i"), b} +
                      QProcess::splitCommand(QStringLiteral("-lavfi psnr=stats_file=- -f null -")));
    process.waitForFinished();
    double smallest = 1000;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
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

    // The segments are joined by `make`, which names the file.
    void expectSameAsSingleRun(ExportJob job, int count,
                               const std::function<QString(const SegmentPlan&)>& make) const {
        const SegmentPlan plan = planFor(job, count);
        ASSERT_EQ(plan.count(), count);
        const QString joined = make(plan);
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

    const std::function<QString(const SegmentPlan&)> joinOneByOne = [this](const SegmentPlan& plan) {
        return joinAll(plan);
    };

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

    ClipFolder folder;
};

}

TEST_F(Segments, JoinedAreTimedAndSoundLikeASingleRunInEveryCodec) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    for (const ExportFormat format : {ExportFormat::h264, ExportFormat::hevc, ExportFormat::prores}) {
        SCOPED_TRACE(fileExtension(format).toStdString() + std::to_string(static_cast<int>(format)));
        QDir(folder.path(QStringLiteral("match.parts"))).removeRecursively();
        ExportJob job = markedJob(clip, folder.path(QStringLiteral("x")));
        job.settings.format = format;
        job.trimStart = 0.5;
        job.trimEnd = 5.3;
        if (format == ExportFormat::hevc)
            job.settings.encoderPreset = QStringLiteral("fast"); // reorders pictures in a pyramid
        expectSameAsSingleRun(job, 3, joinOneByOne);
    }
}

TEST_F(Segments, OfAnUnevenRateReorderedAndInterlacedComeOutAlike) {
    const QString clip =
        makeClip("-vf setpts='PTS+mod(N,3)*0.004/TB',interlace -fps_mode vfr -c:v libx264 -g 20 "
                 "-flags +ildct+ilme -pix_fmt yuv420p -video_track_timescale 90000");
    ExportJob job = markedJob(clip, folder.path(QStringLiteral("x")));
    job.settings.encoderPreset = QStringLiteral("medium"); // with reordered pictures
    expectSameAsSingleRun(job, 3, joinOneByOne);
}

TEST_F(Segments, OfRalliesComeOutAlike) {
    ExportJob job =
        markedJob(makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p"), folder.path(QStringLiteral("x")));
    job.settings.rallies = {2, 2};
    job.leftOut = {{2, 2.52}};
    expectSameAsSingleRun(job, 2, joinOneByOne);
}

TEST_F(Segments, MadeAtTheSameTimeAreTimedAndSoundLikeASingleRun) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    // Remains of a process that was killed.
    const QString old = folder.path(
        QStringLiteral("parallel.mp4.%1.999999999.1.unfinished").arg(QSysInfo::machineHostName()));
    ASSERT_TRUE(QDir().mkpath(old + QStringLiteral("/0001.mp4.x")));
    for (const ExportFormat format : {ExportFormat::h264, ExportFormat::hevc}) {
        ExportJob job = markedJob(clip, folder.path(QStringLiteral("parallel.mp4")));
        job.settings.format = format;
        job.trimStart = 0.5;
        double last = 0;
        expectSameAsSingleRun(job, 3, [&](const SegmentPlan& plan) {
            exportInParallel(plan, {{}, [&](const ExportProgress& progress) {
                                        EXPECT_GE(progress.fraction, last);
                                        EXPECT_TRUE(progress.fraction <= 0.95 || progress.fraction == 1)
                                            << progress.fraction;
                                        last = progress.fraction;
                                    }});
            return plan.job.outputPath;
        });
        EXPECT_EQ(last, 1.0);
    }
    EXPECT_EQ(unfinished(), QStringList());
}

TEST_F(Segments, MadeAtTheSameTimeEndTogetherAndLeaveNothing) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    const SegmentPlan plan = planFor(markedJob(clip, folder.path(QStringLiteral("parallel.mp4"))), 3);
    int questions = 0;
    EXPECT_THROW(exportInParallel(plan, {[&] { return ++questions > 1; }}), ExportCancelled);

    SegmentPlan impossible = plan;
    impossible.job.settings.encoderPreset = QStringLiteral("warp");
    EXPECT_TRUE(
        errorOf([&] { exportInParallel(impossible); }).contains(QStringLiteral("could not be opened")));
    EXPECT_EQ(unfinished(), QStringList());
    EXPECT_FALSE(QFile::exists(plan.job.outputPath));
}

TEST_F(Segments, MadeAtTheSameTimeOfAVideoCutShortTellTheDamageOnce) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p -movflags +faststart");
    ASSERT_TRUE(QFile::resize(clip, QFileInfo(clip).size() * 2 / 3));
    ExportJob job = markedJob(clip, folder.path(QStringLiteral("parallel.mp4")));
    const SegmentPlan plan = planFor(job, 3);
    ASSERT_GT(plan.count(), 1);
    const ExportReport parallel = exportInParallel(plan);
    job.outputPath = folder.path(QStringLiteral("single.mp4"));
    const ExportReport single = ExportManager::exportVideo(job);
    EXPECT_EQ(pictureTimes(plan.job.outputPath, "pts"), pictureTimes(job.outputPath, "pts"));
    EXPECT_GT(single.damage.secondsMissing, 1);
    EXPECT_NEAR(parallel.damage.secondsMissing, single.damage.secondsMissing, 0.05);
}

TEST_F(Segments, AreCutAtKeyFramesAndNotTooShort) {
    const QString clip = makeClip("-c:v libx264 -g 25 -sc_threshold 0 -pix_fmt yuv420p");
    const SegmentPlan plan = planFor(markedJob(clip, QStringLiteral("x")), 100);
    EXPECT_EQ(plan.count(), 6); // a second each
    for (int number = 2; number <= plan.count(); ++number)
        EXPECT_EQ(*plan.window(number).from % plan.ticksPerSecond, 0) << number;
}

TEST_F(Segments, AFinishedOneIsNotEncodedAgainAndAnotherPlansOneIs) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    const SegmentPlan plan = planFor(markedJob(clip, QStringLiteral("x")), 2);
    const QString file = folder.path(QStringLiteral("part.mp4"));
    // Remains of a worker that was killed.
    const QString remains =
        file + u'.' + QSysInfo::machineHostName() + QStringLiteral(".999999999.1.unfinished");
    EXPECT_TRUE(QFile(remains).open(QIODevice::WriteOnly));
    EXPECT_TRUE(encodeSegment(plan, 1, file).has_value());
    EXPECT_FALSE(QFile::exists(remains));
    EXPECT_FALSE(encodeSegment(plan, 1, file).has_value());
    EXPECT_TRUE(encodeSegment(plan, 2, file).has_value());

    EXPECT_THROW(encodeSegment(plan, 1, file, {[] { return true; }}), ExportCancelled);
    EXPECT_TRUE(isSegment(plan, 2, file)) << "what was there stays";
    EXPECT_EQ(unfinished(), QStringList());
}

TEST_F(Segments, WithoutAllOfThemOrWithAChangedSourceNothingIsJoined) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    const SegmentPlan plan = planFor(markedJob(clip, QStringLiteral("x")), 3);
    const SegmentFolder segments = SegmentFolder::beside(planPath(), plan);
    segments.create();
    encodeSegment(plan, 2, segments.segment(2));
    const QString joined = folder.path(QStringLiteral("joined.mp4"));
    const auto join = [&] { joinSegments(plan, segments, joined); };
    EXPECT_TRUE(errorOf(join).endsWith(QStringLiteral("these are missing: 1, 3")))
        << errorOf(join).toStdString();

    QFile source(clip);
    ASSERT_TRUE(source.open(QIODevice::Append));
    source.write("more");
    source.close();
    const auto encode = [&] { encodeSegment(plan, 2, segments.segment(2)); };
    EXPECT_TRUE(errorOf(encode).contains(QStringLiteral("the file has changed since the plan was made")));
    EXPECT_TRUE(errorOf(join).contains(QStringLiteral("the file has changed since the plan was made")));
    EXPECT_FALSE(QFile::exists(joined));
}

TEST_F(Segments, ThatWereEncodedOtherwiseOrAreCutShortAreRefused) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    ExportJob job = markedJob(clip, QStringLiteral("x"));
    SegmentPlan plan = planFor(job, 2);
    const SegmentFolder segments = SegmentFolder::beside(planPath(), plan);
    joinAll(plan);
    const auto join = [&] { joinSegments(plan, segments, folder.path(QStringLiteral("j.mp4"))); };

    const QByteArray whole = test::readFile(segments.segment(2));
    QFile::resize(segments.segment(2), whole.size() - 2000);
    EXPECT_TRUE(errorOf(join).contains(QStringLiteral("0002.mp4: the file is damaged or cut short")))
        << errorOf(join).toStdString();
    QFile::remove(segments.segment(2));

    SegmentPlan other = plan;
    other.job.settings.encoderPreset = QStringLiteral("medium");
    encodeSegment(other, 2, segments.segment(2));
    EXPECT_TRUE(errorOf(join).contains(
        QStringLiteral("the segment differs from the others in its encoder's settings; ")))
        << errorOf(join).toStdString();
    EXPECT_FALSE(QFile::exists(folder.path(QStringLiteral("j.mp4"))));
}

TEST_F(Segments, ABadPlanIsRefusedInWords) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    const SegmentPlan plan = planFor(markedJob(clip, QStringLiteral("x")), 2);
    EXPECT_EQ(SegmentPlan::load(planPath(), version), plan);
    const auto load = [&] { (void)SegmentPlan::load(planPath(), version); };
    const QByteArray good = test::readFile(planPath());
    const auto errorWith = [&](const char* from, const char* to) {
        folder.write(QStringLiteral("match.json"), QByteArray(good).replace(from, to));
        return errorOf(load).toStdString();
    };
    EXPECT_EQ(errorOf([&] { (void)SegmentPlan::load(QStringLiteral("/dev/zero"), version); }),
              QStringLiteral("/dev/zero: is not a file"));
    EXPECT_NE(
        errorWith("\"isLicensed\": true", "\"isLicensed\": false").find("was changed after it was made"),
        std::string::npos);
    EXPECT_NE(errorWith("\"segments\": [", "\"segments\": [7,").find("segments[0]: expected an object"),
              std::string::npos);
    EXPECT_NE(errorWith("\"version\": 4", "\"version\": 9").find("form 9"), std::string::npos);
    EXPECT_NE(errorWith("1.2.3", "1.2.2").find("version 1.2.2"), std::string::npos);
    EXPECT_NE(errorWith("{", "[").find("match.json: "), std::string::npos);
}

TEST_F(Segments, SoundThatCannotBeMadeLeavesTheVideoSilent) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p");
    const SegmentPlan plan = planFor(test::jobFor(clip, folder.path(QStringLiteral("out.mp4"))), 2);
    ASSERT_TRUE(plan.hasSound);
    const SegmentFolder segments = SegmentFolder::beside(planPath(), plan);
    ASSERT_TRUE(QDir().mkpath(segments.sound() + QStringLiteral("/in the way")));
    const auto streams = test::probe(joinAll(plan)).at("streams");
    ASSERT_EQ(streams.size(), 1U);
    EXPECT_EQ(streams[0].at("nb_frames"), "150");
}

TEST_F(Segments, APlanThatHasNoRoomSaysWhyAndLeavesTheOneBeforeIt) {
    SegmentPlan().save(planPath());
    const QByteArray before = test::readFile(planPath());
    const auto usualEnd = std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit none{0, usual.rlim_max}; // bytes a file may have
    setrlimit(RLIMIT_FSIZE, &none);
    const QString error = errorOf([&] { SegmentPlan().save(planPath()); });
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, usualEnd);
    EXPECT_TRUE(error.endsWith(QStringLiteral("cannot be written: File too large"))) << error.toStdString();
    EXPECT_EQ(test::readFile(planPath()), before);
}

}
