#include "cli/ProjectInputs.h"
#include "cli/Messages.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace pointloom::cli {
namespace {

class ProjectInputsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString projectPath = folder.filePath(QStringLiteral("match.plp"));
    ProjectFile project;

    void SetUp() override {
        project.selectedTemplate = TemplateID::classic;
        project.matchConfig = MatchConfig{};
        project.matchConfig->numberOfSets = 3;
        project.scoreboardPositionX = 0.3;
        project.scoreboardPositionY = 0.4;
        project.videoPath = touch(QStringLiteral("match.mp4"));
    }

    QString touch(const QString& name) const {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    QString paint(const QString& name, QSize size = {4, 4}) const {
        QImage picture(size, QImage::Format_Mono);
        picture.fill(0);
        EXPECT_TRUE(picture.save(folder.filePath(name), "PNG"));
        return folder.filePath(name);
    }

    ProjectInputs inputs(const ExportRequest& request = {}) const {
        return resolveInputs(project, projectPath, request);
    }

    template <class Error = CommandError>
    std::string fault(const ExportRequest& request = {}) const {
        try {
            inputs(request);
        } catch (const Error& error) {
            return error.what();
        }
        return "no fault of that kind";
    }
};

TEST_F(ProjectInputsTest, TheDocumentSaysWhatIsExported) {
    project.scoreboardUserScale = 2;
    project.trimStart = 1;
    project.trimEnd = 5;
    project.watermarkPath = paint(QStringLiteral("mark.png"));
    project.watermarkCorner = WatermarkCorner::topLeft;
    const auto [job, remarks] = inputs();
    EXPECT_TRUE(remarks.notes.isEmpty());
    EXPECT_TRUE(remarks.warnings.isEmpty());
    EXPECT_EQ(job.videoPath, project.videoPath);
    EXPECT_EQ(job.trimStart, 1);
    EXPECT_EQ(job.trimEnd, 5);
    EXPECT_EQ(job.overlay.scoreboardPosition, QPointF(0.3, 0.4));
    EXPECT_EQ(job.overlay.scoreboardUserScale, 2);
    EXPECT_EQ(job.overlay.watermarkPath, project.watermarkPath);
    EXPECT_EQ(job.settings.watermarkCorner, WatermarkCorner::topLeft);
    EXPECT_EQ(setsOf(job.overlay.initialScore).size(), 3U) << "the empty score of the match";
    EXPECT_FALSE(job.overlay.isLicensed);
}

TEST_F(ProjectInputsTest, TheCommandLineGoesFirst) {
    project.trimEnd = 5;
    project.watermarkPath = QStringLiteral("/nowhere/mark.png");
    project.videoPath.reset();
    ExportRequest request;
    request.videos = {touch(QStringLiteral("other.mov")), touch(QStringLiteral("next.mov"))};
    request.watermarkPath = paint(QStringLiteral("own.png"));
    request.watermarkCorner = WatermarkCorner::topRight;
    request.trimStart = 2;
    request.trimEnd = 9;
    const auto [job, remarks] = inputs(request);
    EXPECT_EQ(job.recording().files(), request.videos);
    EXPECT_EQ(job.overlay.watermarkPath, request.watermarkPath);
    EXPECT_EQ(job.settings.watermarkCorner, WatermarkCorner::topRight);
    EXPECT_EQ(job.trimStart, 2);
    EXPECT_EQ(job.trimEnd, 9);
    EXPECT_TRUE(remarks.warnings.isEmpty());
}

TEST_F(ProjectInputsTest, WhatTheProjectLeavesOutCanBeReplacedOrKept) {
    project.parts = PartChoice{.onlyRallies = true, .rallies = {7, 3}, .withoutCuts = true};
    project.cuts = std::vector{CutZone{QUuid::createUuid(), 30, 20}};
    ExportRequest request;
    EXPECT_EQ(inputs().job.settings.rallies, (RallyMargins{7, 3}));
    EXPECT_EQ(inputs().job.leftOut, (std::vector<TimeSpan>{{20, 30}}));
    request.settings.rallies = {1, 2};
    request.leftOut = {{5, 6}};
    EXPECT_EQ(inputs(request).job.settings.rallies, (RallyMargins{1, 2}));
    EXPECT_EQ(inputs(request).job.leftOut, (std::vector<TimeSpan>{{20, 30}, {5, 6}}));
    request.settings.rallies.reset();
    request.keepsWholeRange = true;
    EXPECT_FALSE(inputs(request).job.settings.rallies);
    EXPECT_EQ(inputs(request).job.leftOut, (std::vector<TimeSpan>{{5, 6}}));
}

TEST_F(ProjectInputsTest, FilesThatMovedWithTheirDocumentAreFound) {
    project.videoPath = QStringLiteral("/elsewhere/match.mp4");
    project.matchConfig->logoURL = QUrl::fromLocalFile(QStringLiteral("/elsewhere/my logo.png"));
    const QString logo = touch(QStringLiteral("my logo.png"));
    const auto [job, remarks] = inputs();
    EXPECT_EQ(job.videoPath, folder.filePath(QStringLiteral("match.mp4")));
    EXPECT_EQ(job.overlay.config.logoURL, QUrl::fromLocalFile(logo));
    EXPECT_EQ(remarks.notes.size(), 2);
    EXPECT_TRUE(remarks.warnings.isEmpty());
}

TEST_F(ProjectInputsTest, MissingPicturesAreLeftOutWithAWarning) {
    project.watermarkPath = QStringLiteral("/nowhere/mark.png");
    project.matchConfig->logoURL = QUrl(QStringLiteral("https://example.org/logo.png"));
    const auto [job, remarks] = inputs();
    EXPECT_FALSE(job.overlay.watermarkPath);
    EXPECT_FALSE(job.overlay.config.logoURL);
    EXPECT_EQ(remarks.warnings,
              (QStringList{QStringLiteral("the logo is missing and left out: https://example.org/logo.png"),
                           QStringLiteral("the watermark is missing and left out: /nowhere/mark.png")}));
}

TEST_F(ProjectInputsTest, AWatermarkThatCannotBeReadIsLeftOutWithAWarning) {
    project.watermarkPath = paint(QStringLiteral("mark.png")); // not taken in its place
    const QString missing = folder.filePath(QStringLiteral("gone.png"));
    const QString noPicture = touch(QStringLiteral("empty.png"));
    const QString tooLarge = paint(QStringLiteral("large.png"), {10'000, 5'001});
    const QString notReadable = QStringLiteral(
        "the watermark is left out; it is no PNG or JPEG picture of up to 50 million pixels: ");
    const std::pair<QString, QString> cases[] = {
        {missing, QStringLiteral("the watermark is missing and left out: ") + missing},
        {noPicture, notReadable + noPicture},
        {tooLarge, notReadable + tooLarge}};
    for (const auto& [path, warning] : cases) {
        ExportRequest request;
        request.watermarkPath = path;
        const auto [job, remarks] = inputs(request);
        EXPECT_FALSE(job.overlay.watermarkPath);
        EXPECT_EQ(remarks.warnings, QStringList{warning});
    }
    project.watermarkPath = noPicture;
    EXPECT_EQ(inputs().remarks.warnings, QStringList{notReadable + noPicture});
}

TEST_F(ProjectInputsTest, WhatCannotBeExportedIsSaid) {
    ExportRequest request;
    request.videos = {QStringLiteral("/nowhere/x.mp4")};
    EXPECT_EQ(fault(request), "/nowhere/x.mp4: no such video");
    project.videoPath = QStringLiteral("/nowhere/y.mp4");
    EXPECT_EQ(fault(), "match.plp: the video is missing: /nowhere/y.mp4");
    project.videoPath.reset();
    EXPECT_EQ(fault(), "match.plp: no video is chosen; name one with --video");
    project.selectedTemplate.reset();
    EXPECT_EQ(fault(), "match.plp: no scoreboard template is chosen");
    project.matchConfig.reset();
    EXPECT_EQ(fault(), "match.plp: the match is not set up: no teams, no sets");
}

TEST_F(ProjectInputsTest, AnEmptyRangeIsTheFaultOfWhoGaveIt) {
    project.trimStart = 5;
    project.trimEnd = 5;
    EXPECT_EQ(fault(), "match.plp: the end of the range, 5 s, is not after its start, 5 s");
    ExportRequest request;
    request.trimEnd = 2.5;
    EXPECT_EQ(fault<UsageError>(request),
              "--trim-start, --trim-end: the end of the range, 2.5 s, is not after its start, 5 s");
    request.trimStart = 1;
    EXPECT_EQ(inputs(request).job.trimEnd, 2.5);
}

TEST_F(ProjectInputsTest, ScoresThatTheTemplateDoesNotDrawAreCounted) {
    project.selectedTemplate = TemplateID::volleyArena;
    project.markers = {{QUuid::createUuid(), 1, PointScoreState{}, {}},
                       {QUuid::createUuid(), 2, ScoreState{}, {}}};
    EXPECT_EQ(inputs().remarks.warnings,
              QStringList{QStringLiteral(
                  "the template \"volleyArena\" draws another kind of score: 2 of 3 scores are not shown")});
}

TEST_F(ProjectInputsTest, AnOutputNeverReplacesAnInputByWhateverName) {
    const ExportJob job = inputs().job;
    const auto outputFault = [&](const QString& output) -> std::string {
        try {
            requireUsableOutput(output, inputFiles(job));
        } catch (const CommandError& error) {
            return error.what();
        }
        return {};
    };
    const QString link = folder.filePath(QStringLiteral("link.mp4"));
    ASSERT_TRUE(QFile::link(job.videoPath, link));
    for (const QString& output : {job.videoPath, link, folder.filePath(QStringLiteral("./x/../match.mp4"))}) {
        QDir(folder.path()).mkdir(QStringLiteral("x"));
        EXPECT_NE(outputFault(output).find("is the source video"), std::string::npos) << output.toStdString();
    }
    touch(QStringLiteral("match.plp"));
    EXPECT_NE(outputFault(projectPath).find("is the project itself"), std::string::npos);
    EXPECT_NE(outputFault(folder.path()).find("is a folder"), std::string::npos);
    EXPECT_NE(outputFault(QStringLiteral("/nowhere/out.mp4")).find("there is no folder /nowhere"),
              std::string::npos);
    EXPECT_NE(outputFault(QStringLiteral("/dev/null")).find("is not a regular file"), std::string::npos);
    EXPECT_EQ(outputFault(folder.filePath(QStringLiteral("out.mp4"))), "");
}

}
}
