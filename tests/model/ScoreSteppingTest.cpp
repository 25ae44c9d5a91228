#include "model/ScoreStepping.h"

#include <gtest/gtest.h>
#include <limits>

namespace pointloom {

TEST(ScoreSteppingTest, TennisWalksWhatItsValuesReadAndStaysAtTheEnds) {
    SportScoreState score = ScoreState{{{6, 4, {}}, {5, 4, {}}}, {}, 2};
    for (const auto expected : {GamePoint::fifteen, GamePoint::thirty, GamePoint::forty, GamePoint::advantage,
                                GamePoint::advantage}) {
        score = steppedScore(score, 1, StepDirection::next);
        EXPECT_EQ(score,
                  SportScoreState(ScoreState{{{6, 4, {}}, {5, 4, {}}}, {expected, GamePoint::zero}, 2}));
    }
    score = steppedScore(score, 1, StepDirection::previous);
    score = steppedScore(score, 2, StepDirection::previous);
    EXPECT_EQ(std::get<ScoreState>(score).currentGame, (GameScore{GamePoint::deuce, GamePoint::zero}));

    const SportScoreState deuce = ScoreState{{}, {GamePoint::deuce, GamePoint::deuce}, 1};
    EXPECT_EQ(std::get<ScoreState>(steppedScore(deuce, 2, StepDirection::next)).currentGame.team2,
              GamePoint::advantage);
    EXPECT_EQ(std::get<ScoreState>(steppedScore(deuce, 2, StepDirection::previous)).currentGame.team2,
              GamePoint::thirty);
}

TEST(ScoreSteppingTest, PointsCountFromZeroWithoutEnd) {
    SportScoreState score = PointScoreState{{{25, 20, {}}}, {24, 0}, 1};
    score = steppedScore(score, 1, StepDirection::next);
    score = steppedScore(score, 2, StepDirection::previous);
    EXPECT_EQ(score, SportScoreState(PointScoreState{{{25, 20, {}}}, {25, 0}, 1}));

    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(steppedScore(PointScoreState{{}, {largest, 0}, 1}, 1, StepDirection::next),
              SportScoreState(PointScoreState{{}, {largest, 0}, 1}));
}

TEST(ScoreSteppingTest, SwappingTheServeTwiceChangesNothing) {
    const SportScoreState score = PointScoreState{{}, {3, 2}, 2};
    EXPECT_EQ(servingTeamOf(withServeSwapped(score)), 1);
    EXPECT_EQ(withServeSwapped(withServeSwapped(score)), score);
}

}
