// Exports that take segments of earlier ones: the same video, and only what differs encoded.
#include "export/segments/ReusingExport.h"
#include "export/ExportSource.h"
#include "export/OverlayExport.h"
#include "export/segments/SegmentKeys.h"
#include "SegmentFixture.h"

#include <cmath>
#include <future>
#include <limits>
#include <QImage>

namespace pointloom {

namespace {

constexpr ReuseChoices everySecond{.spacing = 1};
constexpr const char* keyEverySecond = "-c:v libx264 -g 25 -sc_threshold 0 -pix_fmt yuv420p";

// The last of three tracks, which players show only when they are told to.
void expectTextTrack(const QString& path, const QByteArray& text) {
    const auto streams = test::probe(path).at("streams");
    ASSERT_EQ(streams.size(), 3U);
    EXPECT_EQ(streams[2].at("codec_name"), "mov_text");
    EXPECT_EQ(streams[2].at("disposition").at("default"), 0);
    EXPECT_EQ(streams[0].at("disposition").at("default"), 1);
    EXPECT_EQ(test::decode(path, QStringLiteral("-map 0:2 -f srt").split(u' ')).toStdString(),
              text.toStdString());
}

SportScoreState games(std::int64_t first, std::int64_t second) {
    return ScoreState{{{first, second, {}}}, {}, 1};
}

class ReusingExport : public Segments {
protected:
    SegmentCache cache(qint64 limit = SegmentCache::usualLimit, qint64 reserve = 0) const {
        return SegmentCache(folder.path(QStringLiteral("cache")), limit, reserve);
    }

    QStringList parts() const {
        return QDir(cache().folder()).entryList({QStringLiteral("*.part")}, QDir::Files, QDir::Name);
    }

    QString partPath(const QString& name) const { return QDir(cache().folder()).filePath(name); }

    ExportJob job(const QString& clip) const {
        ExportJob job = markedJob(clip, folder.path(QStringLiteral("out.mp4")));
        job.overlay.markers = {{QUuid::createUuid(), 0.5, games(1, 0), {}},
                               {QUuid::createUuid(), 2.3, games(2, 0), {}},
                               {QUuid::createUuid(), 3.1, games(3, 0), {}}};
        return job;
    }

    // Seconds of pictures that were encoded.
    static double encodedSeconds(const ExportJob& job, const SegmentCache& cache,
                                 ReuseChoices choices = everySecond) {
        ExportProgress last;
        exportReusing(job, cache, {{}, [&](const ExportProgress& progress) { last = progress; }}, choices);
        EXPECT_EQ(last.fraction, 1);
        return static_cast<double>(last.frames - last.reusedFrames) / 25;
    }
};

}

TEST_F(ReusingExport, ComesOutLikeASingleRunTheFirstTimeAndTheSecond) {
    const QString clip = makeClip(keyEverySecond);
    for (const ExportFormat format : {ExportFormat::h264, ExportFormat::hevc, ExportFormat::prores}) {
        SCOPED_TRACE(static_cast<int>(format));
        ExportJob job = markedJob(clip, folder.path(QStringLiteral("out.") + fileExtension(format)));
        job.settings.format = format;
        job.trimStart = 0.5;
        QByteArray first;
        for (const bool isFirst : {true, false}) {
            double last = 0;
            const auto onProgress = [&](const ExportProgress& progress) {
                EXPECT_GE(progress.fraction, last);
                EXPECT_TRUE(progress.fraction <= 0.95 || progress.fraction == 1) << progress.fraction;
                EXPECT_EQ(progress.reusedFrames > 0, !isFirst);
                last = progress.fraction;
            };
            exportReusing(job, cache(), {{}, onProgress}, everySecond);
            EXPECT_EQ(last, 1.0);
            EXPECT_EQ(test::readFile(job.outputPath) == first, !isFirst);
            first = test::readFile(job.outputPath);
        }
        expectLikeSingleRun(job.outputPath, job);
    }
    EXPECT_EQ(parts().size(), 3 * 5 + 1) << "sound is the same in all";
    EXPECT_EQ(unfinished(), QStringList());
    EXPECT_EQ(QDir(cache().folder()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
}

TEST_F(ReusingExport, AfterAChangeOnlyTheSecondsThatDifferAreEncoded) {
    const QString clip = makeClip(keyEverySecond);
    ExportJob job = this->job(clip);
    EXPECT_EQ(encodedSeconds(job, cache()), 6);
    EXPECT_EQ(encodedSeconds(job, cache()), 0);

    job.overlay.markers[1].score = games(1, 1); // from 2.3 to 3.1
    job.overlay.markers[0].label = QStringLiteral("a chapter");
    job.overlay.markers[0].id = QUuid::createUuid();
    EXPECT_EQ(encodedSeconds(job, cache()), 2);
    expectLikeSingleRun(job.outputPath, job);
    EXPECT_EQ(test::probe(job.outputPath).at("chapters").size(), 2U);

    job.trimStart = 0.32;
    job.trimEnd = 5.6;
    EXPECT_NEAR(encodedSeconds(job, cache()), 2 - 0.32 + 5.6 - 4, 0.05) << "ends of a second or more";
    expectLikeSingleRun(job.outputPath, job);

    job.trimStart = 0;
    job.trimEnd.reset();
    job.leftOut = {{2.2, 2.6}};
    EXPECT_NEAR(encodedSeconds(job, cache()), 4 - 2 - 0.4, 0.05);
    expectLikeSingleRun(job.outputPath, job);
}

TEST_F(ReusingExport, CaptionsComeWithoutEncodingAnythingAnew) {
    const QString clip = makeClip(keyEverySecond);
    ExportJob job = this->job(clip);
    job.leftOut = {{0.8, 1.8}};
    encodedSeconds(job, cache());
    const QByteArray expected = "1\n00:00:00,000 --> 00:00:00,500\nAna – Eva  0–0\n\n"
                                "2\n00:00:00,500 --> 00:00:01,300\nAna – Eva  1–0\n\n"
                                "3\n00:00:01,300 --> 00:00:02,100\nAna – Eva  2–0\n\n"
                                "4\n00:00:02,100 --> 00:00:05,000\nAna – Eva  3–0\n\n";
    job.settings.captions = CaptionsPlace::subRip;
    EXPECT_EQ(encodedSeconds(job, cache()), 0);
    EXPECT_EQ(test::readFile(folder.path(QStringLiteral("out.srt"))), expected);
    EXPECT_EQ(test::probe(job.outputPath).at("streams").size(), 2U);

    job.settings.captions = CaptionsPlace::track;
    EXPECT_EQ(encodedSeconds(job, cache()), 0);
    expectTextTrack(job.outputPath, expected);
    job.outputPath = folder.path(QStringLiteral("whole.mov"));
    job.settings.format = ExportFormat::prores;
    ExportManager::exportVideo(job);
    expectTextTrack(job.outputPath, expected);
}

TEST_F(ReusingExport, CaptionsAreNumberedWithTheirVideoAndNeverReplaceOthers) {
    ExportJob job = this->job(makeClip(keyEverySecond));
    job.settings.captions = CaptionsPlace::subRip;
    job.ifExists = IfExists::addNumber;
    const QString theirs = folder.path(QStringLiteral("out.srt"));
    writeWhole(theirs, "theirs");
    for (const bool isReusing : {true, false}) {
        const ExportReport report = isReusing ? exportReusing(job, cache()) : ExportManager::exportVideo(job);
        EXPECT_EQ(report.captionsFault, std::nullopt);
        EXPECT_EQ(report.outputPath,
                  folder.path(isReusing ? QStringLiteral("out-2.mp4") : QStringLiteral("out-3.mp4")));
        EXPECT_TRUE(
            test::readFile(pathBeside(report.outputPath, QStringLiteral("srt"))).startsWith("1\n00:00:"));
    }
    EXPECT_EQ(test::readFile(theirs), "theirs");
}

// The pictures are drawn by the slow way here.
TEST_F(ReusingExport, KeysDifferExactlyWherePicturesDo) {
    const QString clip = makeClip("-vf fps=10 -c:v libx264 -g 10 -bf 0 -sc_threshold 0 -pix_fmt yuv420p");
    const ExportJob base = job(clip);
    const media::MediaInfo info = openSource(clip).info();
    const SegmentPlan plan = *SegmentPlan::onGrid(base, media::infoOf(base.recording()), 1, 1, version);
    ASSERT_EQ(plan.count(), 6);
    const auto drawn = [&](const ExportJob& job) {
        const PictureLayout layout = resolveExport(job, info).layout;
        std::vector<std::vector<QImage>> seconds(6);
        for (int frame = 0; frame < 60; ++frame)
            seconds[static_cast<std::size_t>(frame / 10)].push_back(renderOverlay(job, layout, frame / 10.0));
        return seconds;
    };
    const auto keys = [&](const ExportJob& job) {
        return segmentKeys(*SegmentPlan::onGrid(job, media::infoOf(job.recording()), 1, 1, version));
    };
    const auto before = drawn(base);
    const auto keysBefore = keys(base);
    const std::pair<const char*, std::function<void(ExportJob&)>> edits[] = {
        {"a score", [](ExportJob& job) { job.overlay.markers[2].score = games(0, 3); }},
        {"the score before", [](ExportJob& job) { job.overlay.initialScore = games(0, 5); }},
        {"a marker that comes a frame later",
         [](ExportJob& job) { job.overlay.markers[1].startTime += 0.2; }},
        {"a marker at a frame", [](ExportJob& job) { job.overlay.markers[1].startTime = 4; }},
        {"a marker with the score before it",
         [](ExportJob& job) {
             job.overlay.markers.push_back({QUuid::createUuid(), 1.7, games(1, 0), {}});
         }},
        {"a second marker of one time",
         [](ExportJob& job) {
             job.overlay.markers.push_back({QUuid::createUuid(), 2.3, games(6, 6), {}});
         }},
        {"no marker", [](ExportJob& job) { job.overlay.markers.clear(); }},
        {"who serves",
         [](ExportJob& job) {
             job.overlay.markers[0].score = ScoreState{{{1, 0, {}}}, {}, 2};
         }},
        {"a name", [](ExportJob& job) { job.overlay.config.team2.player1 = QStringLiteral("Evi"); }},
        {"a second player, who is not shown in singles",
         [](ExportJob& job) { job.overlay.config.team2.player2 = QStringLiteral("Uma"); }},
        {"the template", [](ExportJob& job) { job.overlay.templateID = TemplateID::minimal; }},
        {"the place",
         [](ExportJob& job) {
             job.overlay.scoreboardPosition = {0.2, 0.8};
         }},
        {"the size", [](ExportJob& job) { job.overlay.scoreboardUserScale = 1.3; }},
        {"the licence", [](ExportJob& job) { job.overlay.isLicensed = false; }},
        {"chapters", [](ExportJob& job) { job.settings.withChapters = false; }},
        {"the corner of no watermark",
         [](ExportJob& job) { job.settings.watermarkCorner = WatermarkCorner::topLeft; }},
    };
    for (const auto& [name, edit] : edits) {
        ExportJob job = base;
        edit(job);
        const auto after = drawn(job);
        const auto keysAfter = keys(job);
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_EQ(keysAfter[i] == keysBefore[i], after[i] == before[i]) << name << ", second " << i;
    }
    for (const auto& edit : std::vector<std::function<void(ExportJob&)>>{
             [](ExportJob& job) { job.settings.quality = media::EncodingQuality::smaller; },
             [](ExportJob& job) { job.settings.encoderPreset = QStringLiteral("fast"); },
             [](ExportJob& job) { job.settings.fill = 0.5; },
             [](ExportJob& job) { job.settings.preset = ExportPreset::twitter1080p; }}) {
        ExportJob job = base;
        edit(job);
        EXPECT_NE(keys(job).front(), keysBefore.front());
    }
}

TEST_F(ReusingExport, GoesOnWhereACancelledOneWas) {
    ExportJob job = this->job(makeClip(keyEverySecond));
    ExportProgress reached;
    const ExportControl control{[&] { return reached.fraction > 0.6; },
                                [&](const ExportProgress& progress) { reached = progress; }};
    EXPECT_THROW(exportReusing(job, cache(), control, everySecond), ExportCancelled);
    EXPECT_FALSE(QFile::exists(job.outputPath));
    EXPECT_EQ(unfinished(), QStringList());
    double kept = 0; // seconds
    for (const QString& key : segmentKeys(*SegmentPlan::onGrid(job, media::infoOf(job.recording()), 1, 1,
                                                               QStringLiteral(POINTLOOM_VERSION))))
        kept += cache().contains(key) ? 1 : 0;
    EXPECT_GE(kept, 1);
    EXPECT_EQ(encodedSeconds(job, cache()), 6 - kept);
    expectLikeSingleRun(job.outputPath, job);
}

TEST_F(ReusingExport, DamagedAndForeignPartsAreEncodedAnew) {
    const ExportJob job = this->job(makeClip(keyEverySecond));
    const auto keys = segmentKeys(
        *SegmentPlan::onGrid(job, media::infoOf(job.recording()), 1, 1, QStringLiteral(POINTLOOM_VERSION)));
    ASSERT_EQ(keys.size(), 6U);
    EXPECT_EQ(encodedSeconds(job, cache()), 6);
    const auto path = [&](std::size_t i) { return partPath(keys[i] + QStringLiteral(".part")); };
    ASSERT_TRUE(QFile::exists(path(5)));

    QFile flipped(path(0));
    ASSERT_TRUE(flipped.open(QIODevice::ReadWrite));
    flipped.seek(flipped.size() / 2);
    const QByteArray byte = flipped.peek(1);
    flipped.write(QByteArray(1, static_cast<char>(byte[0] ^ 4)));
    flipped.close();
    QFile::resize(path(1), QFileInfo(path(1)).size() - 100);
    QFile::remove(path(2));
    ASSERT_TRUE(QFile::copy(path(3), path(2))) << "another's name";
    EXPECT_EQ(encodedSeconds(job, cache()), 3);
    expectLikeSingleRun(job.outputPath, job);
    EXPECT_EQ(encodedSeconds(job, cache()), 0);

    ReuseChoices fresh = everySecond;
    fresh.isFresh = true;
    EXPECT_EQ(encodedSeconds(job, cache(), fresh), 6);
    EXPECT_EQ(parts().size(), 7);
}

TEST_F(ReusingExport, AVideoCutShortTellsItsDamageOnceAndAgain) {
    const QString clip = makeClip("-c:v libx264 -g 25 -pix_fmt yuv420p -movflags +faststart");
    ASSERT_TRUE(QFile::resize(clip, QFileInfo(clip).size() * 2 / 3));
    ExportJob job = markedJob(clip, folder.path(QStringLiteral("out.mp4")));
    const ExportReport first = exportReusing(job, cache(), {}, everySecond);
    const ExportReport second = exportReusing(job, cache(), {}, everySecond);
    EXPECT_GT(parts().size(), 2);
    job.outputPath = folder.path(QStringLiteral("single.mp4"));
    const ExportReport single = ExportManager::exportVideo(job);
    EXPECT_EQ(pictureTimes(first.outputPath, "pts"), pictureTimes(job.outputPath, "pts"));
    EXPECT_GT(single.damage.secondsMissing, 1);
    EXPECT_NEAR(first.damage.secondsMissing, single.damage.secondsMissing, 0.05);
    EXPECT_EQ(second.damage.secondsMissing, first.damage.secondsMissing);
}

TEST_F(ReusingExport, WhatIsShortOrCannotBeCutOrKeptIsExportedInOnePiece) {
    const QString oneGroup = makeClip("-c:v libx264 -g 1000 -sc_threshold 0 -pix_fmt yuv420p");
    ExportJob job = this->job(oneGroup);
    exportReusing(job, cache(), {}, everySecond);
    EXPECT_EQ(parts(), QStringList());
    expectLikeSingleRun(job.outputPath, job);

    job.videoPath = makeClip(keyEverySecond);
    exportReusing(job, cache(), {}, {.spacing = 2});
    EXPECT_EQ(parts(), QStringList());
    expectLikeSingleRun(job.outputPath, job);

    const SegmentCache nowhere(folder.write(QStringLiteral("file"), "in the way") + QStringLiteral("/x"));
    QFile::remove(job.outputPath);
    exportReusing(job, nowhere, {}, everySecond);
    expectLikeSingleRun(job.outputPath, job);

    job.settings.encoderPreset = QStringLiteral("warp");
    EXPECT_TRUE(errorOf([&] {
                    exportReusing(job, cache(), {}, everySecond);
                }).contains(QStringLiteral("could not be opened")));
    job.videoPath = folder.path(QStringLiteral("none.mp4"));
    EXPECT_EQ(errorOf([&] { exportReusing(job, cache()); }),
              QStringLiteral("Export failed: Reader failed: the file does not exist"));
}

TEST_F(ReusingExport, AFullDiskKeepsNothingAndIsInNobodysWay) {
    const ExportJob job = this->job(makeClip(keyEverySecond));
    exportReusing(job, cache(), {}, everySecond);
    EXPECT_EQ(parts().size(), 7);
    exportReusing(job, cache(SegmentCache::usualLimit, std::numeric_limits<qint64>::max() / 2), {},
                  everySecond);
    EXPECT_EQ(parts(), QStringList());
    expectLikeSingleRun(job.outputPath, job);
}

TEST_F(ReusingExport, TwoAtOnceDoNotDisturbEachOther) {
    const ExportJob first = this->job(makeClip(keyEverySecond));
    ExportJob second = first;
    second.outputPath = folder.path(QStringLiteral("second.mp4"));
    second.overlay.markers.pop_back();
    const auto run = [&](const ExportJob& job) {
        return std::async(std::launch::async, [this, &job] {
            // So small that each removes the other's parts.
            exportReusing(job, cache(200'000), {}, everySecond);
        });
    };
    {
        const auto one = run(first);
        const auto other = run(second);
    }
    expectLikeSingleRun(first.outputPath, first);
    expectLikeSingleRun(second.outputPath, second);
}

namespace {

class Cache : public ReusingExport {
protected:
    QString file(const QString& name) const { return folder.write(name, QByteArray(1000, 'x')); }

    void setAge(const QString& key, int hours) const {
        QFile part(partPath(key + QStringLiteral(".part")));
        ASSERT_TRUE(part.open(QIODevice::ReadWrite));
        part.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * hours),
                         QFileDevice::FileModificationTime);
    }
};

}

TEST_F(Cache, ForgetsWhatWasUsedLongestAgoBeyondItsLimit) {
    const QString keys[] = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    for (const QString& key : keys)
        cache().keep(key, file(key), {1, 2, 0.25});
    for (int i = 0; i < 3; ++i)
        setAge(keys[i], 9 - i);
    const auto damage = cache().take(keys[0], folder.path(QStringLiteral("taken")));
    ASSERT_TRUE(damage.has_value());
    EXPECT_EQ(damage->lostFrames, 1);
    EXPECT_EQ(damage->faultyFrames, 2);
    EXPECT_EQ(damage->secondsMissing, 0.25);
    EXPECT_TRUE(test::readFile(folder.path(QStringLiteral("taken"))).startsWith(QByteArray(1000, 'x')));

    const SegmentCache small = cache(2500);
    EXPECT_EQ(parts(), (QStringList{QStringLiteral("a.part"), QStringLiteral("c.part")}));
    EXPECT_GE(small.bytes(), 2000);
    small.keep(QStringLiteral("d"), file(QStringLiteral("d")), {});
    EXPECT_EQ(parts(), (QStringList{QStringLiteral("a.part"), QStringLiteral("d.part")})) << "a was used now";
    small.keep(QStringLiteral("e"), file(QStringLiteral("e")), {});
    EXPECT_EQ(parts(), (QStringList{QStringLiteral("a.part"), QStringLiteral("d.part")}))
        << "one export does not drive out its own parts";
}

TEST_F(Cache, WhatIsInUseOutlivesItsRemoval) {
    cache().keep(QStringLiteral("a"), file(QStringLiteral("a")), {});
    const QString used = folder.path(QStringLiteral("used"));
    ASSERT_TRUE(cache().take(QStringLiteral("a"), used).has_value());
    cache().clear();
    EXPECT_EQ(parts(), QStringList());
    EXPECT_EQ(cache().bytes(), 0);
    EXPECT_TRUE(test::readFile(used).startsWith(QByteArray(1000, 'x')));
    EXPECT_FALSE(cache().take(QStringLiteral("a"), folder.path(QStringLiteral("again"))).has_value());
}

}
