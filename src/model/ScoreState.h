// Snapshots of a whole match score. They apply no rules of any sport: every value is entered by the user and
// stored as given.
#pragma once

#include "json/JsonFields.h"

#include <array>
#include <cstdint>
#include <optional>
#include <QString>
#include <tuple>
#include <variant>
#include <vector>

namespace pointloom {

/// One of the two sides of a match, a single player or a team: `team1` or `team2` of a record.
enum class Side { first, second };

inline constexpr std::array bothSides{Side::first, Side::second};

/// The side as files and options count it, 1 or 2.
constexpr std::int64_t teamNumber(Side side) {
    return side == Side::first ? 1 : 2;
}

constexpr Side otherSide(Side side) {
    return side == Side::first ? Side::second : Side::first;
}

/// `team1` or `team2` of a record.
template <class Record>
constexpr auto& ofSide(Record& record, Side side) {
    return side == Side::first ? record.team1 : record.team2;
}

/// One side's score in the game in progress, tennis and padel.
POINTLOOM_NAMED_ENUM(GamePoint, zero, fifteen, thirty, forty, deuce, advantage);

/// "0", "15", "30", "40", "40" at deuce, "Ad".
QString displayString(GamePoint point);

/// The game in progress.
template <class Points>
struct GameOf {
    Points team1{};
    Points team2{};

    bool operator==(const GameOf&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("team1", &GameOf::team1), json::field("team2", &GameOf::team2)};
    }
};

using GameScore = GameOf<GamePoint>;         // tennis and padel
using PointGameScore = GameOf<std::int64_t>; // all other sports

/// Games (in the point sports: points) of one set.
struct SetScore {
    std::int64_t team1 = 0;
    std::int64_t team2 = 0;
    std::optional<std::int64_t> tiebreak; // tie-break points of the side that lost the set

    /// The side's games; the loser's tie-break points follow in brackets.
    QString display(Side side) const;

    bool operator==(const SetScore&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("team1", &SetScore::team1), json::field("team2", &SetScore::team2),
                          json::field("tiebreak", &SetScore::tiebreak)};
    }
};

template <class Game>
struct ScoreOf {
    std::vector<SetScore> sets; // one for each set of the match, unplayed ones at 0 to 0
    Game currentGame;
    std::int64_t servingTeam = 1; // 1 or 2

    bool operator==(const ScoreOf&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("sets", &ScoreOf::sets),
                          json::field("currentGame", &ScoreOf::currentGame),
                          json::field("servingTeam", &ScoreOf::servingTeam)};
    }
};

using ScoreState = ScoreOf<GameScore>;           // tennis and padel
using PointScoreState = ScoreOf<PointGameScore>; // all other sports

/// A score of either family. In JSON an object of "type" ("tennis" or "points") and "score".
using SportScoreState = std::variant<ScoreState, PointScoreState>;

const std::vector<SetScore>& setsOf(const SportScoreState& score);

/// The second side when team 2 serves, the first for any other number.
Side servingSide(const SportScoreState& score);

/// False for both sides when the serving team is neither 1 nor 2.
bool isServing(const SportScoreState& score, Side side);

/// The game in progress as a scoreboard shows it, first side first.
std::pair<QString, QString> gameTexts(const SportScoreState& score);

enum class StepDirection { next, previous };

/// The score with the game value of `side` moved along its list to the next one that reads differently: 0,
/// 15, 30, 40 (deuce reads the same), advantage in the tennis family, whole numbers from 0 in the point
/// family. Stays at the ends of the list. Games and sets keep their values.
SportScoreState steppedScore(SportScoreState score, Side side, StepDirection direction);

/// The score with that many sets (0..99): empty ones are added at the end, or sets removed there.
SportScoreState withNumberOfSets(SportScoreState score, std::int64_t count);

/// Whether anything is entered in the sets after the first `count`.
bool hasScoreAfterSet(const SportScoreState& score, std::int64_t count);

/// The score with the other side serving.
SportScoreState withServeSwapped(SportScoreState score);

template <>
struct json::Codec<SportScoreState> {
    static OrderedValue encode(const SportScoreState& score);
    static SportScoreState decode(const Value& value, const Path& path);
};

template <>
struct json::Writer<SportScoreState> {
    static void append(QByteArray& text, const SportScoreState& score);
};

}
