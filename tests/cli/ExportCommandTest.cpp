#include "persistence/ProjectFile.h"
#include "Program.h"
#include "support/TestClips.h"

#include <csignal>
#include <memory>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace pointloom {
namespace {

/// A project whose video is a generated clip of 320 x 180 pixels.
class ExportCommandTest : public ProgramTest {
protected:
    void makeProject(int seconds) const {
        const QString source = QStringLiteral("testsrc2=size=320x180:rate=25:duration=%1").arg(seconds);
        const QString clip = clips.make(QStringLiteral("v.mp4"),
                                        {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                         source, QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p"),
                                         QStringLiteral("-preset"), QStringLiteral("ultrafast")});
        ASSERT_TRUE(QFile::rename(clip, path(QStringLiteral("v.mp4"))));
        ASSERT_EQ(run((std::string(newTennis) + " --video v.mp4").c_str()).status, 0);
    }

    double durationOf(const QString& name) const {
        return std::stod(test::probe(path(name)).at("format").at("duration").get<std::string>());
    }

    test::ClipFolder clips;
};

TEST_F(ExportCommandTest, ProgressIsOneObjectALineUpToTheFilesName) {
    makeProject(2);
    const Outcome outcome = run("export m.plp -o out.mp4 --progress json --trim-start 0.4 --trim-end 1.4");
    ASSERT_EQ(outcome.status, 0) << outcome.errText();
    EXPECT_EQ(outcome.errText(), "");
    const QList<QByteArray> lines = outcome.out.trimmed().split('\n');
    ASSERT_GT(lines.size(), 2);
    double last = 0;
    for (const QByteArray& line : lines.first(lines.size() - 1)) {
        const double progress = json::Value::parse(line.toStdString()).at("progress");
        EXPECT_GE(progress, last);
        EXPECT_LE(progress, 1);
        last = progress;
    }
    EXPECT_EQ(json::Value::parse(lines.last().toStdString()),
              (json::Value{{"done", true}, {"output", "out.mp4"}}));
    EXPECT_NEAR(durationOf(QStringLiteral("out.mp4")), 1.0, 0.05);
}

TEST_F(ExportCommandTest, ExportsOfOneSecondGetAFileEach) {
    makeProject(1);
    QProcessEnvironment home = QProcessEnvironment::systemEnvironment();
    home.insert(QStringLiteral("HOME"), folder.path());
    home.remove(QStringLiteral("XDG_CONFIG_HOME"));
    std::vector<std::unique_ptr<QProcess>> exports;
    for (int i = 0; i < 3; ++i) {
        exports.push_back(std::make_unique<QProcess>());
        exports.back()->setWorkingDirectory(folder.path());
        exports.back()->setProcessEnvironment(home);
        exports.back()->start(program(), {QStringLiteral("export"), QStringLiteral("m.plp")});
    }
    QStringList told;
    for (const auto& process : exports) {
        ASSERT_TRUE(process->waitForFinished(patience));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().toStdString();
        told += QFileInfo(QString::fromUtf8(process->readAllStandardOutput()).trimmed()).fileName();
    }
    told.sort();
    EXPECT_EQ(told.removeDuplicates(), 0);
    EXPECT_EQ(QDir(path(QStringLiteral("Downloads"))).entryList(QDir::Files | QDir::Hidden, QDir::Name),
              told);
}

TEST_F(ExportCommandTest, NoCommandReplacesAnInputByWhateverName) {
    makeProject(1);
    const QByteArray video = test::readFile(path(QStringLiteral("v.mp4")));
    const QByteArray name = path(QStringLiteral("v.mp4")).toUtf8();
    for (const char* link : {"x.png", "x.mp4", "x.mov"})
        ASSERT_EQ(::symlink("v.mp4", path(QString::fromUtf8(link)).toUtf8().constData()), 0);
    for (const char* link : {"y.png", "y.mp4"})
        ASSERT_EQ(::link(name.constData(), path(QString::fromUtf8(link)).toUtf8().constData()), 0);
    for (const char* command :
         {"scoreboard m.plp -o x.png", "scoreboard m.plp -o y.png", "still m.plp --at 0 -o x.png",
          "still m.plp --at 0 -o y.png", "export m.plp -o x.mp4", "export m.plp -o y.mp4",
          "export m.plp -o x.mp4 --jobs 2", "export m.plp --overlay-only -o x.mov"}) {
        EXPECT_NE(faultOf(command).find("is the source video; choose another output"), std::string::npos)
            << command;
        EXPECT_EQ(test::readFile(path(QStringLiteral("v.mp4"))), video) << command;
    }
    EXPECT_EQ(run({QStringLiteral("export"), QStringLiteral("m.plp"), QStringLiteral("-o"), QString()}).err,
              "pointloom-cli: the output has no name\n");
}

TEST_F(ExportCommandTest, WithoutATerminalOnlyTheFilesNameIsPrinted) {
    makeProject(1);
    const Outcome outcome = run("export m.plp -o out.mov --format prores");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errText(), "");
    EXPECT_EQ(outcome.out, "out.mov\n");
}

TEST_F(ExportCommandTest, CtrlCStopsAndLeavesWhatWasThere) {
    makeProject(60);
    write(QStringLiteral("out.mp4"), "an earlier video");
    const std::pair<int, const char*> ways[] = {{SIGINT, "--preset twitter1080p"},
                                                {SIGTERM, "--overlay-only"},
                                                {SIGINT, "--preset twitter1080p --jobs 3"}};
    for (const auto& [signal, options] : ways) {
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start(program(),
                      QProcess::splitCommand(QStringLiteral("export m.plp -o out.mp4 --progress json ") +
                                             QLatin1String(options)));
        ASSERT_TRUE(process.waitForReadyRead(patience)) << "some progress";
        kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(patience));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 130);
        EXPECT_EQ(process.readAllStandardError(), "pointloom-cli: The export was cancelled.\n");
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  (QStringList{QStringLiteral("m.plp"), QStringLiteral("out.mp4"), QStringLiteral("v.mp4")}));
        EXPECT_EQ(test::readFile(path(QStringLiteral("out.mp4"))), "an earlier video");
    }
}

TEST_F(ExportCommandTest, CaptionsGoBesideTheVideo) {
    makeProject(1);
    ASSERT_EQ(run("export m.plp -o out.mp4 --encoder-preset ultrafast --captions vtt").status, 0);
    const QByteArray captions = test::readFile(path(QStringLiteral("out.vtt")));
    EXPECT_TRUE(captions.startsWith("WEBVTT\n\n00:00:00.000 --> 00:00:01.000\n")) << captions.toStdString();
    EXPECT_EQ(run("export m.plp -o out.mp4 --captions ttml").status, 2);

    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("b.vtt")));
    const auto result = run("export m.plp -o b.mp4 --encoder-preset ultrafast --captions vtt");
    EXPECT_EQ(result.status, 0) << "the video is there";
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("b.mp4"))));
    EXPECT_TRUE(result.err.contains("warning: the video is finished, but its captions are missing: "))
        << result.errText();
}

TEST_F(ExportCommandTest, SeveralJobsAddUpToOneVideo) {
    makeProject(21); // with a key picture every ten seconds
    ASSERT_EQ(run("export m.plp -o single.mp4 --encoder-preset ultrafast").status, 0);
    const Outcome outcome =
        run("export m.plp -o out.mp4 --encoder-preset ultrafast --jobs 4 --progress json");
    ASSERT_EQ(outcome.status, 0) << outcome.errText();
    EXPECT_EQ(outcome.errText(), "");
    double last = 0;
    for (const QByteArray& line : outcome.out.trimmed().split('\n')) {
        const double progress = json::Value::parse(line.toStdString()).value("progress", 1.0);
        EXPECT_GE(progress, last);
        last = progress;
    }
    for (const char* key : {"nb_frames", "duration_ts", "start_pts"})
        EXPECT_EQ(test::probe(path(QStringLiteral("out.mp4")))["streams"][0][key],
                  test::probe(path(QStringLiteral("single.mp4")))["streams"][0][key])
            << key;
    EXPECT_EQ(faultOf("export m.plp --overlay-only --jobs 2 -o x.mov", 2).find("--overlay-only: "), 0U);
}

TEST_F(ExportCommandTest, AKilledExportGoesOnWhereItWas) {
    makeProject(45); // with a key picture every ten seconds
    const QString cache = path(QStringLiteral("cache"));
    QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    own.insert(QStringLiteral("XDG_CACHE_HOME"), cache);
    const QDir kept(cache + QStringLiteral("/Pointloom/segments"));
    const QStringList pattern{QStringLiteral("*.part")};
    const auto start = [&](QProcess& process, const char* options) {
        process.setProcessEnvironment(own);
        process.setWorkingDirectory(folder.path());
        process.start(program(),
                      QProcess::splitCommand(QStringLiteral("export m.plp -o out.mp4 --progress json ") +
                                             QLatin1String(options)));
    };
    QProcess killed;
    start(killed, "--encoder-preset slow");
    while (kept.entryList(pattern, QDir::Files).size() < 2 && killed.waitForReadyRead(patience))
        killed.readAll();
    killed.kill();
    ASSERT_TRUE(killed.waitForFinished(patience));
    EXPECT_FALSE(exists(QStringLiteral("out.mp4")));
    const QStringList finished = kept.entryList(pattern, QDir::Files);
    ASSERT_GE(finished.size(), 2);

    // What was finished is not written again.
    std::vector<ino_t> before;
    const auto numberOf = [&](const QString& part) {
        struct stat status {};
        stat(QFile::encodeName(kept.filePath(part)).constData(), &status);
        return status.st_ino;
    };
    for (const QString& part : finished)
        before.push_back(numberOf(part));
    QProcess next;
    start(next, "--encoder-preset slow");
    ASSERT_TRUE(next.waitForFinished(patience));
    EXPECT_EQ(next.exitCode(), 0) << next.readAllStandardError().toStdString();
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ(numberOf(finished[static_cast<qsizetype>(i)]), before[i]);
    EXPECT_EQ(test::probe(path(QStringLiteral("out.mp4")))["streams"][0]["nb_frames"], "1125");
    EXPECT_EQ(kept.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot), QStringList())
        << "remains of the killed one";
}

TEST_F(ExportCommandTest, QualityMakesFilesSmallerOrLarger) {
    makeProject(2);
    const auto sizeOf = [&](const char* format, const char* quality) {
        const std::string name = std::string("out.") + (QByteArrayView(format) == "prores" ? "mov" : "mp4");
        const std::string options = std::string(" --format ") + format + " --quality " + quality;
        EXPECT_EQ(run(("export m.plp -o " + name + options).c_str()).status, 0);
        return QFileInfo(path(QString::fromStdString(name))).size();
    };
    for (const char* format : {"h264", "hevc", "prores"}) {
        const auto standard = static_cast<double>(sizeOf(format, "default"));
        EXPECT_LT(static_cast<double>(sizeOf(format, "smaller")), standard * 0.9) << format;
        EXPECT_GT(static_cast<double>(sizeOf(format, "better")), standard * 1.1) << format;
    }
    for (const char* format : {"h264", "hevc"})
        EXPECT_NE(sizeOf(format, "fast"), sizeOf(format, "default")) << format;
    EXPECT_EQ(test::probe(path(QStringLiteral("out.mov")))["streams"][0]["codec_tag_string"], "apch");
}

// A machine with such a graphics card says nothing.
TEST_F(ExportCommandTest, AnEncoderThatDoesNotWorkHereIsReplacedWithANote) {
    makeProject(1);
    for (const char* encoder : {"auto", "software", "vaapi", "nvenc", "qsv", "videotoolbox"}) {
        const Outcome outcome = run((std::string("export m.plp -o out.mp4 --encoder ") + encoder).c_str());
        EXPECT_EQ(outcome.status, 0) << outcome.errText();
        EXPECT_NEAR(durationOf(QStringLiteral("out.mp4")), 1, 0.05);
        const bool isSaid = outcome.err.startsWith("pointloom-cli: note: ") &&
                            outcome.err.endsWith("; the software encoder is used\n");
        EXPECT_TRUE(outcome.err.isEmpty() || isSaid) << outcome.errText();
        if (QByteArrayView(encoder) == "auto" || QByteArrayView(encoder) == "software") {
            EXPECT_EQ(outcome.errText(), "");
        }
    }
}

TEST_F(ExportCommandTest, TheSourceIsNeverOverwritten) {
    makeProject(1);
    const QByteArray video = test::readFile(path(QStringLiteral("v.mp4")));
    const QByteArray project = test::readFile(path(QStringLiteral("m.plp")));
    EXPECT_EQ(faultOf("export m.plp -o v.mp4"), "v.mp4: is the source video; choose another output");
    EXPECT_EQ(faultOf("export m.plp -o ./m.plp"), "./m.plp: is the project itself; choose another output");
    EXPECT_EQ(faultOf("still m.plp --at 0 -o none/x.png").find("none/x.png: there is no folder"), 0U);
    EXPECT_EQ(test::readFile(path(QStringLiteral("v.mp4"))), video);
    EXPECT_EQ(test::readFile(path(QStringLiteral("m.plp"))), project);
}

TEST_F(ExportCommandTest, AMovedVideoIsFoundAndABrokenOneIsAFault) {
    makeProject(1);
    ProjectFile project = ProjectFile::load(path(QStringLiteral("m.plp")));
    project.videoPath = QStringLiteral("/elsewhere/v.mp4");
    project.watermarkPath = QStringLiteral("/elsewhere/w.png");
    project.save(path(QStringLiteral("m.plp")));
    const Outcome outcome = run("export m.plp -o out.mp4");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errText(), "pointloom-cli: note: the video was found beside the project: " +
                                     path(QStringLiteral("v.mp4")).toStdString() +
                                     "\npointloom-cli: warning: the watermark is missing and left out: "
                                     "/elsewhere/w.png\n");

    write(QStringLiteral("broken.mp4"), "not a video");
    EXPECT_EQ(faultOf("export m.plp --video broken.mp4 -o x.mp4").find("m.plp: Export failed: "), 0U);
    EXPECT_EQ(faultOf("export m.plp --video none.mp4 -o x.mp4"), "none.mp4: no such video");
    EXPECT_FALSE(exists(QStringLiteral("x.mp4")));
}

TEST_F(ExportCommandTest, TheListOfChaptersEndsWithTheVideo) {
    makeProject(2);
    ProjectFile project = ProjectFile::load(path(QStringLiteral("m.plp")));
    for (const double time : {0.5, 1.5, 9.0})
        project.markers.push_back(
            {QUuid::createUuid(), time, ScoreState(), QStringLiteral("At %1").arg(time)});
    project.save(path(QStringLiteral("m.plp")));
    for (const char* range : {"", " --trim-end 20"})
        EXPECT_EQ(run((std::string("export m.plp --chapters-text") + range).c_str()).out,
                  "0:00 Ana - Bea\n0:00 At 0.5\n0:01 At 1.5\n");
    EXPECT_EQ(run("export m.plp --chapters-text --trim-end 1").out, "0:00 Ana - Bea\n0:00 At 0.5\n");

    write(QStringLiteral("broken.mp4"), "not a video");
    EXPECT_EQ(faultOf("export m.plp --chapters-text --video broken.mp4").find("broken.mp4: "), 0U);
}

TEST_F(ExportCommandTest, AVideoThatIsCutShortIsExportedWithAWarning) {
    makeProject(4);
    const QString whole = path(QStringLiteral("v.mp4"));
    const QByteArray clip =
        test::readFile(clips.make(QStringLiteral("front.mp4"),
                                  {QStringLiteral("-i"), whole, QStringLiteral("-c"), QStringLiteral("copy"),
                                   QStringLiteral("-movflags"), QStringLiteral("+faststart")}));
    write(QStringLiteral("cut.mp4"), clip.left(clip.size() / 2));
    const Outcome outcome = run("export m.plp --video cut.mp4 -o out.mp4");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "out.mp4\n");
    EXPECT_TRUE(outcome.err.startsWith("pointloom-cli: warning: ")) << outcome.errText();
    EXPECT_TRUE(outcome.err.endsWith(" s of the video are missing\n")) << outcome.errText();
    EXPECT_LT(durationOf(QStringLiteral("out.mp4")), 3.5);

    write(QStringLiteral("unfinished.mp4"), test::readFile(whole).left(clip.size() / 2));
    EXPECT_EQ(faultOf("export m.plp --video unfinished.mp4 -o x.mp4"),
              "m.plp: Export failed: Reader failed: the file is cut short or was never finished: its index "
              "is missing");
}

TEST_F(ExportCommandTest, TheOverlayAloneIsAMovieOrAFolderOfPictures) {
    makeProject(1);
    EXPECT_EQ(run("export m.plp --overlay-only -o board.mov").out, "board.mov\n");
    EXPECT_EQ(test::probe(path(QStringLiteral("board.mov"))).at("streams")[0].at("codec_tag_string"), "ap4h");
    EXPECT_EQ(run("export m.plp --overlay-only --format png --trim-end 0.2 -o board").out, "board\n");
    EXPECT_EQ(QDir(path(QStringLiteral("board"))).entryList(QDir::Files).size(), 5);

    EXPECT_EQ(faultOf("export m.plp --overlay-only --format png -o board"), "board: the folder is not empty");
    EXPECT_EQ(faultOf("export m.plp --overlay-only --format hevc -o x.mp4", 2),
              "--overlay-only: hevc has no transparency; use --format prores or png");
    EXPECT_EQ(faultOf("export m.plp --format png -o x", 2), "--format png: pictures are for --overlay-only");
}

TEST_F(ExportCommandTest, AStillShowsTheVideoWithItsScoreboard) {
    ASSERT_EQ(run(newTennis).status, 0);
    const QString black = clips.make(QStringLiteral("black.mp4"),
                                     "-f lavfi -i color=black:size=640x360:duration=1 -pix_fmt yuv420p");
    ASSERT_EQ(
        run({QStringLiteral("still"), QStringLiteral("m.plp"), QStringLiteral("--video"), black,
             QStringLiteral("--at"), QStringLiteral("0.5"), QStringLiteral("-o"), QStringLiteral("f.png")})
            .status,
        0);
    const QImage frame(path(QStringLiteral("f.png")));
    ASSERT_EQ(frame.size(), QSize(640, 360));
    const auto brightest = [&](const QRect& area) {
        int value = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                value = std::max(value, frame.pixelColor(x, y).value());
        }
        return value;
    };
    EXPECT_GT(brightest({0, 0, 200, 80}), 150) << "the scoreboard";
    EXPECT_LT(brightest({400, 0, 240, 200}), 20) << "the picture beside it";
}

TEST_F(ExportCommandTest, FillingGoesIntoStillsPlansAndOverlays) {
    makeProject(1);
    ASSERT_EQ(run("still m.plp --at 0.5 --preset instagram916 --fill 0 -o left.png").status, 0);
    ASSERT_EQ(run("still m.plp --at 0.5 --preset instagram916 --fill=1 -o right.png").status, 0);
    const QImage left(path(QStringLiteral("left.png")));
    EXPECT_EQ(left.size(), QSize(1080, 1920));
    EXPECT_NE(left.pixel(20, 1500), QImage(path(QStringLiteral("right.png"))).pixel(20, 1500));
    EXPECT_NE(left.pixel(540, 5), qRgb(0, 0, 0)) << "no bar";

    ASSERT_EQ(run("plan m.plp --segments 1 --preset instagram916 --fill -o m.json").status, 0);
    QFile plan(path(QStringLiteral("m.json")));
    ASSERT_TRUE(plan.open(QIODevice::ReadOnly));
    EXPECT_EQ(json::Value::parse(plan.readAll().toStdString())["job"]["settings"]["fill"], 0.5);

    EXPECT_EQ(faultOf("export m.plp --fill -o x.mp4", 2),
              "--fill: the original size has no bars; name another one with --preset");
    EXPECT_NE(faultOf("still m.plp --at 0 --preset instagram916 --fill 1.5 -o x.png", 2).find("above 1"),
              std::string::npos);
}

TEST_F(ExportCommandTest, CheckIsContentWithACompleteProject) {
    makeProject(1);
    const Outcome outcome = run("check m.plp --json");
    EXPECT_EQ(outcome.status, 0) << outcome.errText();
    const json::Value report = outcome.outJson();
    EXPECT_TRUE(report.at("complete"));
    EXPECT_EQ(report.at("video").at("width"), 320);
    EXPECT_NEAR(report.at("video").at("duration").get<double>(), 1.0, 0.05);
}

}
}
