#include "persistence/ProjectSession.h"

#include "export/ExportJob.h"
#include "l10n/L10nKey.h"
#include "persistence/DocumentFile.h"
#include "session/UndoStack.h"
#include "support/Sessions.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace pointloom {
namespace {

using namespace test;
using enum OpenReport::Role;

class ProjectInSession : public testing::Test {
protected:
    QTemporaryDir folder;
    RecordingStore store;
    AppState state{&store};

    QString at(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }

    QString write(const char* name, const QByteArray& bytes) const {
        QFile file(at(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    void fillState() {
        state.selectedSport = SportID::padel;
        state.selectedTemplate = TemplateID::retro;
        state.matchConfig = tennisMatch();
        state.rules = {std::string(byHand)};
        state.markers = std::vector{markerAt(1), markerAt(2)};
        state.initialScore = tennisScore(3);
        state.scoreboardPosition = QPointF(0.7, 0.8);
        state.scoreboardUserScale = 1.75;
        state.trimStart = 2;
        state.trimEnd = 20;
        state.watermarkURL = QUrl::fromLocalFile(at("mark #1.png"));
        state.watermarkCorner = WatermarkCorner::topRight;
        state.videoURL = QUrl::fromLocalFile(at("match 100%.mp4"));
    }
};

TEST_F(ProjectInSession, ASessionSurvivesADocumentButItsCutsDoNot) {
    fillState();
    state.cuts = std::vector{CutZone{QUuid::createUuid(), 1, 2}};
    state.selectedCutID = state.cuts.value().front().id;
    state.language = Language::italian;
    const ProjectFile saved = projectFrom(state);
    EXPECT_EQ(saved.videoPath, at("match 100%.mp4"));

    AppState fresh(&store);
    const QUrl source = QUrl::fromLocalFile(at("project.plp"));
    apply(saved, fresh, source);
    EXPECT_EQ(projectFrom(fresh), saved);
    EXPECT_EQ(fresh.currentProjectURL.value(), source);
    EXPECT_EQ(fresh.step.value(), Screen::editor);
    EXPECT_EQ(fresh.language.value(), Language::english);
    EXPECT_EQ(store.saves, 1);

    apply(saved, state, source);
    EXPECT_TRUE(state.cuts.value().empty());
    EXPECT_FALSE(state.selectedCutID.value());
}

TEST_F(ProjectInSession, TheChoiceOfPartsIsKeptAndItsCutsWithIt) {
    fillState();
    state.cuts = std::vector{CutZone{QUuid::createUuid(), 3, 4}};
    EXPECT_FALSE(projectFrom(state).parts) << "documents without the choice are as they were";
    state.parts = PartChoice{.onlyRallies = true, .rallies = {8, 1.5}};
    EXPECT_FALSE(projectFrom(state).cuts);
    state.parts = PartChoice{.onlyRallies = true, .rallies = {8, 1.5}, .withoutCuts = true};
    projectFrom(state).save(at("project.plp"));

    AppState fresh(&store);
    fresh.cuts = std::vector{CutZone{QUuid::createUuid(), 7, 9}};
    openProject(at("project.plp"), fresh);
    EXPECT_EQ(fresh.parts.value(), state.parts.value());
    EXPECT_EQ(fresh.cuts.value(), state.cuts.value());
    const ExportJob job = exportJobFor(ProjectFile::load(at("project.plp"))).value();
    EXPECT_EQ(job.settings.rallies, (RallyMargins{8, 1.5}));
    EXPECT_EQ(job.leftOut, (std::vector<TimeSpan>{{3, 4}}));
    fresh.reset();
    EXPECT_EQ(fresh.parts.value(), PartChoice());
}

TEST_F(ProjectInSession, MarkersOfAnUnsortedDocumentComeInOrder) {
    fillState();
    ProjectFile project = projectFrom(state);
    const auto at = [](double time) { return Marker{QUuid::createUuid(), time, ScoreState{}, {}}; };
    project.markers = {at(20), at(3.7), at(20)};
    apply(project, state, {});
    EXPECT_EQ(state.markers.value(),
              (std::vector{project.markers[1], project.markers[0], project.markers[2]}));
}

TEST_F(ProjectInSession, TheWizardOpensWhereSomethingIsMissing) {
    ProjectFile project;
    const auto screen = [&] {
        apply(project, state, QUrl());
        return state.step.value();
    };
    EXPECT_EQ(screen(), Screen::sport);
    project.selectedSport = SportID::squash;
    EXPECT_EQ(screen(), Screen::scoreboard);
    project.selectedSport = std::nullopt;
    project.selectedTemplate = TemplateID::dark;
    EXPECT_EQ(screen(), Screen::match) << "the sport falls back to tennis";
    EXPECT_EQ(state.selectedSport.value(), SportID::tennis);
    project.matchConfig = tennisMatch();
    EXPECT_EQ(screen(), Screen::video);
    project.videoPath = QStringLiteral("/videos/match.mp4");
    EXPECT_EQ(screen(), Screen::editor);
}

TEST_F(ProjectInSession, AbsentValuesTakeTheirDefaults) {
    fillState();
    ProjectFile project;
    project.scoreboardPositionX = 1.0001;
    apply(project, state, QUrl());
    EXPECT_EQ(state.scoreboardPosition.value(), QPointF(0.15, 0.1));
    EXPECT_EQ(state.scoreboardUserScale.value(), 1.0);
    EXPECT_EQ(state.watermarkCorner.value(), WatermarkCorner::bottomRight);
    EXPECT_FALSE(state.watermarkURL.value());
    EXPECT_TRUE(state.markers.value().empty());
}

TEST_F(ProjectInSession, FilesThatMovedWithTheDocumentAreFoundBesideIt) {
    fillState();
    MatchConfig config = tennisMatch();
    config.logoURL = QUrl::fromLocalFile(QStringLiteral("/elsewhere/club.png"));
    state.matchConfig = config;
    ProjectFile project = projectFrom(state);
    project.videoPath = QStringLiteral("/elsewhere/match.mp4");
    project.watermarkPath = QStringLiteral("/elsewhere/mark.png");
    project.save(at("project.plp"));
    write("match.mp4", "video");
    write("club.png", "logo");

    const OpenReport report = openProject(at("project.plp"), state);
    EXPECT_EQ(report.relocated, (std::vector<OpenReport::Relocation>{
                                    {logo, QStringLiteral("/elsewhere/club.png"), at("club.png")},
                                    {video, QStringLiteral("/elsewhere/match.mp4"), at("match.mp4")}}));
    EXPECT_EQ(report.missing,
              (std::vector<OpenReport::Missing>{{watermark, QStringLiteral("/elsewhere/mark.png")}}));
    EXPECT_EQ(state.videoURL.value(), QUrl::fromLocalFile(at("match.mp4")));
    EXPECT_EQ(state.matchConfig.value()->logoURL, QUrl::fromLocalFile(at("club.png")));
    EXPECT_EQ(state.step.value(), Screen::editor);
}

TEST_F(ProjectInSession, ALogoOnAnotherMachineIsNotTakenForAFileOfThisOne) {
    fillState();
    MatchConfig config = tennisMatch();
    config.logoURL = QUrl(QStringLiteral("https://example.org") + write("club.png", "logo"));
    state.matchConfig = config;
    projectFrom(state).save(at("project.plp"));

    const OpenReport report = openProject(at("project.plp"), state);
    EXPECT_TRUE(report.relocated.empty());
    ASSERT_FALSE(report.missing.empty());
    EXPECT_EQ(report.missing.front(), (OpenReport::Missing{logo, config.logoURL->toString()}));
    EXPECT_EQ(state.matchConfig.value(), config);
}

TEST_F(ProjectInSession, AMissingVideoIsToBeImportedAgain) {
    fillState();
    MatchConfig config = tennisMatch();
    config.logoURL = QUrl::fromLocalFile(QStringLiteral("/elsewhere/club.png"));
    state.matchConfig = config;
    projectFrom(state).save(at("project.plp"));

    const OpenReport report = openProject(at("project.plp"), state);
    EXPECT_TRUE(report.relocated.empty());
    ASSERT_EQ(report.missing.size(), 3U);
    EXPECT_EQ(report.missing.back(), (OpenReport::Missing{video, at("match 100%.mp4")}));
    EXPECT_FALSE(state.videoURL.value());
    EXPECT_EQ(state.step.value(), Screen::video);
    EXPECT_EQ(state.matchConfig.value(), config) << "the document keeps naming its logo";
    EXPECT_EQ(state.currentProjectURL.value(), QUrl::fromLocalFile(at("project.plp")));
}

TEST_F(ProjectInSession, ASplitRecordingIsKeptAndAMissingFileOfItIsNamed) {
    fillState();
    state.watermarkURL = std::nullopt;
    state.watermarkURL = std::nullopt;
    const std::vector<QString> files{write("1.mp4", "a"), write("2.mp4", "b"), write("3.mp4", "c")};
    state.setVideo({files.front(), files});
    projectFrom(state).save(at("match.plp"));
    state.setVideo(at("other.mp4"));
    EXPECT_FALSE(projectFrom(state).videoFiles);

    EXPECT_TRUE(openProject(at("match.plp"), state).missing.empty());
    ASSERT_TRUE(state.recording());
    EXPECT_EQ(state.recording()->files(), files);
    EXPECT_EQ(exportJobFor(projectFrom(state))->recording().files(), files);

    QFile::remove(files[1]);
    const OpenReport report = openProject(at("match.plp"), state);
    EXPECT_EQ(report.missing, (std::vector{OpenReport::Missing{video, files[1]}}));
    EXPECT_FALSE(state.videoURL.value());
    EXPECT_EQ(state.absentVideo.value(), files[1]);
    EXPECT_EQ(state.videoFiles.value(), files) << "to be put together again";
}

TEST_F(ProjectInSession, ADocumentThatNamesNoVideoMissesNoneAndGoesOnWhereItWas) {
    fillState();
    ProjectFile project;
    project.selectedSport = SportID::squash;
    project.save(at("project.plp"));
    const OpenReport report = openProject(at("project.plp"), state);
    EXPECT_TRUE(report.missing.empty());
    EXPECT_EQ(state.step.value(), Screen::scoreboard) << "the template";
}

TEST_F(ProjectInSession, AnUnreadableDocumentLeavesTheSession) {
    fillState();
    const ProjectFile before = projectFrom(state);
    write("project.plp", "{");
    EXPECT_THROW(openProject(at("project.plp"), state), DocumentError);
    EXPECT_EQ(projectFrom(state), before);
    EXPECT_EQ(store.saves + store.clears, 0);
}

}
}
