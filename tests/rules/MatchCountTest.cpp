#include "rules/MatchCount.h"
#include "rules/CountLabel.h"

#include <gtest/gtest.h>
#include <random>

namespace pointloom {
namespace {

using Points = std::vector<Side>;

MatchConfig configOf(SportID sport, std::int64_t sets, MatchFormat format = MatchFormat::singles) {
    MatchConfig config;
    config.sport = sport;
    config.format = format;
    config.numberOfSets = sets;
    return config;
}

MatchRules rulesWith(SportID sport, std::int64_t sets, const std::vector<std::string>& words = {}) {
    return *rulesOfMatch(configOf(sport, sets), words);
}

/// Markers a second apart, one for each point.
CountedMatch matchOf(const MatchRules& rules, const Points& points) {
    CountedMatch match{rules, startOfMatch(rules), {}};
    CountedScore score = match.start;
    for (const Side winner : points) {
        score = countPoint(rules, score, winner).after;
        match.markers.push_back(
            {QUuid::createUuid(), static_cast<double>(match.markers.size()), score.score, score.label});
    }
    return match;
}

std::vector<CountedScore> scoresOf(const std::vector<Marker>& markers, std::size_t count) {
    std::vector<CountedScore> scores;
    for (const Marker& marker : std::span(markers).first(count))
        scores.push_back({marker.score, marker.label});
    return scores;
}

Points pointsOf(std::string_view digits) {
    Points points;
    for (const char digit : digits)
        points.push_back(digit == '1' ? Side::first : Side::second);
    return points;
}

class RandomMatches {
public:
    std::size_t below(std::size_t bound) { return m_random() % bound; }
    Side side() { return below(2) == 0 ? Side::first : Side::second; }

    Points wholeMatch(const MatchRules& rules) {
        Points points;
        CountedScore score = startOfMatch(rules);
        while (!isMatchOver(rules, score.score)) {
            points.push_back(side());
            score = countPoint(rules, score, points.back()).after;
        }
        return points;
    }

private:
    std::mt19937_64 m_random{17};
};

TEST(MatchCount, CorrectingAPointEqualsCountingTheChangedListAnew) {
    RandomMatches random;
    for (const SportID sport : allCases<SportID>()) {
        std::vector<std::vector<std::string>> choices{{}};
        for (const auto& [choice, word, meaning] : formatWords(sport))
            choices.push_back({std::string(word)});
        for (const auto& words : choices) {
            const MatchRules rules = rulesWith(sport, 3, words);
            for (int round = 0; round < 3; ++round) {
                Points points = random.wholeMatch(rules);
                const CountedMatch match = matchOf(rules, points);
                const std::size_t place = random.below(points.size());
                const auto at = static_cast<std::ptrdiff_t>(place);
                std::vector<Marker> markers = match.markers;
                std::optional<Side> winner;
                if (round % 3 == 0) {
                    points.erase(points.begin() + at);
                    markers.erase(markers.begin() + at);
                } else if (round % 3 == 1) {
                    winner = random.side();
                    points.insert(points.begin() + at, *winner);
                    markers.insert(
                        markers.begin() + at,
                        {QUuid::createUuid(), static_cast<double>(place) - 0.5, match.start.score, {}});
                } else {
                    winner = points[place] = otherSide(points[place]);
                }
                const Recount recount = recounted(match, {rules, match.start, markers}, place, winner);

                const CountedMatch anew = matchOf(rules, points);
                std::size_t count = 0; // of points up to the end of the match
                while (count < points.size() && !isMatchOver(rules, scoreBefore(anew, count).score))
                    ++count;
                ASSERT_EQ(scoresOf(recount.markers, count), scoresOf(anew.markers, count))
                    << rawValue(sport) << ' ' << testing::PrintToString(words) << " at " << place;
                for (std::size_t i = count; i < markers.size(); ++i)
                    ASSERT_EQ(recount.markers[i], markers[i]) << "after the end nothing is touched";
                const bool isTold =
                    count < markers.size() && markers[count].score != anew.markers[count - 1].score;
                EXPECT_EQ(recount.untouchedFrom, isTold ? std::optional(count) : std::nullopt);
            }
        }
    }
}

TEST(MatchCount, AScoreEnteredByHandStopsTheRecount) {
    CountedMatch match = matchOf(rulesWith(SportID::tennis, 3), pointsOf("1122"
                                                                         "11"
                                                                         "2222"));
    match.markers[4].score = ScoreState{{{3, 3, {}}, {}, {}}, {GamePoint::thirty, GamePoint::zero}, 2};
    const auto steps = stepsOf(match);
    EXPECT_EQ(steps[3], (CountStep{CountStep::Kind::point, Side::second, Over::nothing}));
    EXPECT_EQ(steps[4].kind, CountStep::Kind::entered);

    const Recount recount = recounted(match, match, 1, Side::second);
    EXPECT_EQ(gameTexts(recount.markers[3].score).second, QStringLiteral("40"));
    ASSERT_EQ(recount.untouchedFrom, 4U);
    for (std::size_t i = 4; i < match.markers.size(); ++i)
        EXPECT_EQ(recount.markers[i], match.markers[i]);

    CountedMatch corrected{match.rules, match.start, recount.markers};
    EXPECT_EQ(recounted(corrected, corrected, 1, Side::first).markers, match.markers) << "given back";
}

TEST(MatchCount, MarkersThatRepeatAScoreGoAlong) {
    CountedMatch match = matchOf(rulesWith(SportID::volleyball, 3), pointsOf("112"));
    Marker timeOut = match.markers[1];
    timeOut.id = QUuid::createUuid();
    timeOut.label = QStringLiteral("Time-out");
    match.markers.insert(match.markers.begin() + 2, timeOut);
    EXPECT_EQ(stepsOf(match)[2].kind, CountStep::Kind::repeat);

    const Recount recount = recounted(match, match, 0, Side::second);
    EXPECT_EQ(gameTexts(recount.markers[2].score), std::pair(QStringLiteral("1"), QStringLiteral("1")));
    EXPECT_EQ(recount.markers[2].label, QStringLiteral("Time-out"));
    EXPECT_EQ(gameTexts(recount.markers[3].score), std::pair(QStringLiteral("1"), QStringLiteral("2")));
    EXPECT_EQ(recount.untouchedFrom, std::nullopt);
}

TEST(MatchCount, OnlyThePhraseOfALabelIsRecounted) {
    CountedMatch match = matchOf(rulesWith(SportID::pickleball, 3, {"doubles"}), pointsOf("12121"));
    EXPECT_EQ(match.markers[2].label, QStringLiteral("Server 2"));
    match.markers[2].label = QStringLiteral("Ace, Server 2, in the rain");
    const Recount recount = recounted(match, match, 2, Side::second);
    EXPECT_EQ(recount.markers[2].label, QStringLiteral("Ace, in the rain"));
    const CountedMatch changed{match.rules, match.start, recount.markers};
    EXPECT_EQ(recounted(changed, changed, 2, Side::first).markers[2].label,
              QStringLiteral("Ace, in the rain, Server 2"));
}

TEST(MatchCount, TheFirstServerIsReadFromTheStart) {
    const SportScoreState secondServes = PointScoreState{{{}, {}, {}}, {}, 2};
    const MatchRules rules = rulesWith(SportID::volleyball, 3);
    const auto serverOfSecondSet = [](const CountedMatch& match) {
        CountedScore score = match.start;
        for (int i = 0; i < 25; ++i)
            score = countPoint(match.rules, score, Side::second).after;
        return servingSide(score.score);
    };
    EXPECT_EQ(serverOfSecondSet(countedMatch(rules, std::nullopt, {})), Side::second);
    EXPECT_EQ(serverOfSecondSet(countedMatch(rules, secondServes, {})), Side::first);
    EXPECT_EQ(
        serverOfSecondSet(countedMatch(rules, std::nullopt, {{QUuid::createUuid(), 0, secondServes, {}}})),
        Side::first);

    const SportScoreState secondSet = PointScoreState{{{25, 20, {}}, {}, {}}, {}, 1};
    EXPECT_EQ(countedMatch(rules, secondSet, {}).rules.firstServer, Side::second);

    const MatchRules doubles = rulesWith(SportID::pickleball, 3, {"doubles"});
    EXPECT_EQ(countedMatch(doubles, secondServes, {}).start.label, QStringLiteral("Server 2"));
    EXPECT_EQ(countedMatch(doubles, PointScoreState{{}, {1, 0}, 2}, {}).start.label, std::nullopt);

    // A tennis match whose first game the second side serves.
    const CountedMatch tennis = countedMatch(
        rulesWith(SportID::tennis, 3), std::nullopt,
        {{QUuid::createUuid(), 0, ScoreState{{{}, {}, {}}, {GamePoint::fifteen, GamePoint::zero}, 2}, {}}});
    EXPECT_EQ(servingSide(tennis.start.score), Side::second);
    EXPECT_EQ(stepsOf(tennis).front().winner, Side::first);
}

TEST(MatchCount, ASingleSetIsNoDecidingOneAndPairsPlayDoubles) {
    EXPECT_FALSE(isMatchOver(rulesWith(SportID::tennis, 1, {"deciding=match-tiebreak-10"}),
                             ScoreState{{{1, 0, {}}}, {}, 1}));
    EXPECT_TRUE(isMatchOver(rulesWith(SportID::tennis, 3, {"deciding=match-tiebreak-10"}),
                            ScoreState{{{6, 0, {}}, {0, 6, {}}, {1, 0, {}}}, {}, 1}));
    EXPECT_TRUE(
        rulesOfMatch(configOf(SportID::pickleball, 3, MatchFormat::doubles), {})->format.hasTwoServers);
    EXPECT_FALSE(rulesWith(SportID::pickleball, 3).format.hasTwoServers);

    const std::vector<std::string> handed{std::string(byHand)};
    EXPECT_EQ(rulesOfMatch(configOf(SportID::tennis, 3), handed), std::nullopt);
    const std::vector<std::string> foreign{"beach"};
    EXPECT_THROW(rulesOfMatch(configOf(SportID::tennis, 3), foreign), FormatError);
}

}
}
