#include "rules/Counting.h"

#include <gtest/gtest.h>
#include <random>

namespace pointloom {
namespace {

MatchRules rulesOf(SportID sport, std::int64_t sets, const std::vector<std::string>& words = {},
                   Side firstServer = Side::first) {
    return {formatOf(sport, words), sets, firstServer};
}

/// As a scoreboard shows it, with the server marked: "7-6(4) 2-1 15-40*", and the label.
std::string shown(const CountedScore& counted) {
    QString text;
    for (const SetScore& set : setsOf(counted.score))
        text += set.display(Side::first) + u'-' + set.display(Side::second) + u' ';
    const auto [game1, game2] = gameTexts(counted.score);
    const bool isFirst = servingSide(counted.score) == Side::first;
    text += game1 + QLatin1String(isFirst ? "*-" : "-") + game2 + QLatin1String(isFirst ? "" : "*");
    return (text + (counted.label ? u' ' + *counted.label : QString())).toStdString();
}

/// Counts points, each of which must be found again from the scores around it.
class Match {
public:
    explicit Match(const MatchRules& rules)
        : m_rules(rules)
        , m_latest{startOfMatch(rules), Over::nothing} {}

    Match& point(Side winner) {
        const CountedScore before = m_latest.after;
        m_latest = countPoint(m_rules, before, winner);
        EXPECT_EQ(winnerBetween(m_rules, before, m_latest.after), winner)
            << shown(before) << " to " << shown(score());
        return *this;
    }

    /// One digit a point; spaces only make it readable.
    Match& points(std::string_view digits) {
        for (const char digit : digits) {
            if (digit != ' ')
                point(digit == '1' ? Side::first : Side::second);
        }
        return *this;
    }

    Match& points(int count, char winner) {
        return points(std::string(static_cast<std::size_t>(count), winner));
    }

    /// Games to love, one digit a game.
    Match& games(std::string_view digits) {
        for (const char digit : digits)
            points(4, digit);
        return *this;
    }

    /// Points, or games to love, that the sides win in turn.
    Match& level(int each) {
        for (int i = 0; i < each; ++i)
            points("12");
        return *this;
    }
    Match& levelGames(int each) {
        for (int i = 0; i < each; ++i)
            games("12");
        return *this;
    }

    const CountedScore& score() const { return m_latest.after; }
    std::string text() const { return shown(score()); }
    Side server() const { return servingSide(score().score); }
    Over over() const { return m_latest.over; }

private:
    MatchRules m_rules;
    CountedPoint m_latest;
};

/// Who serves each of `count` points that the sides win in turn, and the one after them.
std::string servers(Match& match, int count) {
    std::string digits;
    for (int i = 0; i <= count; ++i) {
        digits += match.server() == Side::first ? '1' : '2';
        if (i < count)
            match.point(i % 2 == 0 ? Side::first : Side::second);
    }
    return digits;
}

TEST(Counting, ATennisGameGoesThroughDeuce) {
    Match match(rulesOf(SportID::tennis, 3));
    EXPECT_EQ(match.text(), "0-0 0-0 0-0 0*-0");
    EXPECT_EQ(match.points("11 22 1").text(), "0-0 0-0 0-0 40*-30");
    EXPECT_EQ(match.points("2").text(), "0-0 0-0 0-0 40*-40");
    const CountedScore deuce = match.score();
    EXPECT_EQ(match.points("2").text(), "0-0 0-0 0-0 40*-Ad");
    EXPECT_EQ(match.points("1").score(), deuce);
    EXPECT_EQ(match.points("1").text(), "0-0 0-0 0-0 Ad*-40");
    EXPECT_EQ(match.over(), Over::nothing);
    EXPECT_EQ(match.points("1").text(), "1-0 0-0 0-0 0-0*");
    EXPECT_EQ(match.over(), Over::game);

    Match golden(rulesOf(SportID::padel, 1, {"no-ad"}));
    EXPECT_EQ(golden.points("222 111").text(), "0-0 40*-40");
    EXPECT_EQ(golden.points("2").text(), "0-1 0-0*");
}

// Wimbledon 2019, men's final: 7-6(5) 1-6 7-6(4) 4-6 13-12(3).
TEST(Counting, AFinalWithATieBreakAtTwelveAll) {
    Match match(rulesOf(SportID::tennis, 5, {"deciding=tiebreak-at-12"}, Side::second));
    EXPECT_EQ(match.levelGames(6).text(), "6-6 0-0 0-0 0-0 0-0 0-0* Tie-break 0–0");
    EXPECT_EQ(match.points("2222 1111 1 2").text(), "6-6 0-0 0-0 0-0 0-0 0*-0 Tie-break 5–5");
    EXPECT_EQ(match.points("11").text(), "7-6(5) 0-0 0-0 0-0 0-0 0*-0");
    EXPECT_EQ(match.over(), Over::set);
    EXPECT_EQ(match.games("1222222").text(), "7-6(5) 1-6 0-0 0-0 0-0 0-0*");
    EXPECT_EQ(match.levelGames(6).points("1111 2222 111").text(), "7-6(5) 1-6 7-6(4) 0-0 0-0 0*-0");
    EXPECT_EQ(match.levelGames(4).games("22").levelGames(12).text(),
              "7-6(5) 1-6 7-6(4) 4-6 12-12 0*-0 Tie-break 0–0");
    EXPECT_EQ(match.points("111 222 1111").text(), "7-6(5) 1-6 7-6(4) 4-6 13-12(3) 0-0*");
    EXPECT_EQ(match.over(), Over::match);
}

// Wimbledon 2010, first round: 6-4 3-6 6-7(7) 7-6(3) 70-68.
TEST(Counting, AnAdvantageSetHasNoEndBeforeALeadOfTwo) {
    Match match(rulesOf(SportID::tennis, 5, {"deciding=advantage"}));
    match.levelGames(4).games("11").levelGames(3).games("222").levelGames(6).points("111111 222222 1 222");
    EXPECT_EQ(match.text(), "6-4 3-6 6(7)-7 0-0 0-0 0*-0");
    EXPECT_EQ(match.levelGames(6).points("222 1111111").text(), "6-4 3-6 6(7)-7 7-6(3) 0-0 0-0*");
    EXPECT_EQ(match.levelGames(68).text(), "6-4 3-6 6(7)-7 7-6(3) 68-68 0-0*");
    EXPECT_EQ(match.games("1").over(), Over::game);
    EXPECT_EQ(match.games("1").over(), Over::match);
    EXPECT_EQ(match.text(), "6-4 3-6 6(7)-7 7-6(3) 70-68 0*-0");
}

TEST(Counting, AMatchTieBreakIsASetOfOneGame) {
    Match match(rulesOf(SportID::tennis, 3, {"deciding=match-tiebreak-10"}));
    EXPECT_EQ(match.games("111111222222").text(), "6-0 0-6 0-0 0*-0 Tie-break 0–0");
    EXPECT_EQ(match.points(9, '1').points(10, '2').text(), "6-0 0-6 0-0 0*-0 Tie-break 9–10");
    EXPECT_EQ(match.points("2").text(), "6-0 0-6 0(9)-1 0*-0");
    EXPECT_EQ(match.over(), Over::match);

    Match straight(rulesOf(SportID::tennis, 3, {"deciding=match-tiebreak-10"}));
    EXPECT_EQ(straight.games("111111111111").text(), "6-0 6-0 0-0 0-0*");
    EXPECT_EQ(straight.over(), Over::match);
}

TEST(Counting, SetsOfEveryLengthEndWithTheirTieBreak) {
    const auto setAfter = [](const char* word, int level, const char* tieBreak) {
        Match match(rulesOf(SportID::tennis, 1, {word}));
        EXPECT_EQ(match.levelGames(level).over(), Over::game) << word;
        EXPECT_EQ(match.points(tieBreak).over(), Over::match) << word;
        return setsOf(match.score().score).front();
    };
    EXPECT_EQ(setAfter("short-sets", 4, "111 2222222"), (SetScore{4, 5, 3}));
    EXPECT_EQ(setAfter("pro-set-8", 8, "1111111"), (SetScore{9, 8, 0}));
    EXPECT_EQ(setAfter("pro-set-9", 9, "2222222"), (SetScore{9, 10, 0}));
    EXPECT_EQ(Match(rulesOf(SportID::tennis, 1, {"pro-set-9"})).levelGames(7).games("11").over(),
              Over::match);
    EXPECT_EQ(setAfter("fast4", 3, "1111 2222 2"), (SetScore{3, 4, 4}));
    EXPECT_EQ(setAfter("deciding=tiebreak-7", 6, "222222 11111111"), (SetScore{7, 6, 6}));
    EXPECT_EQ(setAfter("deciding=tiebreak-10", 6, "2222222 1111111111"), (SetScore{7, 6, 7}));
    EXPECT_EQ(setAfter("deciding=tiebreak-at-12", 12, "1111111"), (SetScore{13, 12, 0}));
}

TEST(Counting, TieBreakServesAreOneThenTwoEach) {
    Match match(rulesOf(SportID::tennis, 3, {}, Side::second));
    EXPECT_EQ(servers(match.levelGames(6), 14), "211221122112211");
    EXPECT_EQ(match.points("22").server(), Side::first) << "the other side served first";

    Match fast(rulesOf(SportID::tennis, 3, {"fast4"}));
    EXPECT_EQ(servers(fast.levelGames(3), 8), "112211222");
    EXPECT_EQ(fast.points("1").server(), Side::second);
}

TEST(Counting, VolleyballServesAlternateAtTheStartOfSets) {
    Match match(rulesOf(SportID::volleyball, 5, {}, Side::second));
    EXPECT_EQ(match.points("1").text(), "0-0 0-0 0-0 0-0 0-0 1*-0");
    EXPECT_EQ(match.points(25, '2').text(), "1-25 0-0 0-0 0-0 0-0 0*-0");
    EXPECT_EQ(match.points(23, '2').points(25, '1').text(), "1-25 25-23 0-0 0-0 0-0 0-0*");
    EXPECT_EQ(match.points(24, '1').points(26, '2').text(), "1-25 25-23 24-26 0-0 0-0 0*-0");
    EXPECT_EQ(match.points(9, '2').points(25, '1').text(), "1-25 25-23 24-26 25-9 0-0 0-0*");
    EXPECT_EQ(match.points(13, '2').points(15, '1').text(), "1-25 25-23 24-26 25-9 15-13 0*-0");
    EXPECT_EQ(match.over(), Over::match);

    Match beach(rulesOf(SportID::volleyball, 3, {"beach"}));
    EXPECT_EQ(beach.points(21, '1').points(21, '2').text(), "21-0 0-21 0-0 0*-0");
    EXPECT_EQ(beach.points(15, '2').over(), Over::match);
}

TEST(Counting, BadmintonEndsAtThirtyAndTheWinnerServesOn) {
    Match match(rulesOf(SportID::badminton, 3));
    EXPECT_EQ(match.level(29).text(), "0-0 0-0 0-0 29-29*");
    EXPECT_EQ(match.points("1").text(), "30-29 0-0 0-0 0*-0");
    EXPECT_EQ(match.points(20, '2').over(), Over::nothing);
    EXPECT_EQ(match.points("2").text(), "30-29 0-21 0-0 0-0*");

    const auto end = [](const char* word, int level, const char* points) {
        return Match(rulesOf(SportID::badminton, 1, {word})).level(level).points(points).text();
    };
    EXPECT_EQ(end("to-15", 14, "11"), "16-14 0*-0");
    EXPECT_EQ(end("to-15", 20, "2"), "20-21 0-0*");
    EXPECT_EQ(end("to-11", 14, "1"), "15-14 0*-0");
    EXPECT_EQ(end("to-11", 9, "22"), "9-11 0-0*");
}

TEST(Counting, TableTennisServesChangeEveryTwoPoints) {
    Match match(rulesOf(SportID::tableTennis, 5));
    EXPECT_EQ(servers(match, 23), "112211221122112211221212");
    EXPECT_EQ(match.points("1").text(), "13-11 0-0 0-0 0-0 0-0 0-0*");
    EXPECT_EQ(match.points(11, '1').text(), "13-11 11-0 0-0 0-0 0-0 0*-0");
    match.points(11, '2').points(11, '2');
    EXPECT_EQ(match.points(11, '1').text(), "13-11 11-0 0-11 0-11 11-0 0-0*") << "the last game is as long";
}

TEST(Counting, SquashWithHandOutScoresOnServeOnly) {
    Match match(rulesOf(SportID::squash, 5, {"hand-out"}));
    EXPECT_EQ(match.points("2").text(), "0-0 0-0 0-0 0-0 0-0 0-0*");
    EXPECT_EQ(match.points(8, '2').points(9, '1').text(), "0-0 0-0 0-0 0-0 0-0 8*-8");
    EXPECT_EQ(match.points("1 2").text(), "0-0 0-0 0-0 0-0 0-0 9-8*");
    EXPECT_EQ(match.points("22").text(), "9-10 0-0 0-0 0-0 0-0 0-0*");

    Match rally(rulesOf(SportID::squash, 3));
    EXPECT_EQ(rally.points(10, '1').points(9, '2').points("1").text(), "11-9 0-0 0-0 0*-0");
}

// The calls of a doubles match: own points, theirs, number of the server.
TEST(Counting, PickleballDoublesPassTheServeToTheSecondServer) {
    Match match(rulesOf(SportID::pickleball, 3, {"doubles"}));
    const auto call = [&](const char* points) {
        const auto game = std::get<PointScoreState>(match.points(points).score().score).currentGame;
        return std::to_string(ofSide(game, match.server())) + '-' +
               std::to_string(ofSide(game, otherSide(match.server()))) + (match.score().label ? "-2" : "-1");
    };
    EXPECT_EQ(call(""), "0-0-2");
    EXPECT_EQ(call("1"), "1-0-2");
    EXPECT_EQ(call("2"), "0-1-1");
    EXPECT_EQ(call("1"), "0-1-2");
    EXPECT_EQ(call("22"), "2-1-2");
    EXPECT_EQ(call("1"), "1-2-1");
    EXPECT_EQ(call("111111111"), "10-2-1");
    EXPECT_EQ(call("1"), "0-0-2");
    EXPECT_EQ(match.text(), "11-2 0-0 0-0 0-0* Server 2");
    EXPECT_EQ(match.points(11, '2').text(), "11-2 0-11 0-0 0*-0 Server 2");
    EXPECT_EQ(match.points(11, '1').text(), "11-2 0-11 11-0 0*-0");
    EXPECT_EQ(match.over(), Over::match);
}

TEST(Counting, PickleballRalliesScoreForBothSides) {
    Match match(rulesOf(SportID::pickleball, 1, {"rally"}));
    EXPECT_EQ(match.points(10, '1').points("2 1").text(), "11-1 0*-0");

    Match onServe(rulesOf(SportID::pickleball, 1, {"doubles", "rally-win-on-serve", "to-15"}));
    EXPECT_EQ(onServe.points(14, '1').points("2 1").text(), "0-0 14*-1") << "only the serve was won";
    EXPECT_EQ(onServe.points("1").text(), "15-1 0*-0");
}

TEST(Counting, EveryFormatEndsAndStaysAtItsEnd) {
    std::mt19937 random(20);
    for (const SportID sport : allCases<SportID>()) {
        std::vector<std::vector<std::string>> choices{{}};
        for (const auto& [choice, word, meaning] : formatWords(sport)) {
            choices.push_back({std::string(word)});
            if (usesTennisScoring(sport))
                choices.push_back({"no-ad", std::string(word)});
        }
        for (const auto& words : choices) {
            for (const std::int64_t sets : {1, 3, 5}) {
                const MatchRules rules = rulesOf(sport, sets, words, Side::second);
                Match match(rules);
                for (int i = 0; i < 20'000 && match.over() != Over::match; ++i)
                    match.point(random() % 2 == 0 ? Side::first : Side::second);
                ASSERT_EQ(match.over(), Over::match)
                    << rawValue(sport) << ' ' << testing::PrintToString(words);
                EXPECT_TRUE(isMatchOver(rules, match.score().score));
                EXPECT_FALSE(match.score().label);
                const CountedPoint further = countPoint(rules, match.score(), Side::first);
                EXPECT_EQ(further.after, match.score());
                EXPECT_EQ(further.over, Over::match);
                EXPECT_EQ(winnerBetween(rules, match.score(), further.after), std::nullopt);
            }
        }
    }
}

TEST(Counting, LabelsAreReadAmongOtherWords) {
    const MatchRules rules = rulesOf(SportID::tennis, 1);
    const auto tieBreak = [](const char* label, std::int64_t server = 1) {
        return CountedScore{ScoreState{{{6, 6, {}}}, {}, server}, QString::fromUtf8(label)};
    };
    const auto labelAfter = [&](const char* label) {
        return countPoint(rules, tieBreak(label), Side::first).after.label.value_or(QString()).toStdString();
    };
    EXPECT_EQ(labelAfter("Set point, Tie-break 5–6!"), "Tie-break 6–6");
    EXPECT_EQ(labelAfter("Tie-break 10-11"), "Tie-break 11–11") << "with the hyphen of a keyboard";
    EXPECT_EQ(labelAfter("Long rally"), "Tie-break 1–0");
    EXPECT_EQ(winnerBetween(rules, tieBreak(""), tieBreak("Ace. Tie-break 0–1", 2)), Side::second);
    EXPECT_EQ(winnerBetween(rules, tieBreak(""), tieBreak("Ace", 2)), std::nullopt);
}

TEST(Counting, OnlyWhatOnePointExplainsHasAWinner) {
    using enum GamePoint;
    const MatchRules rules = rulesOf(SportID::tennis, 3);
    const auto at = [](std::vector<SetScore> sets, GameScore game, std::int64_t server = 1) {
        return CountedScore{ScoreState{std::move(sets), game, server}, {}};
    };
    EXPECT_EQ(
        winnerBetween(rules, at({{2, 1, {}}}, {forty, thirty}), at({{2, 1, {}}, {}, {}}, {forty, forty})),
        Side::second)
        << "40-40 is deuce, and sets that are not listed are not played";
    EXPECT_EQ(winnerBetween(rules, at({}, {zero, thirty}), at({}, {thirty, thirty})), std::nullopt);
    EXPECT_EQ(winnerBetween(rules, at({}, {zero, thirty}), at({}, {fifteen, thirty}, 2)), std::nullopt);
    EXPECT_EQ(winnerBetween(rules, at({}, {zero, zero}), {PointScoreState{{}, {1, 0}, 1}, {}}), std::nullopt);
    EXPECT_EQ(shown(countPoint(rules, at({{6, 2, {}}, {2, 3, {}}, {1, 0, {}}}, {}), Side::first).after),
              "6-2 2-3 1-0 15*-0")
        << "a set that ended early stays as it is";
}

TEST(Counting, WhatCannotBeCountedStays) {
    const MatchRules tennis = rulesOf(SportID::tennis, 3);
    const MatchRules squash = rulesOf(SportID::squash, 5);
    using Limits = std::numeric_limits<std::int64_t>;
    const std::vector<std::pair<MatchRules, SportScoreState>> scores{
        {tennis, PointScoreState{}},
        {squash, ScoreState{}},
        {tennis, ScoreState{{{-1, 0, {}}}, {}, 1}},
        {tennis, ScoreState{{{Limits::max(), 0, {}}}, {}, 1}},
        {squash, PointScoreState{{}, {0, Limits::max()}, 1}},
        {squash, PointScoreState{{}, {0, Limits::min()}, 1}},
        {tennis, ScoreState{{}, {}, 3}},
        {tennis, ScoreState{{{6, 6, {}}}, {GamePoint::thirty, GamePoint::zero}, 1}},
    };
    for (const auto& [rules, score] : scores) {
        const CountedScore before{score, QStringLiteral("Break")};
        EXPECT_EQ(countPoint(rules, before, Side::first).after, before) << shown(before);
        EXPECT_EQ(countPoint(rules, before, Side::first).over, Over::nothing);
    }
}

}
}
