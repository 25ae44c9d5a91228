#include "ui/wizard/WizardFlow.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>

namespace pointloom {

namespace {

class WizardFlowTest : public testing::Test {
protected:
    WizardFlowTest() {
        screen.state.selectedTemplate = TemplateID::wimbledon;
        MatchConfig match = test::tennisMatch();
        match.format = MatchFormat::doubles;
        match.numberOfSets = 1;
        match.team1.player2 = QStringLiteral("Albaret");
        match.team2.player2 = QStringLiteral("Navorro");
        screen.state.matchConfig = match;
    }

    test::ScreenContext screen;
    WizardFlow flow{screen.context};
};

}

TEST_F(WizardFlowTest, AnotherSportTakesOverWhatFitsAndNothingElse) {
    ASSERT_TRUE(flow.pickSport(SportID::padel, nullptr));
    EXPECT_EQ(screen.state.selectedTemplate.value(), TemplateID::wimbledon) << "padel uses tennis templates";
    EXPECT_EQ(screen.state.matchConfig.value()->format, MatchFormat::doubles);
    EXPECT_EQ(screen.state.matchConfig.value()->sport, SportID::padel);

    ASSERT_TRUE(flow.pickSport(SportID::squash, nullptr));
    EXPECT_EQ(screen.state.selectedTemplate.value(), std::nullopt);
    EXPECT_EQ(screen.state.matchConfig.value()->format, MatchFormat::singles);
    EXPECT_EQ(screen.state.matchConfig.value()->numberOfSets, 5);
    EXPECT_EQ(flow.draft().team1.player1, QStringLiteral("Dravnik"));
    EXPECT_GE(screen.store.saves, 2);
    EXPECT_TRUE(screen.dialogs.shown.isEmpty());
}

TEST_F(WizardFlowTest, ABoardGoesAlongWithTheMatchUntilAnotherTemplateIsPicked) {
    const BoardStyle board{.name = QStringLiteral("Club"), .colors = {.main = BoardColor{1, 2, 3}}};
    MatchConfig typed = flow.draft();
    typed.team1.player1 = QStringLiteral("Typed");
    flow.setDraft(typed);
    flow.pickTemplate(TemplateID::dark, board);
    EXPECT_EQ(screen.state.matchConfig.value()->board, board);
    EXPECT_EQ(screen.state.selectedTemplate.value(), TemplateID::dark);
    EXPECT_EQ(flow.draft().team1.player1, QStringLiteral("Typed")) << "not yet confirmed, and kept";
    ASSERT_TRUE(flow.pickSport(SportID::padel, nullptr));
    EXPECT_EQ(screen.state.matchConfig.value()->board, board);
    ASSERT_TRUE(flow.confirmMatch(nullptr));
    EXPECT_EQ(screen.state.matchConfig.value()->board, board);

    ASSERT_TRUE(flow.pickSport(SportID::squash, nullptr));
    EXPECT_EQ(screen.state.matchConfig.value()->board, std::nullopt);
    flow.pickTemplate(TemplateID::squashDark, board);
    flow.pickTemplate(TemplateID::squashNeon);
    EXPECT_EQ(screen.state.matchConfig.value()->board, std::nullopt);
    EXPECT_EQ(flow.draft().board, std::nullopt);
}

TEST_F(WizardFlowTest, RulesAreRememberedForEachSport) {
    const std::vector<std::string> beach{"beach"};
    ASSERT_TRUE(flow.pickSport(SportID::volleyball, nullptr));
    EXPECT_TRUE(flow.rules().empty());
    flow.setRules(beach);
    flow.confirmMatch(nullptr);
    EXPECT_EQ(screen.state.rules.value(), beach);

    ASSERT_TRUE(flow.pickSport(SportID::badminton, nullptr));
    EXPECT_TRUE(screen.state.rules.value().empty());
    flow.setRules({std::string(byHand)});
    flow.confirmMatch(nullptr);
    screen.state.reset();
    screen.state.selectedSport = SportID::volleyball;
    EXPECT_EQ(flow.rules(), beach) << "a new match begins with them";
    screen.defaults.setData("rules.volleyball", "beach,moon");
    WizardFlow later(screen.context);
    EXPECT_TRUE(later.rules().empty()) << "words that this version does not know";
}

TEST_F(WizardFlowTest, ScoresThatTheSportCannotCountAreAskedAbout) {
    screen.state.addMarker(test::markerAt(1), &screen.undo);
    EXPECT_TRUE(flow.pickSport(SportID::padel, nullptr));
    EXPECT_EQ(screen.state.markers.value().size(), 1U);

    screen.dialogs.confirms = false;
    EXPECT_FALSE(flow.pickSport(SportID::volleyball, nullptr));
    EXPECT_EQ(screen.state.selectedSport, SportID::padel);
    EXPECT_EQ(screen.state.markers.value().size(), 1U);

    screen.dialogs.confirms = true;
    EXPECT_TRUE(flow.pickSport(SportID::volleyball, nullptr));
    EXPECT_TRUE(screen.state.markers.value().empty());
    EXPECT_FALSE(screen.undo.canUndo().value()) << "undoing would bring tennis scores back";
}

TEST_F(WizardFlowTest, TheSameSportAgainAsksNothingAndDeletesNothing) {
    screen.state.selectedSport = SportID::volleyball;
    screen.state.addMarker(test::markerAt(1), nullptr); // a tennis score, as an imported table gives
    const int saves = screen.store.saves;
    EXPECT_TRUE(flow.pickSport(SportID::volleyball, nullptr));
    EXPECT_TRUE(screen.dialogs.shown.isEmpty());
    EXPECT_EQ(screen.state.markers.value().size(), 1U);
    EXPECT_EQ(screen.state.selectedTemplate.value(), TemplateID::wimbledon);
    EXPECT_EQ(screen.store.saves, saves + 1);
}

TEST_F(WizardFlowTest, WhatNoFormOffersIsBroughtWithinItsLimits) {
    MatchConfig match = test::tennisMatch();
    match.sport = SportID::volleyball;
    match.format = MatchFormat::doubles;
    for (const auto& [stored, entered] : {std::pair<std::int64_t, std::int64_t>{200, 99}, {-3, 0}}) {
        match.numberOfSets = stored;
        screen.state.matchConfig = match;
        EXPECT_EQ(flow.draft().numberOfSets, entered);
        EXPECT_EQ(flow.draft().format, MatchFormat::singles);
        EXPECT_EQ(screen.state.matchConfig.value()->numberOfSets, stored) << "nothing was confirmed";
    }
}

TEST_F(WizardFlowTest, ConfirmingLeavesOutWhatSinglesDoNotUse) {
    MatchConfig draft = flow.draft();
    draft.format = MatchFormat::singles;
    draft.team1.player1 = QStringLiteral("  Dravnik ");
    draft.team1.flag1 = QStringLiteral("ZQ"); // no country
    draft.team2.flag1 = QStringLiteral("UK");
    flow.setDraft(draft);
    ASSERT_TRUE(flow.confirmMatch(nullptr));
    const MatchConfig match = *screen.state.matchConfig.value();
    EXPECT_EQ(match.team1, (TeamConfig{QStringLiteral("Dravnik"), {}, {}, {}}));
    EXPECT_EQ(match.team2.flag1, QStringLiteral("GB"));
    EXPECT_EQ(flow.draft().team1.player2, QStringLiteral("Albaret")) << "kept for a change of mind";
    EXPECT_FALSE(screen.undo.canUndo().value());
}

TEST_F(WizardFlowTest, AnotherNumberOfSetsKeepsScoresAndAsksBeforeEnteredSetsGo) {
    screen.state.addMarker(test::markerAt(6), nullptr); // 6 games in its only set
    const auto confirm = [this](std::int64_t sets) {
        MatchConfig draft = flow.draft();
        draft.numberOfSets = sets;
        flow.setDraft(draft);
        return flow.confirmMatch(nullptr);
    };
    const auto sets = [this] { return setsOf(screen.state.markers.value().front().score); };
    ASSERT_TRUE(confirm(5));
    EXPECT_EQ(sets(), (std::vector<SetScore>{{6, 0, {}}, {}, {}, {}, {}}));
    ASSERT_TRUE(confirm(3));
    EXPECT_TRUE(screen.dialogs.shown.isEmpty()) << "the sets that went were empty";

    ScoreState played{{{6, 0, {}}, {4, 6, {}}, {2, 1, {}}}, {}, 1};
    screen.state.updateMarkerScore(QUuid(screen.state.markers.value().front().id), played, nullptr);
    screen.dialogs.confirms = false;
    EXPECT_FALSE(confirm(1));
    EXPECT_TRUE(screen.dialogs.shown.value(1).contains(QStringLiteral("set 2")));
    EXPECT_EQ(sets().size(), 3U);
    EXPECT_EQ(screen.state.matchConfig.value()->numberOfSets, 3);
    screen.dialogs.confirms = true;
    EXPECT_TRUE(confirm(1));
    EXPECT_EQ(sets().size(), 1U);
    screen.undo.undo();
    EXPECT_EQ(screen.state.markers.value().front().score, SportScoreState(played));
    EXPECT_EQ(flow.draft().numberOfSets, 3);
}

TEST_F(WizardFlowTest, ASportWithFewerSetsLosesNone) {
    MatchConfig match = test::tennisMatch();
    match.sport = SportID::volleyball;
    match.numberOfSets = 5;
    screen.state.selectedSport = SportID::volleyball;
    screen.state.matchConfig = match;
    Marker marker = test::markerAt(1);
    marker.score = PointScoreState{{{25, 20, {}}, {}, {}, {3, 2, {}}, {}}, {}, 1};
    screen.state.addMarker(marker, nullptr);
    ASSERT_TRUE(flow.pickSport(SportID::badminton, nullptr)); // of three sets
    EXPECT_EQ(screen.state.matchConfig.value()->numberOfSets, 5);
    EXPECT_EQ(screen.state.markers.value().front().score, marker.score);
    ASSERT_TRUE(flow.pickSport(SportID::tableTennis, nullptr)); // of five or seven
    EXPECT_EQ(screen.state.markers.value().front().score, marker.score);
}

TEST_F(WizardFlowTest, NewSessionBeginsWithAnEmptyMatch) {
    screen.state.matchConfig = std::nullopt; // entered, but not confirmed
    MatchConfig draft = emptyMatch(SportID::tennis);
    draft.team1.player1 = QStringLiteral("Dravnik");
    flow.setDraft(draft);
    screen.state.reset();
    EXPECT_EQ(flow.draft(), emptyMatch(SportID::tennis));
}

TEST_F(WizardFlowTest, ANewMatchHasTheNumberOfSetsOfTheLastOneInItsSport) {
    screen.state.matchConfig = std::nullopt;
    ASSERT_TRUE(flow.pickSport(SportID::volleyball, nullptr));
    EXPECT_EQ(flow.draft().numberOfSets, 5) << "indoors";
    MatchConfig beach = flow.draft();
    beach.team1.player1 = QStringLiteral("Ana");
    beach.team2.player1 = QStringLiteral("Eva");
    beach.numberOfSets = 3;
    flow.setDraft(beach);
    flow.confirmMatch(nullptr);
    screen.state.reset();
    EXPECT_EQ(flow.draft().numberOfSets, 1) << "tennis";
    ASSERT_TRUE(flow.pickSport(SportID::volleyball, nullptr));
    EXPECT_EQ(flow.draft().numberOfSets, 3);
}

TEST_F(WizardFlowTest, StepsAreReachedInOrder) {
    screen.state.matchConfig = std::nullopt;
    EXPECT_TRUE(flow.isReachable(Screen::match));
    EXPECT_FALSE(flow.isReachable(Screen::video));
    screen.state.matchConfig = test::tennisMatch();
    screen.state.videoURL = QUrl::fromLocalFile(QStringLiteral("/final.mp4"));
    EXPECT_TRUE(flow.isReachable(Screen::editor));
    flow.setDraft(emptyMatch(SportID::tennis));
    EXPECT_FALSE(flow.isReachable(Screen::editor)) << "names were deleted";
    screen.state.reset();
    EXPECT_FALSE(flow.isReachable(Screen::scoreboard));
}

}
