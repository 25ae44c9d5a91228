// Trims and cut zones: each edit is one step that can be taken back, and is saved.
#include "session/AppState.h"

#include "l10n/L10nKey.h"
#include "session/UndoStack.h"
#include "support/Sessions.h"

#include <gtest/gtest.h>

namespace pointloom::test {

namespace {

struct RangeEdits : testing::Test {
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;
};

CutZone cutFrom(double start, double end) {
    return {QUuid::createUuid(), start, end};
}

}

TEST_F(RangeEdits, ATrimIsOneStepWithBothItsEnds) {
    state.setTrim({2, 8}, &undo);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoSetTrim);
    state.setTrim({2, std::nullopt}, &undo);
    undo.undo();
    EXPECT_EQ(state.trim(), (TrimTimes{2, 8}));
    undo.undo();
    EXPECT_EQ(state.trim(), TrimTimes{});
    undo.redo();
    EXPECT_EQ(state.trim(), (TrimTimes{2, 8}));
    EXPECT_EQ(store.saves, 5);
}

TEST_F(RangeEdits, WhatChangesNothingIsNoStep) {
    state.setTrim({}, &undo);
    const CutZone cut = cutFrom(1, 2);
    state.updateCut(cut, &undo);
    state.removeCut(cut.id, &undo);
    EXPECT_FALSE(undo.canUndo().value());
    EXPECT_EQ(store.saves, 0);
}

TEST_F(RangeEdits, AnInitialScoreAndAPlaceAreStepsOfTheirOwn) {
    const SportScoreState ahead = PointScoreState{{}, {3, 0}, 1};
    state.setInitialScore(ahead, &undo);
    state.setInitialScore(ahead, &undo);
    const ScoreboardPlace before = state.scoreboardPlace();
    const ScoreboardPlace corner{{0.8, 0.9}, 2};
    state.placeScoreboard(corner, L10nKey::undoMoveScoreboard, &undo);
    state.placeScoreboard(corner, L10nKey::undoMoveScoreboard, &undo);
    EXPECT_EQ(store.saves, 2);
    undo.undo();
    EXPECT_EQ(state.scoreboardPlace(), before);
    EXPECT_EQ(state.initialScore.value(), ahead);
    undo.undo();
    EXPECT_EQ(state.initialScore.value(), std::nullopt);
    EXPECT_FALSE(undo.canUndo().value());
    undo.redo();
    EXPECT_EQ(state.initialScore.value(), ahead);
}

TEST_F(RangeEdits, CutsComeAndGoByUndoInTheirOrderAndSelected) {
    const CutZone late = cutFrom(10, 12);
    const CutZone early = cutFrom(1, 2);
    state.addCut(late, &undo);
    state.addCut(early, &undo);
    EXPECT_EQ(state.cuts.value(), (std::vector{early, late}));
    EXPECT_EQ(state.selectedCutID.value(), early.id);

    CutZone moved = early;
    moved.start = 20;
    moved.end = 21;
    state.updateCut(moved, &undo);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveCut);
    EXPECT_EQ(state.cuts.value(), (std::vector{late, moved}));

    state.removeCut(moved.id, &undo);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoDeleteCut);
    EXPECT_FALSE(state.selectedCutID.value());
    undo.undo();
    undo.undo();
    EXPECT_EQ(state.cuts.value(), (std::vector{early, late}));
    undo.undo();
    EXPECT_EQ(state.cuts.value(), std::vector{late});
}

TEST_F(RangeEdits, TheKeptPartsFollowMarkersTrimsAndCuts) {
    using Parts = std::vector<TimeSpan>;
    state.videoDuration = 100;
    state.trimStart = 5;
    EXPECT_EQ(state.keptParts(), (Parts{{5, 100}}));
    state.parts = PartChoice{.onlyRallies = true, .rallies = {10, 2}};
    EXPECT_TRUE(state.keptParts().empty()) << "there is no marker";
    state.markers = std::vector{markerAt(9), markerAt(60), markerAt(50), markerAt(99)};
    EXPECT_EQ(state.keptParts(), (Parts{{5, 11}, {40, 62}, {89, 100}})) << "joined, and within the range";
    state.cuts = std::vector{CutZone{QUuid::createUuid(), 58, 45}};
    EXPECT_EQ(state.keptParts().size(), 3U) << "a cut stays unless cuts are left out";
    state.parts = PartChoice{.onlyRallies = true, .rallies = {10, 2}, .withoutCuts = true};
    EXPECT_EQ(state.keptParts(), (Parts{{5, 11}, {40, 45}, {58, 62}, {89, 100}}));

    const Parts& parts = state.keptParts();
    EXPECT_EQ(nextKept(parts, 41.5), 41.5);
    EXPECT_EQ(nextKept(parts, 0), 5);
    EXPECT_EQ(nextKept(parts, 11), 40) << "the end of a part is no longer in it";
    EXPECT_EQ(nextKept(parts, 50), 58);
    EXPECT_NEAR(nextKept(parts, 100), 99.96, 1e-9);
    EXPECT_EQ(partFrom(parts, 100), nullptr);
}

TEST_F(RangeEdits, AnotherNumberOfSetsReachesEveryScoreAndIsOneStep) {
    const auto setsAt = [this](std::size_t marker) { return setsOf(state.markers.value().at(marker).score); };
    state.setNumberOfSets(5, &undo); // there is no match
    EXPECT_FALSE(undo.canUndo().value());
    state.matchConfig = tennisMatch();
    state.markers = std::vector{markerAt(6), markerAt(7)};
    state.initialScore = PointScoreState{{{25, 20, {}}, {3, 1, {}}, {1, 0, {}}}, {9, 8}, 2};
    const auto markers = state.markers.value();
    const auto initial = state.initialScore.value();
    state.setNumberOfSets(2, &undo);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoChangeSets);
    EXPECT_EQ(state.matchConfig.value()->numberOfSets, 2);
    EXPECT_EQ(setsAt(1), (std::vector<SetScore>{{7, 0, {}}, {}}));
    EXPECT_EQ(state.initialScore.value(),
              SportScoreState(PointScoreState{{{25, 20, {}}, {3, 1, {}}}, {9, 8}, 2}));

    MatchConfig renamed = *state.matchConfig.value();
    renamed.team1.player1 = QStringLiteral("Ana");
    state.matchConfig = renamed;
    undo.undo();
    EXPECT_EQ(state.markers.value(), markers);
    EXPECT_EQ(state.initialScore.value(), initial);
    EXPECT_EQ(state.matchConfig.value()->numberOfSets, 3);
    EXPECT_EQ(state.matchConfig.value()->team1.player1, QStringLiteral("Ana")) << "a name is no part of it";
    undo.redo();
    EXPECT_EQ(setsAt(0).size(), 2U);
    EXPECT_EQ(store.saves, 3);
}

}
