#include "rules/Counting.h"

#include "rules/CountLabel.h"

#include <algorithm>

namespace pointloom {

namespace {

/// A score with its label, taken apart.
struct Position {
    std::vector<SetScore> sets; // at least one for each set of the match
    std::size_t set = 0;        // in play; the number of played sets when the match is over
    PointGameScore points{};    // of the game or tie-break in play
    Side server = Side::first;
    bool isSecondServer = false;
    bool isOver = false;

    bool operator==(const Position&) const = default;
};

std::size_t numberOfSets(const MatchRules& rules) {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(rules.numberOfSets, 0, largestNumberOfSets));
}

const SetFormat& formatOfSet(const MatchRules& rules, std::size_t set) {
    return set + 1 < numberOfSets(rules) ? rules.format.set : rules.format.lastSet;
}

bool isWon(const Race& race, std::int64_t own, std::int64_t other) {
    return own > other && ((own >= race.target && own - other >= race.margin) || own >= race.cap);
}

bool isPlayed(const SetScore& set) {
    return set.team1 != 0 || set.team2 != 0;
}

bool isSetOver(const MatchRules& rules, const Position& position, std::size_t set) {
    const SetScore& score = position.sets[set];
    if (!rules.format.hasGames)
        return isPlayed(score); // the points of a set in play are in the game
    const SetFormat& format = formatOfSet(rules, set);
    const auto [fewer, more] = std::minmax(score.team1, score.team2);
    return isWon(format.games, more, fewer) || (fewer == format.tieBreakAt && more == fewer + 1);
}

bool isTieBreak(const MatchRules& rules, const Position& position) {
    if (position.isOver || !rules.format.hasGames)
        return false;
    const SetScore& games = position.sets[position.set];
    return games.team1 == games.team2 && games.team1 == formatOfSet(rules, position.set).tieBreakAt;
}

// After the last set that has a score, unless that one is still in play. A set that ended otherwise than the
// rules know, as on time, is over once a later one has a score.
std::size_t setInPlay(const MatchRules& rules, const Position& position) {
    const auto played = std::find_if(position.sets.rbegin(), position.sets.rend(), isPlayed);
    if (played == position.sets.rend())
        return 0;
    const auto last = static_cast<std::size_t>(position.sets.rend() - played) - 1;
    return isSetOver(rules, position, last) ? last + 1 : last;
}

bool isMatchOver(const MatchRules& rules, const Position& position) {
    const std::span played = std::span(position.sets).first(position.set);
    const auto isWonBy = [&](Side side) {
        const auto wins = std::ranges::count_if(
            played, [&](const SetScore& set) { return ofSide(set, side) > ofSide(set, otherSide(side)); });
        return static_cast<std::size_t>(wins) * 2 > numberOfSets(rules);
    };
    return position.set >= numberOfSets(rules) || std::ranges::any_of(bothSides, isWonBy);
}

std::int64_t asNumber(GamePoint point) {
    return point == GamePoint::advantage ? 4 : std::min<std::int64_t>(static_cast<int>(point), 3);
}

GamePoint asGamePoint(std::int64_t own, std::int64_t other) {
    if (own >= 3 && own == other)
        return GamePoint::deuce;
    if (own > 3 && own > other)
        return GamePoint::advantage;
    return static_cast<GamePoint>(std::min<std::int64_t>(own, 3));
}

// Every deuce is the first one again.
void returnToDeuce(PointGameScore& points) {
    const std::int64_t surplus = std::max<std::int64_t>(std::min(points.team1, points.team2) - 3, 0);
    points.team1 -= surplus;
    points.team2 -= surplus;
}

std::optional<QString> labelOf(const MatchRules& rules, const Position& position) {
    if (isTieBreak(rules, position))
        return tieBreakPhrase(position.points);
    return position.isSecondServer ? std::optional(secondServerPhrase()) : std::nullopt;
}

CountedScore scoreAt(const MatchRules& rules, const Position& position) {
    const auto [points1, points2] = position.points;
    const std::int64_t server = teamNumber(position.server);
    if (!rules.format.hasGames)
        return {PointScoreState{position.sets, position.points, server}, labelOf(rules, position)};
    GameScore game;
    if (!isTieBreak(rules, position))
        game = {asGamePoint(points1, points2), asGamePoint(points2, points1)};
    return {ScoreState{position.sets, game, server}, labelOf(rules, position)};
}

bool isCountable(const auto& score) {
    const auto isInRange = [](std::int64_t number) { return number >= 0 && number <= largestCount; };
    return isInRange(score.team1) && isInRange(score.team2);
}

/// Empty where counting cannot go on.
std::optional<Position> positionAt(const MatchRules& rules, const CountedScore& counted) {
    const auto& [score, label] = counted;
    const auto* tennis = std::get_if<ScoreState>(&score);
    Position position{.sets = setsOf(score), .server = servingSide(score)};
    if (rules.format.hasGames != (tennis != nullptr) || !isServing(score, position.server) ||
        !std::ranges::all_of(position.sets, [](const SetScore& set) { return isCountable(set); }))
        return std::nullopt;
    position.sets.resize(std::max(position.sets.size(), numberOfSets(rules)));
    position.set = setInPlay(rules, position);
    position.isOver = isMatchOver(rules, position);
    if (tennis) {
        position.points = {asNumber(tennis->currentGame.team1), asNumber(tennis->currentGame.team2)};
        returnToDeuce(position.points);
    } else {
        position.points = std::get<PointScoreState>(score).currentGame;
    }
    if (isTieBreak(rules, position)) {
        if (position.points != PointGameScore{})
            return std::nullopt;
        position.points = tieBreakPoints(label.value_or(QString())).value_or(PointGameScore{});
    }
    position.isSecondServer = rules.format.hasTwoServers && label && namesSecondServer(*label);
    return isCountable(position.points) ? std::optional(position) : std::nullopt;
}

/// The turn of service to which the point after a total of `points` belongs; even turns are of the side that
/// began.
std::int64_t turnAt(const Turns& turns, std::int64_t points) {
    const std::int64_t early = std::min(points, turns.lateFrom);
    const std::int64_t turn = early < turns.first ? 0 : 1 + (early - turns.first) / turns.each;
    return turn + (points - early) / turns.late;
}

void passServe(const Format& format, Position& position) {
    if (format.hasTwoServers && !position.isSecondServer) {
        position.isSecondServer = true;
        return;
    }
    position.server = otherSide(position.server);
    position.isSecondServer = false;
}

void startSet(const MatchRules& rules, Position& position) {
    if (rules.format.alternatesSets)
        position.server = position.set % 2 == 0 ? rules.firstServer : otherSide(rules.firstServer);
    position.isSecondServer = rules.format.hasTwoServers;
}

/// Ends the game in play, won by `winner`, and what ends with it. `opener` served its first point.
Over endGame(const MatchRules& rules, Position& position, Side winner, Side opener) {
    SetScore& set = position.sets[position.set];
    if (!rules.format.hasGames) {
        set = {position.points.team1, position.points.team2, {}};
    } else {
        if (isTieBreak(rules, position))
            set.tiebreak = ofSide(position.points, otherSide(winner));
        ++ofSide(set, winner);
    }
    position.points = {};
    position.isSecondServer = false;
    const bool endsSet = isSetOver(rules, position, position.set);
    if (endsSet)
        ++position.set;
    position.isOver = isMatchOver(rules, position);
    if (position.isOver)
        return Over::match;
    if (rules.format.serve == Serve::inTurns)
        position.server = otherSide(opener);
    if (endsSet)
        startSet(rules, position);
    return endsSet ? Over::set : Over::game;
}

/// Counts a point of a match that is not over.
Over count(const MatchRules& rules, Position& position, Side winner) {
    const Format& format = rules.format;
    const SetFormat& set = formatOfSet(rules, position.set);
    const GameFormat& game = isTieBreak(rules, position) ? set.tieBreak : set.game;
    const auto& [points, turns] = game;
    std::int64_t& own = ofSide(position.points, winner);
    const std::int64_t other = ofSide(position.points, otherSide(winner));

    const bool wins = isWon(points, own + 1, other);
    if (winner != position.server && (format.serve == Serve::sideOut || (format.lastPointOnServe && wins))) {
        passServe(format, position);
        return Over::nothing;
    }
    const std::int64_t turn = turnAt(turns, own + other);
    const Side opener = turn % 2 == 0 ? position.server : otherSide(position.server);
    ++own;
    if (format.serve != Serve::inTurns)
        position.server = winner;
    if (wins)
        return endGame(rules, position, winner, opener);
    if (format.serve == Serve::inTurns && turnAt(turns, own + other) != turn)
        position.server = otherSide(position.server);
    if (format.hasGames && !isTieBreak(rules, position))
        returnToDeuce(position.points);
    return Over::nothing;
}

}

CountedScore startOfMatch(const MatchRules& rules) {
    Position position{.sets = std::vector<SetScore>(numberOfSets(rules)), .server = rules.firstServer};
    position.isOver = isMatchOver(rules, position);
    startSet(rules, position);
    return scoreAt(rules, position);
}

CountedPoint countPoint(const MatchRules& rules, const CountedScore& before, Side winner) {
    auto position = positionAt(rules, before);
    if (!position)
        return {before, Over::nothing};
    if (position->isOver)
        return {before, Over::match};
    const Over over = count(rules, *position, winner);
    return {scoreAt(rules, *position), over};
}

std::optional<Side> winnerBetween(const MatchRules& rules, const CountedScore& before,
                                  const CountedScore& after) {
    const auto from = positionAt(rules, before);
    const auto to = positionAt(rules, after);
    if (!from || !to || from->isOver)
        return std::nullopt;
    for (const Side side : bothSides) {
        Position next = *from;
        count(rules, next, side);
        if (next == *to)
            return side;
    }
    return std::nullopt;
}

bool isSameScore(const MatchRules& rules, const CountedScore& left, const CountedScore& right) {
    const auto position = positionAt(rules, left);
    return position && position == positionAt(rules, right);
}

bool isCountable(const MatchRules& rules, const CountedScore& score) {
    return positionAt(rules, score).has_value();
}

CountedScore startFrom(MatchRules& rules, const SportScoreState& score) {
    auto position = positionAt(rules, {score, {}});
    if (!position)
        return {score, {}};
    if (rules.format.alternatesSets)
        rules.firstServer = position->set % 2 == 0 ? position->server : otherSide(position->server);
    position->isSecondServer =
        rules.format.hasTwoServers && !position->isOver && position->points == PointGameScore{};
    return {score, labelOf(rules, *position)};
}

bool isMatchOver(const MatchRules& rules, const SportScoreState& score) {
    const auto position = positionAt(rules, {score, {}});
    return position && position->isOver;
}

}
