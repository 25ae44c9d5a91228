#include "session/AppState.h"

#include "l10n/L10nKey.h"
#include "l10n/Language.h"
#include "support/Sessions.h"

#include <gtest/gtest.h>

namespace pointloom {
namespace {

using namespace test;

TEST(AppState, FieldsNotifyTheirOwnReadersAndOnlyOfChanges) {
    AppState state;
    int screenEvaluations = 0;
    QProperty<Screen> screen;
    screen.setBinding([&] {
        ++screenEvaluations;
        return state.step.value();
    });
    int templateNotifications = 0;
    const auto watch = state.selectedTemplate.onValueChanged([&] { ++templateNotifications; });
    screenEvaluations = 0;

    state.selectedTemplate = TemplateID::retro;
    state.selectedTemplate = TemplateID::retro;
    EXPECT_EQ(templateNotifications, 1);
    EXPECT_EQ(screenEvaluations, 0) << "a reader of another field was disturbed";

    state.step = Screen::video;
    EXPECT_EQ(screen.value(), Screen::video);
    EXPECT_EQ(screenEvaluations, 1);
}

TEST(AppState, LiveScorePrefersMarkersThenTheInitialScoreThenTheEmptyMatch) {
    AppState state;
    EXPECT_FALSE(state.liveScore()) << "there is no match yet";

    state.matchConfig = tennisMatch();
    const ScoreState empty{.sets = std::vector<SetScore>(3), .currentGame = {}, .servingTeam = 1};
    EXPECT_EQ(state.liveScore(), SportScoreState(empty));

    state.initialScore = tennisScore(5);
    EXPECT_EQ(state.liveScore(), tennisScore(5));

    state.markers = std::vector{markerAt(10)};
    state.currentTime = 9.99;
    EXPECT_EQ(state.liveScore(), tennisScore(5));
    state.currentTime = 10;
    EXPECT_EQ(state.liveScore(), tennisScore(10));

    state.matchConfig = std::nullopt;
    EXPECT_FALSE(state.liveScore());
}

TEST(AppState, LiveScoreTellsItsReadersOnlyWhenItIsAnotherScore) {
    AppState state;
    state.matchConfig = tennisMatch();
    state.markers = std::vector{markerAt(10), markerAt(20)};
    int changes = 0;
    const auto watch = state.bindableLiveScore().addNotifier([&] { ++changes; });

    for (double time = 0; time < 30; time += 0.5)
        state.currentTime = time;
    EXPECT_EQ(changes, 2) << "60 frames, two of which begin another score";

    state.scoreboardUserScale = 2;
    state.isPlaying = true;
    EXPECT_EQ(changes, 2);
}

TEST(AppState, ResetKeepsLanguageLicenceAndCutsAndDeletesTheStoredSession) {
    RecordingStore store;
    AppState state(&store);
    const std::vector cuts{CutZone{QUuid::createUuid(), 1, 2}};
    state.language = Language::german;
    state.isLicensed = true;
    state.cuts = cuts;
    state.selectedCutID = cuts.front().id;
    state.step = Screen::editor;
    state.selectedTemplate = TemplateID::retro;
    state.selectedSport = SportID::squash;
    state.matchConfig = tennisMatch();
    state.videoURL = QUrl::fromLocalFile(QStringLiteral("/videos/match.mp4"));
    state.videoDuration = 61.5;
    state.videoWidth = 1280;
    state.videoHeight = 720;
    state.currentTime = 7.3;
    state.isPlaying = true;
    state.trimStart = 3;
    state.trimEnd = 12;
    state.scoreboardPosition = QPointF(0.5, 0.5);
    state.scoreboardUserScale = 2.4;
    state.scoreboardDrawOrigin = QPointF(7, 8);
    state.initialScore = tennisScore(5);
    state.exportProgress = 0.4;
    state.watermarkURL = QUrl::fromLocalFile(QStringLiteral("/pictures/club.png"));
    state.currentProjectURL = QUrl::fromLocalFile(QStringLiteral("/matches/final.plp"));
    state.previewAreaSize = QSizeF(640, 360);
    state.exportStatus = {AppState::ExportStatus::Stage::error, QStringLiteral("No space left")};
    state.watermarkCorner = WatermarkCorner::topLeft;
    state.showLicenseSheet = true;
    state.addMarker(markerAt(10), nullptr);

    state.reset();

    EXPECT_EQ(state.step.value(), Screen::sport);
    EXPECT_EQ(state.selectedSport.value(), SportID::tennis);
    EXPECT_FALSE(state.matchConfig.value());
    EXPECT_FALSE(state.videoURL.value());
    EXPECT_FALSE(state.selectedTemplate.value());
    EXPECT_EQ(state.videoDuration.value(), 0);
    EXPECT_EQ(state.videoWidth.value(), 0);
    EXPECT_EQ(state.videoHeight.value(), 0);
    EXPECT_EQ(state.currentTime.value(), 0);
    EXPECT_FALSE(state.isPlaying.value());
    EXPECT_EQ(state.trimStart.value(), 0);
    EXPECT_FALSE(state.trimEnd.value());
    EXPECT_EQ(state.scoreboardPosition.value(), QPointF(0.15, 0.1));
    EXPECT_EQ(state.scoreboardUserScale.value(), 1);
    EXPECT_EQ(state.scoreboardDrawOrigin.value(), QPointF(30, 20));
    EXPECT_FALSE(state.initialScore.value());
    EXPECT_EQ(state.exportProgress.value(), 0);
    EXPECT_FALSE(state.watermarkURL.value());
    EXPECT_FALSE(state.currentProjectURL.value());
    EXPECT_EQ(state.previewAreaSize.value(), QSizeF(0, 0));
    EXPECT_EQ(state.exportStatus.value(), AppState::ExportStatus{});
    EXPECT_EQ(state.watermarkCorner.value(), WatermarkCorner::bottomRight);
    EXPECT_FALSE(state.showLicenseSheet.value());
    EXPECT_TRUE(state.markers.value().empty());
    EXPECT_FALSE(state.selectedMarkerID.value());

    EXPECT_EQ(state.language.value(), Language::german);
    EXPECT_TRUE(state.isLicensed.value());
    EXPECT_EQ(state.cuts.value(), cuts);
    EXPECT_EQ(state.selectedCutID.value(), cuts.front().id);
    EXPECT_EQ(store.clears, 1);
}

TEST(AppState, TextsFollowTheLanguageInsideABinding) {
    AppState state;
    QProperty<QString> label;
    label.setBinding([&] { return state.t(L10nKey::continueBtn); });
    EXPECT_EQ(label.value(), QStringLiteral("Continue"));
    state.language = Language::swedish;
    EXPECT_EQ(label.value(), QStringLiteral("Fortsätt"));
}

}
}
