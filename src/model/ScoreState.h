// Snapshots of a whole match score. No rule of any sport lives here: every value is entered by a person
// and stored as given.
#pragma once

#include "json/JsonFields.h"

#include <cstdint>
#include <optional>
#include <QString>
#include <tuple>
#include <variant>
#include <vector>

namespace pointloom {

/// One side's score in the game in progress, tennis and padel.
enum class GamePoint { zero, fifteen, thirty, forty, deuce, advantage };

template <>
struct RawValues<GamePoint> {
    static constexpr auto table = std::to_array<std::pair<GamePoint, std::string_view>>({
        {GamePoint::zero, "zero"},
        {GamePoint::fifteen, "fifteen"},
        {GamePoint::thirty, "thirty"},
        {GamePoint::forty, "forty"},
        {GamePoint::deuce, "deuce"},
        {GamePoint::advantage, "advantage"},
    });
};

/// "0", "15", "30", "40", "40" at deuce, "Ad".
QString displayString(GamePoint point);

struct GameScore {
    GamePoint team1 = GamePoint::zero;
    GamePoint team2 = GamePoint::zero;

    bool operator==(const GameScore&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("team1", &GameScore::team1), json::field("team2", &GameScore::team2)};
    }
};

/// Games (in the point sports: points) of one set.
struct SetScore {
    std::int64_t team1 = 0;
    std::int64_t team2 = 0;
    std::optional<std::int64_t> tiebreak; // tie-break points of the team that lost the set

    /// The games of team 1, or of team 2 for any other number; the loser's tie-break points in brackets.
    QString display(int team) const;

    bool operator==(const SetScore&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("team1", &SetScore::team1), json::field("team2", &SetScore::team2),
                          json::field("tiebreak", &SetScore::tiebreak)};
    }
};

/// Tennis and padel.
struct ScoreState {
    std::vector<SetScore> sets; // one for each set of the match, unplayed ones at 0 to 0
    GameScore currentGame;
    std::int64_t servingTeam = 1; // 1 or 2

    bool operator==(const ScoreState&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("sets", &ScoreState::sets),
                          json::field("currentGame", &ScoreState::currentGame),
                          json::field("servingTeam", &ScoreState::servingTeam)};
    }
};

struct PointGameScore {
    std::int64_t team1 = 0;
    std::int64_t team2 = 0;

    bool operator==(const PointGameScore&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("team1", &PointGameScore::team1),
                          json::field("team2", &PointGameScore::team2)};
    }
};

/// All other sports.
struct PointScoreState {
    std::vector<SetScore> sets;
    PointGameScore currentGame;
    std::int64_t servingTeam = 1; // 1 or 2

    bool operator==(const PointScoreState&) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("sets", &PointScoreState::sets),
                          json::field("currentGame", &PointScoreState::currentGame),
                          json::field("servingTeam", &PointScoreState::servingTeam)};
    }
};

/// A score of either family. In JSON an object of "type" ("tennis" or "points") and "score".
using SportScoreState = std::variant<ScoreState, PointScoreState>;

/// The sets of a score of either family.
const std::vector<SetScore>& setsOf(const SportScoreState& score);

/// The serving team of a score of either family, 1 or 2.
std::int64_t servingTeamOf(const SportScoreState& score);

/// The game in progress as a scoreboard shows it, for team 1 and team 2.
std::pair<QString, QString> gameTexts(const SportScoreState& score);

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
