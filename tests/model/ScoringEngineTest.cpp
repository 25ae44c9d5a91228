#include "model/ScoringEngine.h"

#include <gtest/gtest.h>
#include <limits>

namespace pointloom {
namespace {

Marker markerAt(double time, std::int64_t points) {
    return {QUuid::createUuid(), time, PointScoreState{{}, {points, 0}, 1}, {}};
}

/// The points of team 1 in the score that holds at `time`; -1 when none does.
std::int64_t pointsAt(const std::vector<Marker>& markers, double time) {
    const auto score = ScoringEngine::resolveScoreAtTime(markers, time);
    return score ? std::get<PointScoreState>(*score).currentGame.team1 : -1;
}

TEST(ScoringEngine, AScoreHoldsFromItsMarkerToTheNext) {
    const std::vector markers{markerAt(10, 1), markerAt(20, 2)};
    EXPECT_EQ(pointsAt(markers, 9.99), -1);
    EXPECT_EQ(pointsAt(markers, 10), 1);
    EXPECT_EQ(pointsAt(markers, 15), 1);
    EXPECT_EQ(pointsAt(markers, 20), 2);
    EXPECT_EQ(pointsAt(markers, 1000), 2);
    EXPECT_EQ(pointsAt({}, 1000), -1);
}

TEST(ScoringEngine, OfMarkersAtOneTimeTheFirstInTheListWins) {
    EXPECT_EQ(pointsAt({markerAt(10, 1), markerAt(10, 2)}, 11), 1);
    EXPECT_EQ(pointsAt({markerAt(20, 3), markerAt(10, 1), markerAt(20, 4), markerAt(10, 2)}, 11), 1);
    EXPECT_EQ(pointsAt({markerAt(20, 3), markerAt(10, 1), markerAt(20, 4)}, 25), 3);
}

TEST(ScoringEngine, ARoundingDoesNotMakeAMarkerLateAndATickDoes) {
    EXPECT_EQ(pointsAt({markerAt(3.7, 1)}, 56832 * (1.0 / 15360)), 1); // a hair below 3.7
    EXPECT_EQ(pointsAt({markerAt(10 + 1e-7, 1)}, 10), -1);
    // Markers closer to each other than that are told apart still.
    EXPECT_EQ(pointsAt({markerAt(10, 1), markerAt(10 + 5e-9, 2)}, 10), 2);
    EXPECT_EQ(pointsAt({markerAt(10 + 5e-9, 2), markerAt(10, 1)}, 10), 2);
}

TEST(ScoringEngine, SortingKeepsTheOrderAtOneTime) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector markers{markerAt(nan, 0), markerAt(20, 3), markerAt(10, 1), markerAt(20, 4)};
    EXPECT_EQ(ScoringEngine::sortedByTime(markers)[0], markers[2]);
    EXPECT_EQ(ScoringEngine::sortedByTime(markers)[1], markers[1]);
    EXPECT_EQ(ScoringEngine::sortedByTime(markers)[2], markers[3]);
}

TEST(ScoringEngine, NegativeTimesFindOnlyNegativeMarkers) {
    EXPECT_EQ(pointsAt({markerAt(0, 1)}, -0.5), -1);
    EXPECT_EQ(pointsAt({markerAt(-1, 1)}, -0.5), 1);
    EXPECT_EQ(pointsAt({markerAt(0, 1)}, std::numeric_limits<double>::quiet_NaN()), -1);
}

TEST(ScoringEngine, AMatchStartsWithAllItsSetsUnplayed) {
    MatchConfig config;
    config.sport = SportID::tableTennis;
    config.numberOfSets = 5;
    const auto points = std::get<PointScoreState>(ScoringEngine::getInitialScore(config));
    EXPECT_EQ(points, (PointScoreState{std::vector<SetScore>(5), {0, 0}, 1}));

    config.sport = SportID::padel;
    const auto tennis = std::get<ScoreState>(ScoringEngine::getInitialScore(config));
    EXPECT_EQ(tennis, (ScoreState{std::vector<SetScore>(5), {GamePoint::zero, GamePoint::zero}, 1}));
}

TEST(ScoringEngine, AbsurdSetCountsDoNotExhaustMemory) {
    MatchConfig config;
    config.numberOfSets = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(std::ssize(setsOf(ScoringEngine::getInitialScore(config))), largestNumberOfSets);
    config.numberOfSets = -3;
    EXPECT_TRUE(setsOf(ScoringEngine::getInitialScore(config)).empty());
}

}
}
