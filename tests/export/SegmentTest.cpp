// An export that is cut into segments and joined again, compared with a single run.
#include "SegmentFixture.h"
#include "json/JsonDocument.h"

#include <csignal>
#include <QFile>
#include <sys/resource.h>

namespace pointloom {

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
        expectJoinedLikeSingleRun(job, 3);
    }
}

TEST_F(Segments, OfAnUnevenRateReorderedAndInterlacedComeOutAlike) {
    const QString clip =
        makeClip("-vf setpts='PTS+mod(N,3)*0.004/TB',interlace -fps_mode vfr -c:v libx264 -g 20 "
                 "-flags +ildct+ilme -pix_fmt yuv420p -video_track_timescale 90000");
    ExportJob job = markedJob(clip, folder.path(QStringLiteral("x")));
    job.settings.encoderPreset = QStringLiteral("medium"); // with reordered pictures
    job.trimEnd = 5.7; // how long the clip's last frame is shown depends on FFmpeg's version
    expectJoinedLikeSingleRun(job, 3);
}

TEST_F(Segments, OfRalliesComeOutAlike) {
    ExportJob job =
        markedJob(makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p"), folder.path(QStringLiteral("x")));
    job.settings.rallies = {2, 2};
    job.leftOut = {{2, 2.52}};
    expectJoinedLikeSingleRun(job, 2);
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
