// Whole exports: small clips in, the written files decoded again by ffmpeg's own tools.
#include "export/ExportManager.h"
#include "crash/CrashReporter.h"
#include "DecodedFrame.h"
#include "ExportJobs.h"

#include <atomic>
#include <cmath>
#include <csignal>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>
#include <sys/resource.h>

namespace pointloom {

namespace {

using test::ClipFolder;
using test::frameAt;
using test::frameTimes;
using test::jobFor;

constexpr auto greyClip = "-f lavfi -i color=0x606060:s=640x360:r=25:d=4 -f lavfi -i sine=f=440:d=4 "
                          "-c:v libx264 -pix_fmt yuv420p -c:a aac -shortest";

SportScoreState score(std::int64_t games, std::int64_t server) {
    return ScoreState{{{games, 0, {}}}, {}, server};
}

void run(const ExportJob& job) {
    ExportManager::exportVideo(job);
}

QString errorOf(const ExportJob& job) {
    try {
        run(job);
    } catch (const ExportError& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

nlohmann::json stream(const QString& path, const char* type) {
    const nlohmann::json probed = test::probe(path);
    for (const auto& candidate : probed["streams"]) {
        if (candidate["codec_type"] == type)
            return candidate;
    }
    return {};
}

double number(const nlohmann::json& text) {
    return std::stod(text.get<std::string>());
}

double distance(QRgb a, QRgb b) {
    return std::max(
        {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

// Mean difference of the first set's column between two frames of a 640x360 clip.
double boardDifference(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 142; y < 218; ++y) {
        for (int x = 343; x < 371; ++x)
            sum += distance(a.pixel(x, y), b.pixel(x, y));
    }
    return sum / (76 * 28);
}

}

TEST(Export, KeepsFramesSoundAndTimesAndDrawsTheScoreOfEachFrame) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=0x606060:s=640x360:r=30:d=4 -f lavfi -i sine=f=440:d=4 "
                    "-c:v libx264 -pix_fmt yuv420p -c:a aac -shortest");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    // Frame 111 is shown at 3.7 s, in a double a hair before; a marker exactly on a frame applies to it.
    job.overlay.markers = {{QUuid::createUuid(), 3.7, score(4, 2), {}}};
    std::vector<double> fractions;
    ExportManager::exportVideo(
        job, {{}, [&](const ExportProgress& progress) { fractions.push_back(progress.fraction); }});

    EXPECT_EQ(frameTimes(job.outputPath), frameTimes(clip));
    EXPECT_NEAR(number(stream(job.outputPath, "audio")["duration"]), 4, 0.05);
    const QImage before = frameAt(job.outputPath, 3.65);
    const QImage after = frameAt(job.outputPath, 3.7);
    const double change = boardDifference(before, after);
    EXPECT_GT(change, 2);
    EXPECT_LT(boardDifference(frameAt(job.outputPath, 1.0), before), change / 4);
    EXPECT_LT(boardDifference(frameAt(job.outputPath, 3.9), after), change / 4);
    EXPECT_LE(distance(before.pixel(20, 20), qRgb(0x60, 0x60, 0x60)), 3);

    ASSERT_GE(fractions.size(), 50U);
    EXPECT_LE(fractions.size(), 102U);
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_EQ(fractions.back(), 1.0);
    EXPECT_LE(*(fractions.end() - 2), 0.95);
}

TEST(Export, WritesWhatPlaysEverywhere) {
    const ClipFolder folder;
    const QString clip = folder.make(QStringLiteral("clip.mp4"), greyClip);
    struct Expected {
        ExportFormat format;
        const char* tag;
        const char* pixels;
    };
    for (const auto& [format, tag, pixels] :
         {Expected{ExportFormat::h264, "avc1", "yuv420p"}, Expected{ExportFormat::hevc, "hvc1", "yuv420p"},
          Expected{ExportFormat::prores, "apcn", "yuv422p10le"}}) {
        ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.") + fileExtension(format)));
        job.settings.format = format;
        run(job);
        const auto video = stream(job.outputPath, "video");
        EXPECT_EQ(video["codec_tag_string"], tag);
        EXPECT_EQ(video["pix_fmt"], pixels);
        EXPECT_EQ(number(video["start_time"]), 0) << tag;
        const auto audio = stream(job.outputPath, "audio");
        EXPECT_EQ(audio["codec_name"], "aac");
        EXPECT_EQ(audio["sample_rate"], "44100");
        EXPECT_EQ(audio["channels"], 2);
        const QByteArray bytes = test::readFile(job.outputPath);
        EXPECT_LT(bytes.indexOf("moov"), bytes.indexOf("mdat")) << tag;
    }
}

TEST(Export, TrimsPictureAndSoundToTheSamePoint) {
    const ClipFolder folder;
    // Silence, then a beep and a white picture from 2.0 s on.
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=black:s=320x180:r=25:d=4,drawbox=c=white:t=fill:enable='gte(t,2)' "
                    "-f lavfi -i aevalsrc='if(gte(t,2),sin(2*PI*1000*t),0)':d=4:s=48000 -c:v libx264 -g 100 "
                    "-pix_fmt yuv420p -c:a aac");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    job.trimStart = 1.5;
    job.trimEnd = 3.0;
    job.overlay.scoreboardPosition = {0.02, 0.02};
    run(job);
    const auto times = frameTimes(job.outputPath);
    ASSERT_EQ(times.size(), 38U); // the frame on screen at 1.5 s began at 1.48 s
    EXPECT_EQ(times.front(), 0);
    EXPECT_NEAR(times[1], 0.02, 1e-6);
    EXPECT_LT(qGray(frameAt(job.outputPath, 0.46).pixel(160, 150)), 20);
    EXPECT_GT(qGray(frameAt(job.outputPath, 0.5).pixel(160, 150)), 230);
    EXPECT_NEAR(number(test::probe(job.outputPath)["format"]["duration"]), 1.5, 0.03);

    const QByteArray sound = test::decode(job.outputPath, {QStringLiteral("-ac"), QStringLiteral("1"),
                                                           QStringLiteral("-f"), QStringLiteral("f32le")});
    const auto* samples = reinterpret_cast<const float*>(sound.constData());
    const auto* end = samples + sound.size() / 4;
    const auto onset =
        std::find_if(samples, end, [](float sample) { return std::abs(sample) > 0.3F; }) - samples;
    EXPECT_NEAR(static_cast<double>(onset) / 44100, 0.5, 0.01);
}

TEST(Export, ARotatedClipComesOutUprightWithAnUprightScoreboard) {
    const ClipFolder folder;
    // Stored on its side: what is stored left (red) is shown on top after a clockwise quarter turn.
    const QString stored = folder.make(
        QStringLiteral("stored.mp4"), "-f lavfi -i color=green:s=640x360:r=25:d=1,drawbox=c=red:w=100:t=fill "
                                      "-c:v libx264 -pix_fmt yuv420p");
    const QString clip = test::makeTurned(test::clockwise, folder, stored, QStringLiteral("clip.mp4"));
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    const QImage source = frameAt(clip, 0);
    ASSERT_EQ(source.size(), QSize(360, 640));
    run(job);
    EXPECT_EQ(stream(job.outputPath, "video")["width"], 640); // stored as it was
    const QImage original = frameAt(job.outputPath, 0);
    ASSERT_EQ(original.size(), QSize(360, 640));
    EXPECT_LE(distance(original.pixel(180, 30), source.pixel(180, 30)), 4);
    EXPECT_LE(distance(original.pixel(180, 610), source.pixel(180, 610)), 4);

    job.settings.preset = ExportPreset::instagram916;
    job.outputPath = folder.path(QStringLiteral("fitted.mp4"));
    run(job);
    const QImage fitted = frameAt(job.outputPath, 0);
    ASSERT_EQ(fitted.size(), QSize(1080, 1920));
    // The same scoreboard at the same relative place, three times as large.
    double sum = 0;
    for (int y = 280; y < 360; ++y) {
        for (int x = 80; x < 280; ++x)
            sum += distance(original.pixel(x, y), fitted.pixel(x * 3 + 1, y * 3 + 1));
    }
    EXPECT_LT(sum / (80 * 200), 14);
    EXPECT_GT(distance(original.pixel(90, 320), source.pixel(90, 320)), 40);
}

TEST(Export, FitsIntoAPresetWithBlackBarsAndAScaledScoreboard) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=0x9050b0:s=640x360:r=25:d=0.4 -c:v libx264 -pix_fmt yuv420p");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    job.settings.preset = ExportPreset::instagram916;
    job.overlay.scoreboardPosition = {0.5, 0.1};
    run(job);
    const QImage frame = frameAt(job.outputPath, 0);
    ASSERT_EQ(frame.size(), QSize(1080, 1920));
    EXPECT_LE(distance(frame.pixel(540, 600), qRgb(0, 0, 0)), 3);
    EXPECT_LE(distance(frame.pixel(540, 1300), qRgb(0, 0, 0)), 3);
    EXPECT_LE(distance(frame.pixel(540, 960), qRgb(0x90, 0x50, 0xb0)), 4);
    EXPECT_GT(distance(frame.pixel(420, 180), qRgb(0, 0, 0)), 20); // the scoreboard over the upper bar
    EXPECT_TRUE(stream(job.outputPath, "audio").is_null());
}

TEST(Export, FillsAPresetWithTheRequestedPartAndKeepsTheScoreboardWhole) {
    const ClipFolder folder;
    // Odd sides, pixels that are not square, a colour for each third.
    const QString wide = folder.make(
        QStringLiteral("wide.mp4"),
        "-f lavfi -i color=0x9050b0:s=641x361:r=25:d=0.08,drawbox=x=214:w=214:h=361:c=0x30a060:t=fill,"
        "drawbox=x=428:w=213:h=361:c=0x4060c0:t=fill,setsar=4/3 -c:v libx264 -pix_fmt yuv444p");
    const QString turned = test::makeTurned(test::clockwise, folder, wide, QStringLiteral("turned.mp4"));
    const std::pair<double, QRgb> parts[] = {
        {0, qRgb(0x90, 0x50, 0xb0)}, {0.5, qRgb(0x30, 0xa0, 0x60)}, {1, qRgb(0x40, 0x60, 0xc0)}};
    for (const auto& [clip, preset] :
         {std::pair(wide, ExportPreset::instagram916), std::pair(turned, ExportPreset::twitter1080p)}) {
        ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
        job.settings.preset = preset;
        job.overlay.scoreboardPosition = {0.02, 0.02};
        job.overlay.scoreboardUserScale = 5;
        for (const auto& [position, color] : parts) {
            SCOPED_TRACE(position);
            job.settings.fill = position;
            const QImage frame = ExportManager::renderStill(job, 0);
            ASSERT_EQ(frame.size(), *targetSize(preset));
            for (const QPoint corner : {frame.rect().bottomLeft() + QPoint(5, -5),
                                        frame.rect().bottomRight() - QPoint(5, 5), QPoint(5, 5)})
                EXPECT_LE(distance(frame.pixel(corner), color), 8) << corner.x() << ' ' << corner.y();
            EXPECT_GT(distance(frame.pixel(60, 60), color), 30) << "the scoreboard's upper left part";
        }
        run(job);
        const QImage exported = frameAt(job.outputPath, 0);
        EXPECT_LE(distance(exported.pixel(20, exported.height() - 20), parts[2].second), 8);
    }
}

TEST(Export, ScoreboardStandsWhereItsPositionSaysInItsOwnColours) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=0x9050b0:s=640x360:r=25:d=0.4 -c:v libx264 -pix_fmt yuv420p");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    run(job);
    const QImage frame = frameAt(job.outputPath, 0);
    // One set: the canvas is 214 by 97, so the scoreboard begins at (320 - 107 + 10, 180 - 48.5 + 10).
    const QPointF board(223, 141.5);
    const auto at = [&](double x, double y) {
        return frame.pixel(static_cast<int>(board.x() + x), static_cast<int>(board.y() + y));
    };
    EXPECT_LE(distance(at(34, 6), qRgb(30, 58, 95)), 6);    // name column
    EXPECT_LE(distance(at(122, 6), qRgb(22, 48, 89)), 6);   // first set
    EXPECT_LE(distance(at(152, 72), qRgb(200, 75, 17)), 6); // game cell
    EXPECT_LE(distance(at(215, 40), qRgb(0x90, 0x50, 0xb0)), 4);
}

TEST(Export, ATrimEndBehindTheVideoIsTheEndOfTheVideo) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"), "-f lavfi -i color=gray:s=64x64:r=25:d=1 -c:v libx264");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    for (const double end : {60.0, 1e18}) {
        job.trimEnd = end;
        ExportProgress last;
        ExportManager::exportVideo(job, {{}, [&](const ExportProgress& progress) { last = progress; }});
        EXPECT_EQ(last.frames, 25);
        EXPECT_EQ(last.expectedFrames, 25);
    }
}

TEST(Export, StillShowsTheExportedFrame) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i testsrc2=s=640x360:r=25:d=2 -c:v libx264 -crf 10 -pix_fmt yuv420p");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    job.overlay.markers = {{QUuid::createUuid(), 1.01, score(3, 2), {}}};
    job.overlay.isLicensed = false;
    run(job);
    // At 1.02 s the frame of 1.00 s is on screen, which comes before the marker.
    for (const double time : {0.0, 1.02, 1.05}) {
        const QImage still = ExportManager::renderStill(job, time);
        const QImage exported = frameAt(job.outputPath, std::floor(time * 25) / 25);
        ASSERT_EQ(still.size(), exported.size());
        double sum = 0;
        for (int y = 0; y < 360; ++y) {
            for (int x = 0; x < 640; ++x)
                sum += distance(still.pixel(x, y), exported.pixel(x, y));
        }
        // What is left is the encoder's loss.
        EXPECT_LT(sum / (640 * 360), 6) << time;
        EXPECT_LT(boardDifference(still, exported), 9) << time;
    }
}

TEST(Export, UnlicensedCopiesCarryAMarkAlongTheLowerEdgeOnly) {
    const ClipFolder folder;
    const QString clip =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=0x9050b0:s=640x360:r=25:d=0.1 -c:v libx264 -pix_fmt yuv420p");
    ExportJob job = jobFor(clip, {});
    const QImage licensed = ExportManager::renderStill(job, 0);
    job.overlay.isLicensed = false;
    const QImage marked = ExportManager::renderStill(job, 0);
    QRect touched;
    for (int y = 0; y < marked.height(); ++y) {
        for (int x = 0; x < marked.width(); ++x) {
            if (marked.pixel(x, y) != licensed.pixel(x, y))
                touched |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_GT(touched.width(), 60);
    EXPECT_GT(touched.top(), 320);
    EXPECT_NEAR(touched.center().x(), 320, 3);
}

TEST(Export, CancellingLeavesNoFileAndIsNoExportError) {
    const ClipFolder folder;
    const QString clip = folder.make(QStringLiteral("clip.mp4"), greyClip);
    const ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    int polls = 0;
    EXPECT_THROW(ExportManager::exportVideo(job, {[&] { return ++polls > 20; }}), ExportCancelled);
    EXPECT_EQ(polls, 21);
    EXPECT_FALSE(QFile::exists(job.outputPath));
}

TEST(Export, CancellingIsAskedForWhileOnlySoundIsLeft) {
    const ClipFolder folder;
    const QString clip = folder.make(QStringLiteral("clip.mp4"),
                                     "-f lavfi -i color=gray:s=64x64:r=25:d=1 -f lavfi -i sine=f=440:d=60 "
                                     "-c:v libx264 -c:a aac");
    const ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    int polls = 0;
    // 25 frames and the first 1.5 s of sound are long over by then, the whole sound is not.
    EXPECT_THROW(ExportManager::exportVideo(job, {[&] { return ++polls > 1000; }}), ExportCancelled);
    EXPECT_FALSE(QFile::exists(job.outputPath));
}

TEST(Export, AClockAsCoarseAsTheRateKeepsPictureAndSoundTogether) {
    const ClipFolder folder;
    // White and a beep from 1.2 s on.
    const QString clip = folder.make(
        QStringLiteral("clip.mp4"),
        "-f lavfi -i color=black:s=320x180:r=25:d=2,drawbox=c=white:t=fill:enable='gte(t,1.19)' -f lavfi -i "
        "aevalsrc='if(gte(t,1.2),sin(2*PI*1000*t),0)':d=2:s=48000 -c:v libx264 -bf 0 -pix_fmt yuv420p "
        "-video_track_timescale 25 -c:a aac");
    ASSERT_EQ(stream(clip, "video")["time_base"], "1/25");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mp4")));
    job.trimStart = 1.02; // half of a frame
    job.overlay.scoreboardPosition = {0.02, 0.02};
    run(job);
    const auto times = frameTimes(job.outputPath);
    ASSERT_EQ(times.size(), 25U);
    for (std::size_t i = 1; i < times.size(); ++i)
        EXPECT_NEAR(times[i], static_cast<double>(i) * 0.04 - 0.02, 1e-6);
    EXPECT_LT(qGray(frameAt(job.outputPath, 0.13).pixel(160, 150)), 20);
    EXPECT_GT(qGray(frameAt(job.outputPath, 0.175).pixel(160, 150)), 230);

    job.trimEnd = 1.03; // less than a tick of the source
    run(job);
    EXPECT_EQ(frameTimes(job.outputPath).size(), 1U);
}

TEST(Export, AClipThatIsCutShortGivesWhatIsThereAndSaysWhatIsMissing) {
    const ClipFolder folder;
    const QByteArray whole = test::readFile(
        folder.make(QStringLiteral("clip.mp4"),
                    QString::fromUtf8(greyClip).split(u' ') +
                        QStringList{QStringLiteral("-movflags"), QStringLiteral("+faststart")}));
    const QString cut = folder.write(QStringLiteral("cut.mp4"), whole.left(whole.size() * 3 / 4));
    ExportJob job = jobFor(cut, folder.path(QStringLiteral("out.mp4")));
    const double missing = ExportManager::exportVideo(job).damage.secondsMissing;
    ASSERT_GT(missing, 0.3);
    EXPECT_NEAR(frameTimes(job.outputPath).back() + missing, 3.96, 0.16);

    job.trimEnd = 1;
    EXPECT_EQ(ExportManager::exportVideo(job).damage, media::Damage{}) << "nothing of this range is missing";
    EXPECT_EQ(frameTimes(job.outputPath).size(), 25U);

    job.trimStart = 3.9;
    job.trimEnd.reset();
    EXPECT_EQ(errorOf(job).toStdString(),
              "Export failed: the video is cut short before the trim range starts");
}

TEST(Export, TroubleIsToldInWordsAndLosesNothing) {
    const ClipFolder folder;
    const QString clip = folder.make(QStringLiteral("clip.mp4"), greyClip);
    const QString sound = folder.make(QStringLiteral("sound.mp4"), "-f lavfi -i sine=d=1 -c:a aac");
    const QString output = folder.write(QStringLiteral("out.mp4"), "an earlier export");

    folder.write(QStringLiteral("note.srt"), "1\n00:00:00,000 --> 00:00:01,000\nServe\n\n");
    const QString words = folder.make(QStringLiteral("words.mp4"),
                                      {QStringLiteral("-i"), folder.path(QStringLiteral("note.srt")),
                                       QStringLiteral("-c:s"), QStringLiteral("mov_text")});
    for (const QString& video : {sound, words})
        EXPECT_EQ(errorOf(jobFor(video, output)), QStringLiteral("The video file has no video track."));
    const QString foreign =
        folder.write(QStringLiteral("foreign.mp4"), test::readFile(clip).replace("avc1", "xyz9"));
    EXPECT_EQ(errorOf(jobFor(foreign, output)),
              QStringLiteral("Export failed: Cannot add video output. (there is no decoder for xyz9)"));
    EXPECT_TRUE(errorOf(jobFor(folder.path(QStringLiteral("none.mp4")), output))
                    .startsWith(QStringLiteral("Export failed: Reader failed: ")));
    EXPECT_EQ(test::readFile(output), "an earlier export");

    const QByteArray before = test::readFile(clip);
    EXPECT_TRUE(errorOf(jobFor(clip, clip)).contains(QStringLiteral("replace the source video")));
    EXPECT_EQ(test::readFile(clip), before);

    EXPECT_TRUE(errorOf(jobFor(clip, folder.path(QStringLiteral("no/such/folder.mp4"))))
                    .startsWith(QStringLiteral("Export failed: Writer failed: ")));
    ExportJob refused = jobFor(clip, folder.path(QStringLiteral("refused.mp4")));
    refused.settings.encoderPreset = QStringLiteral("no such preset");
    EXPECT_TRUE(errorOf(refused).startsWith(
        QStringLiteral("Export failed: Cannot add video input. (the video encoder could not be opened: ")));
    EXPECT_FALSE(QFile::exists(refused.outputPath));
    ExportJob backward = jobFor(clip, output);
    backward.trimStart = 3;
    backward.trimEnd = 2;
    EXPECT_TRUE(errorOf(backward).contains(QStringLiteral("before it starts")));
    backward.trimStart = 9;
    backward.trimEnd.reset();
    EXPECT_TRUE(errorOf(backward).contains(QStringLiteral("after the end of the video")));
}

TEST(Export, AFullDiskAndAnUnreadableVideoEndItInWordsAndLeaveNoFile) {
    const ClipFolder folder;
    const QString clip = folder.make(
        QStringLiteral("clip.mp4"), "-f lavfi -i testsrc2=s=320x180:r=60:d=10 -c:v libx264 -pix_fmt yuv420p");
    ExportJob job = jobFor(clip, folder.path(QStringLiteral("out.mov")));
    const auto errorWithRoomFor = [&](rlim_t bytes) {
        const auto usualEnd = std::signal(SIGXFSZ, SIG_IGN);
        rlimit usual{};
        getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit limited{bytes, usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
        const QString error = errorOf(job);
        setrlimit(RLIMIT_FSIZE, &usual);
        std::signal(SIGXFSZ, usualEnd);
        EXPECT_FALSE(QFile::exists(job.outputPath));
        return error.toStdString();
    };
    job.settings.format = ExportFormat::prores;
    EXPECT_EQ(errorWithRoomFor(200'000), // of 20 MB
              "Export failed: Append failed: the file could not be written: File too large");
    job.settings.format = ExportFormat::h264;
    job.trimEnd = 0.2; // all of it stays inside of the encoder until the end
    EXPECT_EQ(errorWithRoomFor(1000),
              "Export failed: Writer error: the file could not be written: File too large");

    // Pictures that cannot be decoded, more of them than are tried when it is opened.
    QByteArray bytes = test::readFile(clip);
    const qsizetype media = bytes.indexOf("mdat") + 4;
    bytes.replace(media, bytes.indexOf("moov") - 4 - media,
                  QByteArray(bytes.indexOf("moov") - 4 - media, '\0'));
    job = jobFor(folder.write(QStringLiteral("noise.mp4"), bytes), job.outputPath);
    EXPECT_EQ(errorOf(job).toStdString(), "Export failed: Reader error: no picture could be decoded");
    EXPECT_FALSE(QFile::exists(job.outputPath));
}

TEST(Export, AFailureIsHandedToTheCrashReporterAndCancellingIsNot) {
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::removePostedEvents(QCoreApplication::instance()); // failures of other tests
    static std::atomic<int> asked = 0; // by the reporter's thread, once for each record
    static std::atomic<bool> agreed = false;
    CrashReporter& reporter = CrashReporter::shared();
    reporter.setConsentQuery([] { return ++asked > 0 && agreed; });
    reporter.setup(InfoDictionary::fromJson(R"({"SentryDSN": "http://key@127.0.0.1/42"})"));
    const auto waitForQuestion = [](int number) {
        for (const QDeadlineTimer deadline(20'000); asked < number && !deadline.hasExpired();) {
            QCoreApplication::processEvents();
            QThread::msleep(2);
        }
        return asked.load();
    };
    ASSERT_EQ(waitForQuestion(1), 1) << "a record of an earlier run";
    agreed = true;

    testing::internal::CaptureStderr();
    const ClipFolder folder;
    const QString clip = folder.make(QStringLiteral("clip.mp4"), greyClip);
    EXPECT_THROW(ExportManager::exportVideo(jobFor(clip, folder.path(QStringLiteral("out.mp4"))),
                                            {[] { return true; }}),
                 ExportCancelled);
    EXPECT_FALSE(errorOf(jobFor(folder.path(QStringLiteral("none.mp4")), clip)).isEmpty());
    EXPECT_EQ(waitForQuestion(2), 2);
    reporter.stop(); // after the line is written
    EXPECT_EQ(asked, 2) << "one of the two";
    EXPECT_TRUE(QString::fromUtf8(testing::internal::GetCapturedStderr())
                    .contains(QStringLiteral("Export failed: Reader failed: the file does not exist")));
}

TEST(Export, RealClipsComeOutInEveryFormatAndPreset) {
    const QStringList clips = test::realClips();
    if (clips.isEmpty())
        GTEST_SKIP() << "no real clips here";
    const ClipFolder folder;
    for (const char* name :
         {"sample_edit_list.mp4", "edit_list_positive_shift.mp4", "bt601.mov",
          "iibbibb_editlist_videoonly.mp4", "sample_fragmented_seekable.mp4", "h265_bframes.mp4"}) {
        const auto clip = test::realClip(QString::fromUtf8(name));
        if (!clip)
            continue;
        for (const auto format : allCases<ExportFormat>()) {
            ExportJob job = jobFor(*clip, folder.path(QStringLiteral("out.") + fileExtension(format)));
            job.settings.format = format;
            job.settings.preset =
                format == ExportFormat::hevc ? ExportPreset::twitter1080p : ExportPreset::original;
            job.trimEnd = 1.5;
            run(job);
            const auto video = stream(job.outputPath, "video");
            ASSERT_FALSE(video.is_null()) << name;
            EXPECT_FALSE(frameTimes(job.outputPath).empty()) << name;
            EXPECT_LE(number(test::probe(job.outputPath)["format"]["duration"]), 1.6) << name;
        }
    }
}

}
