#include "JsonSupport.h"
#include "model/Marker.h"

namespace pointloom {
namespace {

SportScoreState tennisScore() {
    return ScoreState{{{6, 3, {}}, {6, 7, 4}}, {GamePoint::thirty, GamePoint::forty}, 2};
}

TEST(SetScore, TieBreakPointsStandWithTheLoser) {
    const auto cells = [](const SetScore& set) {
        return set.display(Side::first) + u' ' + set.display(Side::second);
    };
    EXPECT_EQ(cells({7, 6, 4}), QStringLiteral("7 6(4)"));
    EXPECT_EQ(cells({6, 7, 4}), QStringLiteral("6(4) 7"));
    EXPECT_EQ(cells({6, 6, 3}), QStringLiteral("6(3) 6")) << "a level set counts as team 2's";
    EXPECT_EQ(cells({0, 0, {}}), QStringLiteral("0 0"));
    EXPECT_EQ(cells({-2, std::numeric_limits<std::int64_t>::max(), {}}),
              QStringLiteral("-2 9223372036854775807"));
}

TEST(GameScore, DeuceShowsAsFortyAll) {
    ScoreState state{{}, {GamePoint::deuce, GamePoint::deuce}, 1};
    EXPECT_EQ(gameTexts(state), std::pair(QStringLiteral("40"), QStringLiteral("40")));
    state.currentGame = {GamePoint::advantage, GamePoint::forty};
    EXPECT_EQ(gameTexts(state), std::pair(QStringLiteral("Ad"), QStringLiteral("40")));
    EXPECT_EQ(gameTexts(PointScoreState{{}, {21, -1}, 1}),
              std::pair(QStringLiteral("21"), QStringLiteral("-1")));
}

TEST(SportScoreState, IsWrittenWithItsTypeFirst) {
    EXPECT_EQ(
        compactText(tennisScore()),
        R"({"type":"tennis","score":{"sets":[{"team1":6,"team2":3},{"team1":6,"team2":7,"tiebreak":4}],)"
        R"("currentGame":{"team1":"thirty","team2":"forty"},"servingTeam":2}})");
    EXPECT_EQ(compactText(SportScoreState(PointScoreState{{}, {3, 4}, 1})),
              R"({"type":"points","score":{"sets":[],"currentGame":{"team1":3,"team2":4},"servingTeam":1}})");
}

TEST(SportScoreState, ReadsBackInAnyKeyOrder) {
    EXPECT_EQ(decodeText<SportScoreState>(compactText(tennisScore()).c_str()), tennisScore());
    EXPECT_EQ(
        decodeText<SportScoreState>(
            R"({"score":{"servingTeam":1,"currentGame":{"team2":4,"team1":3},"sets":[]},"type":"points"})"),
        SportScoreState(PointScoreState{{}, {3, 4}, 1}));
    EXPECT_NE(SportScoreState(ScoreState{}), SportScoreState(PointScoreState{}));
}

TEST(SportScoreState, TheTypeDecidesWhatIsReadBeneath) {
    EXPECT_EQ(
        decodingFault<SportScoreState>(
            R"({"type":"tennis","score":{"sets":[],"currentGame":{"team1":3,"team2":4},"servingTeam":1}})"),
        "score.currentGame.team1: expected a text");
    EXPECT_EQ(decodingFault<SportScoreState>(R"({"type":"golf"})"), R"(type: unknown value "golf")");
    EXPECT_EQ(decodingFault<SportScoreState>(R"({"score":{}})"), "type: missing");
    EXPECT_EQ(decodingFault<SportScoreState>(R"({"type":"points"})"), "score: missing");
}

TEST(Marker, RoundTripsWithAndWithoutLabel) {
    Marker marker{QUuid::createUuid(), 12.25, tennisScore(), {}};
    EXPECT_EQ(compactText(marker).find("label"), std::string::npos);
    EXPECT_EQ(decodeText<Marker>(compactText(marker).c_str()), marker);
    marker.label = QStringLiteral("Tie-break \u00e9\U0001F3BE\"\n");
    EXPECT_EQ(decodeText<Marker>(compactText(marker).c_str()), marker);
}

TEST(Marker, FaultsInAListNameTheElement) {
    const std::string good = compactText(Marker{QUuid::createUuid(), 0, tennisScore(), {}});
    const auto faultAfter = [&](const std::string& last) {
        return decodingFault<std::vector<Marker>>(('[' + good + ',' + last + ']').c_str());
    };
    const std::string id = R"({"id":"11111111-2222-3333-4444-555555555555")";
    EXPECT_EQ(faultAfter(id + R"(,"startTime":"5"})"), "[1].startTime: expected a number");
    EXPECT_EQ(faultAfter(id + R"(,"startTime":5,"score":{"type":"golf","score":{}}})"),
              R"([1].score.type: unknown value "golf")");
    EXPECT_EQ(faultAfter(id + R"(,"startTime":5,"score":{"type":"points","score":{"sets":[{"team1":1}]}}})"),
              "[1].score.score.sets[0].team2: missing");
    EXPECT_EQ(faultAfter("null"), "[1]: expected an object");
}

}

TEST(SteppedScore, TennisWalksWhatItsValuesReadAndStaysAtTheEnds) {
    SportScoreState score = ScoreState{{{6, 4, {}}, {5, 4, {}}}, {}, 2};
    for (const auto expected : {GamePoint::fifteen, GamePoint::thirty, GamePoint::forty, GamePoint::advantage,
                                GamePoint::advantage}) {
        score = steppedScore(score, Side::first, StepDirection::next);
        EXPECT_EQ(score,
                  SportScoreState(ScoreState{{{6, 4, {}}, {5, 4, {}}}, {expected, GamePoint::zero}, 2}));
    }
    score = steppedScore(score, Side::first, StepDirection::previous);
    score = steppedScore(score, Side::second, StepDirection::previous);
    EXPECT_EQ(std::get<ScoreState>(score).currentGame, (GameScore{GamePoint::deuce, GamePoint::zero}));

    const SportScoreState deuce = ScoreState{{}, {GamePoint::deuce, GamePoint::deuce}, 1};
    EXPECT_EQ(std::get<ScoreState>(steppedScore(deuce, Side::second, StepDirection::next)).currentGame.team2,
              GamePoint::advantage);
    EXPECT_EQ(
        std::get<ScoreState>(steppedScore(deuce, Side::second, StepDirection::previous)).currentGame.team2,
        GamePoint::thirty);
}

TEST(SteppedScore, PointsCountFromZeroWithoutEnd) {
    SportScoreState score = PointScoreState{{{25, 20, {}}}, {24, 0}, 1};
    score = steppedScore(score, Side::first, StepDirection::next);
    score = steppedScore(score, Side::second, StepDirection::previous);
    EXPECT_EQ(score, SportScoreState(PointScoreState{{{25, 20, {}}}, {25, 0}, 1}));
    score = steppedScore(score, Side::first, StepDirection::previous);
    EXPECT_EQ(score, SportScoreState(PointScoreState{{{25, 20, {}}}, {24, 0}, 1}));

    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(steppedScore(PointScoreState{{}, {largest, 0}, 1}, Side::first, StepDirection::next),
              SportScoreState(PointScoreState{{}, {largest, 0}, 1}));
}

TEST(SteppedScore, SwappingTheServeTwiceChangesNothing) {
    const SportScoreState score = PointScoreState{{}, {3, 2}, 2};
    EXPECT_EQ(servingSide(withServeSwapped(score)), Side::first);
    EXPECT_EQ(withServeSwapped(withServeSwapped(score)), score);
}

TEST(SportScoreState, AnotherNumberOfSetsKeepsThoseThatItHas) {
    const SportScoreState two = tennisScore();
    const SportScoreState four =
        ScoreState{{{6, 3, {}}, {6, 7, 4}, {}, {}}, {GamePoint::thirty, GamePoint::forty}, 2};
    EXPECT_EQ(withNumberOfSets(two, 4), four);
    EXPECT_EQ(withNumberOfSets(four, 2), two);
    EXPECT_FALSE(hasScoreAfterSet(four, 2));
    EXPECT_TRUE(hasScoreAfterSet(two, 1));
    EXPECT_FALSE(hasScoreAfterSet(two, 9));
    EXPECT_TRUE(hasScoreAfterSet(PointScoreState{{{}, {0, 0, 1}}, {}, 1}, 1)) << "a tie-break alone";
}

}
