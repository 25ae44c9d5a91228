#include "session/PointEdits.h"
#include "l10n/L10nKey.h"
#include "session/UndoStack.h"
#include "support/Sessions.h"

#include <gtest/gtest.h>

namespace pointloom {
namespace {

using namespace test;

class PointEditsTest : public testing::Test {
protected:
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;

    void SetUp() override { state.matchConfig = tennisMatch(); }

    /// One digit a point, ten seconds apart.
    void enter(std::string_view digits) {
        for (const char digit : digits)
            EXPECT_EQ(PointEdits::Result::done,
                      PointEdits::addPoint(state,
                                           10.0 * static_cast<double>(state.markers.value().size() + 1),
                                           digit == '1' ? Side::first : Side::second, &undo));
    }

    /// The game of each marker, as "15-0"; after a set's first game its games as well.
    QStringList games() const {
        QStringList texts;
        for (const Marker& marker : state.markers.value()) {
            const auto [first, second] = gameTexts(marker.score);
            const SetScore& set = setsOf(marker.score).front();
            const QString played = set == SetScore()
                                       ? QString()
                                       : set.display(Side::first) + u'-' + set.display(Side::second) + u' ';
            texts << played + first + u'-' + second;
        }
        return texts;
    }

    const Marker& marker(std::size_t index) const { return state.markers.value().at(index); }
};

TEST_F(PointEditsTest, AMissedPointIsInsertedAndTheOthersFollowInOneStep) {
    enter("1112");
    const std::vector<Marker> before = state.markers;
    EXPECT_EQ(PointEdits::Result::done, PointEdits::addPoint(state, 15, Side::second, &undo));
    EXPECT_EQ(state.recountStoppedAt.value(), std::nullopt);
    EXPECT_EQ(games().join(u' '), QStringLiteral("15-0 15-15 30-15 40-15 40-30"));
    EXPECT_EQ(state.selectedMarkerID.value(), marker(1).id);
    undo.undo();
    EXPECT_EQ(state.markers.value(), before);
    undo.redo();
    EXPECT_EQ(games().size(), 5);
}

TEST_F(PointEditsTest, APointChangesSidesAndIsTakenAway) {
    enter("1121");
    const std::vector<Marker> before = state.markers;
    EXPECT_EQ(PointEdits::Result::done, PointEdits::changeWinner(state, marker(0).id, Side::second, &undo));
    EXPECT_EQ(games().join(u' '), QStringLiteral("0-15 15-15 15-30 30-30"));
    EXPECT_EQ(PointEdits::Result::done, PointEdits::changeWinner(state, marker(0).id, Side::first, &undo));
    EXPECT_EQ(state.markers.value(), before);
    PointEdits::removeMarker(state, marker(2).id, &undo);
    EXPECT_EQ(games().join(u' '), QStringLiteral("15-0 30-0 40-0"));
    for (int steps = 0; steps < 3; ++steps)
        undo.undo();
    EXPECT_EQ(state.markers.value(), before);
    const int saves = store.saves;
    EXPECT_EQ(PointEdits::Result::done, PointEdits::changeWinner(state, marker(0).id, Side::first, &undo));
    EXPECT_EQ(store.saves, saves) << "it is that side's point already";
}

TEST_F(PointEditsTest, PointsThatSwapTheirOrderAreCountedInIt) {
    enter("1222");
    PointEdits::moveMarker(state, marker(0).id, 35, &undo);
    EXPECT_EQ(games().join(u' '), QStringLiteral("0-15 0-30 15-30 15-40"));
    undo.undo();
    EXPECT_EQ(games().join(u' '), QStringLiteral("15-0 15-15 15-30 15-40"));
    PointEdits::moveMarker(state, marker(0).id, 19, &undo);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveMarker);
    EXPECT_EQ(timesOf(state).front(), 19);
}

TEST_F(PointEditsTest, AScoreEnteredByHandIsKeptAndNamed) {
    enter("112");
    const SportScoreState typed = tennisScore(3);
    state.updateMarkerScore(marker(1).id, typed, &undo);
    EXPECT_EQ(PointEdits::Result::done, PointEdits::changeWinner(state, marker(0).id, Side::second, &undo));
    EXPECT_EQ(state.recountStoppedAt.value(), marker(1).id);
    EXPECT_EQ(marker(1).score, typed);
    EXPECT_EQ(PointEdits::Result::done, PointEdits::changeWinner(state, marker(1).id, Side::second, &undo));
    EXPECT_EQ(games()[1], QStringLiteral("3-0 0-15")) << "counted on top of what was typed";
}

TEST_F(PointEditsTest, NothingIsAddedAfterTheEndOfTheMatch) {
    enter(std::string(48, '1'));
    EXPECT_EQ(state.markers.value().size(), 48U);
    EXPECT_EQ(setsOf(marker(47).score)[1], (SetScore{6, 0, {}}));
    EXPECT_EQ(PointEdits::Result::matchIsOver, PointEdits::addPoint(state, 1000, Side::second, &undo));
    EXPECT_EQ(state.markers.value().size(), 48U);
    undo.undo();
    EXPECT_EQ(gameTexts(state.markers.value().back().score).first, QStringLiteral("40"));
    EXPECT_EQ(PointEdits::Result::done, PointEdits::addPoint(state, 1000, Side::second, &undo));
}

TEST_F(PointEditsTest, AnInitialScoreIsCarriedOnThroughTheMarkersWhenTheUserSaysSo) {
    for (const bool isByHand : {false, true}) {
        state.rules = std::vector<std::string>();
        enter("11112");
        const std::vector<Marker> before = state.markers;
        if (isByHand)
            state.rules = {std::string(byHand)};
        PointEdits::typeScore(state, std::nullopt, ScoreState{{{1, 1, {}}, {}, {}}, {}, 1}, &undo);
        PointEdits::typeScore(state, std::nullopt, ScoreState{{{2, 1, {}}, {}, {}}, {}, 2}, &undo);
        EXPECT_EQ(state.markers.value(), before);
        ASSERT_TRUE(PointEdits::carriedOn(state));
        PointEdits::carryOn(state, &undo);
        EXPECT_FALSE(PointEdits::carriedOn(state));
        const SportScoreState last = state.markers.value().back().score;
        EXPECT_EQ(setsOf(last).front(), (SetScore{3, 1, {}}));
        EXPECT_EQ(gameTexts(last).second, QStringLiteral("15"));
        EXPECT_EQ(servingSide(last), Side::first);
        undo.undo();
        EXPECT_EQ(state.markers.value(), before);
        state.markers = std::vector<Marker>();
        state.initialScore = std::nullopt;
    }
}

TEST_F(PointEditsTest, ATypedScoreIsCarriedOnThroughTheMarkersAfterIt) {
    enter("1212");
    const Marker first = marker(0);
    PointEdits::typeScore(state, marker(1).id, tennisScore(4), &undo);
    PointEdits::carryOn(state, &undo);
    EXPECT_EQ(marker(0), first);
    EXPECT_EQ(marker(1).score, tennisScore(4));
    EXPECT_EQ(games().mid(2).join(u' '), QStringLiteral("4-0 15-0 4-0 15-15"));

    PointEdits::typeScore(state, marker(1).id, tennisScore(5), &undo);
    undo.undo();
    EXPECT_FALSE(PointEdits::carriedOn(state)) << "taken back";
    PointEdits::typeScore(state, marker(3).id, tennisScore(5), &undo);
    EXPECT_FALSE(PointEdits::carriedOn(state)) << "no marker follows";
}

TEST_F(PointEditsTest, ByHandAndUnderUnknownRulesNothingIsCounted) {
    for (const char* word : {"by-hand", "rally"}) {
        state.rules = {std::string(word)};
        EXPECT_FALSE(PointEdits::countedMatch(state));
        EXPECT_EQ(PointEdits::Result::notCounted, PointEdits::addPoint(state, 1, Side::first, &undo));
    }
    state.addMarker(markerAt(1), &undo);
    state.addMarker(markerAt(2), &undo);
    const Marker second = marker(1);
    PointEdits::removeMarker(state, marker(0).id, &undo);
    EXPECT_EQ(state.markers.value(), std::vector{second});
}

}
}
