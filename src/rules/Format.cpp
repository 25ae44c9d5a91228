#include "rules/Format.h"

#include "json/JsonCoding.h"

#include <algorithm>
#include <optional>

namespace pointloom {

namespace {

struct SportRow {
    SportID sport;
    std::string_view meaning;
    Format format;
};

/// The change that a word makes. Words of the same choice exclude each other; all are applied in the order of
/// the table.
struct Change {
    std::optional<Race> game{};
    std::optional<SetFormat> set{}; // also the last one
    std::optional<Race> lastGame{};
    std::optional<Race> lastGames{};
    std::optional<std::int64_t> lastTieBreakAt{};
    std::optional<GameFormat> lastTieBreak{};
    std::optional<Serve> serve{};
    std::optional<bool> hasTwoServers{};
    std::optional<bool> lastPointOnServe{};
};

struct WordRow {
    SportID sport;
    FormatWord word;
    Change change;
};

constexpr Race noAdvantage{4, 1};
constexpr Turns oneThenTwo{1, 2};
constexpr GameFormat tieBreak7{{7, 2}, oneThenTwo};
constexpr GameFormat tieBreak10{{10, 2}, oneThenTwo};
constexpr std::int64_t never = -1;

constexpr SetFormat setOfGames(Race games, std::int64_t tieBreakAt, GameFormat tieBreak = tieBreak7) {
    return {{{4, 2}, {}}, games, tieBreakAt, tieBreak};
}

constexpr SetFormat setOfPoints(Race points, Turns turns = {}) {
    return {.game = {points, turns}, .tieBreak = {}};
}

// clang-format off
constexpr SportRow sports[] = {
    // ITF Rules of Tennis: 5 (game; the tie-break's first server receives first in the next set), 6 (set), 7 (match),
    // 14 (order of service).
    {SportID::tennis, "sets to 6, tie-break to 7 at 6-6, advantage games",
     {.hasGames = true, .set = setOfGames({6, 2}, 6), .lastSet = setOfGames({6, 2}, 6)}},
    // FIP Rules of Padel, Rule 1: counts and serves as in tennis.
    {SportID::padel, "sets to 6, tie-break to 7 at 6-6, advantage games",
     {.hasGames = true, .set = setOfGames({6, 2}, 6), .lastSet = setOfGames({6, 2}, 6)}},
    // FIVB Official Volleyball Rules: 6.2 (25), 6.3.2 (last set 15), 6.1.3 (serve), 12.1 (first service of a set). That
    // of the last set is tossed for; here it alternates.
    {SportID::volleyball, "sets to 25, the last to 15, lead of 2",
     {.set = setOfPoints({25, 2}), .lastSet = setOfPoints({15, 2}), .serve = Serve::toWinner, .alternatesSets = true}},
    // BWF Laws of Badminton: 7.2, 7.4, 7.5 (game), 7.6 (the winner of a game serves first in the next), 10.3 (serve).
    {SportID::badminton, "games to 21, lead of 2, at most 30",
     {.set = setOfPoints({21, 2, 30}), .lastSet = setOfPoints({21, 2, 30}), .serve = Serve::toWinner}},
    // ITTF Laws of Table Tennis: 2.11.1 (game), 2.13.3 (serve), 2.13.6 (first service of a game).
    {SportID::tableTennis, "games to 11, lead of 2, serve changes every 2 points, from 10-10 on every point",
     {.set = setOfPoints({11, 2}, {2, 2, 20}), .lastSet = setOfPoints({11, 2}, {2, 2, 20})}},
    // WSF Rules of Singles Squash: 2.1 (serve), 2.2 (game).
    {SportID::squash, "games to 11, lead of 2, every rally scores",
     {.set = setOfPoints({11, 2}), .lastSet = setOfPoints({11, 2}), .serve = Serve::toWinner}},
    // USA Pickleball Official Rulebook: Section 4 (serve and side-out), 5.B (first service of a game changes sides),
    // Section 12 (games to 11, 15 or 21).
    {SportID::pickleball, "games to 11, lead of 2, side-out scoring, singles",
     {.set = setOfPoints({11, 2}), .lastSet = setOfPoints({11, 2}), .serve = Serve::sideOut, .alternatesSets = true}},
};

constexpr WordRow words[] = {
    // ITF Rules of Tennis, Appendix VI: short sets.
    {SportID::tennis, {"sets", "short-sets", "sets to 4, tie-break at 4-4"}, {.set = setOfGames({4, 2}, 4)}},
    // Pro sets of national associations and leagues; the ITF has none.
    {SportID::tennis, {"sets", "pro-set-8", "sets to 8, tie-break at 8-8"}, {.set = setOfGames({8, 2}, 8)}},
    {SportID::tennis, {"sets", "pro-set-9", "sets to 9, tie-break at 9-9"}, {.set = setOfGames({9, 2}, 9)}},
    // ITF trial of 2016 and 2017. Service as Tennis Australia has it: two points each; at 4-4 the side that served
    // the last two keeps the serve, where no toss is made.
    {SportID::tennis, {"sets", "fast4", "sets to 4, no-ad, tie-break to 5 at 3-3, deciding point at 4-4"},
     {.game = noAdvantage, .set = setOfGames({4, 2}, 3, {{5, 1}, {2, 2, 6, 3}})}},
    // ITF Rules of Tennis, Appendix VI; padel calls it golden point.
    {SportID::tennis, {"game", "no-ad", "deciding point at deuce (golden point)"}, {.game = noAdvantage}},
    // ITF Rules of Tennis, Rule 6.
    {SportID::tennis, {"deciding", "deciding=tiebreak-7", "last set with a tie-break to 7 (usual)"},
     {.lastTieBreak = tieBreak7}},
    // Grand Slam tournaments from 2022; Australian Open from 2019.
    {SportID::tennis, {"deciding", "deciding=tiebreak-10", "last set with a tie-break to 10"},
     {.lastTieBreak = tieBreak10}},
    // Wimbledon, 2019 to 2021.
    {SportID::tennis, {"deciding", "deciding=tiebreak-at-12", "last set with a tie-break to 7 at 12-12"},
     {.lastTieBreakAt = 12, .lastTieBreak = tieBreak7}},
    // ITF Rules of Tennis, Rule 6: advantage set.
    {SportID::tennis, {"deciding", "deciding=advantage", "last set without a tie-break"}, {.lastTieBreakAt = never}},
    // ITF Rules of Tennis, Appendix VI: match tie-break.
    {SportID::tennis, {"deciding", "deciding=match-tiebreak-10", "a tie-break to 10 in place of the last set"},
     {.lastGames = Race{1, 1}, .lastTieBreakAt = 0, .lastTieBreak = tieBreak10}},
    // FIVB Official Beach Volleyball Rules: 6.2 (21), 6.3.2 (last set 15).
    {SportID::volleyball, {"court", "beach", "sets to 21, the last to 15"},
     {.set = setOfPoints({21, 2}), .lastGame = Race{15, 2}}},
    // BWF Alternative Laws of Badminton: 3x15, 14-all is played to a lead of 2 or 21; 5x11, 10-all to a lead of 2 or 15.
    {SportID::badminton, {"points", "to-15", "games to 15, at most 21"}, {.set = setOfPoints({15, 2, 21})}},
    {SportID::badminton, {"points", "to-11", "games to 11, at most 15"}, {.set = setOfPoints({11, 2, 15})}},
    // World Singles Squash Rules 2001, Rule 2: the receiver at 8-all chooses to go on to 9 or 10; here always 10.
    {SportID::squash, {"scoring", "hand-out", "games to 9, at 8-8 to 10; only the server scores"},
     {.set = setOfPoints({9, 2, 10}), .serve = Serve::sideOut}},
    // USA Pickleball Official Rulebook, Section 12.
    {SportID::pickleball, {"points", "to-15", "games to 15"}, {.set = setOfPoints({15, 2})}},
    {SportID::pickleball, {"points", "to-21", "games to 21"}, {.set = setOfPoints({21, 2})}},
    // USA Pickleball Official Rulebook, 4.B: two servers, of whom only one serves at the start of a game.
    {SportID::pickleball, {"players", "doubles", "two servers each, 0-0-2 start"}, {.hasTwoServers = true}},
    // USA Pickleball Official Rulebook, rally scoring. In 2025 a game could be won on one's own serve only.
    {SportID::pickleball, {"scoring", "rally", "every rally scores, one server each"},
     {.serve = Serve::toWinner, .hasTwoServers = false}},
    {SportID::pickleball, {"scoring", "rally-win-on-serve", "the same, but only the serving side can win a game"},
     {.serve = Serve::toWinner, .hasTwoServers = false, .lastPointOnServe = true}},
};
// clang-format on

bool belongsTo(const WordRow& row, SportID sport) {
    return row.sport == (sport == SportID::padel ? SportID::tennis : sport);
}

const SportRow& row(SportID sport) {
    return *std::ranges::find(sports, sport, &SportRow::sport);
}

const WordRow& row(SportID sport, std::string_view word) {
    const auto found = std::ranges::find_if(
        words, [&](const WordRow& row) { return belongsTo(row, sport) && row.word.word == word; });
    if (found == std::end(words))
        throw FormatError(json::inQuotes(word) + " is no rule of " + std::string(rawValue(sport)));
    return *found;
}

template <class Value>
void assign(Value& value, const std::optional<Value>& change) {
    value = change.value_or(value);
}

void apply(const Change& change, Format& format) {
    if (change.set)
        format.set = format.lastSet = *change.set;
    assign(format.set.game.points, change.game);
    assign(format.lastSet.game.points, change.game);
    assign(format.lastSet.game.points, change.lastGame);
    assign(format.lastSet.games, change.lastGames);
    assign(format.lastSet.tieBreakAt, change.lastTieBreakAt);
    assign(format.lastSet.tieBreak, change.lastTieBreak);
    assign(format.serve, change.serve);
    assign(format.hasTwoServers, change.hasTwoServers);
    assign(format.lastPointOnServe, change.lastPointOnServe);
}

}

Format formatOf(SportID sport, std::span<const std::string> chosen) {
    std::vector<const WordRow*> rows;
    for (const std::string& word : chosen) {
        const WordRow& added = row(sport, word);
        for (const WordRow* other : rows) {
            if (other != &added && other->word.choice == added.word.choice)
                throw FormatError(json::inQuotes(other->word.word) + " and " + json::inQuotes(word) +
                                  " exclude each other");
        }
        rows.push_back(&added);
    }
    std::ranges::sort(rows);
    Format format = row(sport).format;
    for (const WordRow* changing : rows)
        apply(changing->change, format);
    return format;
}

std::string_view usualFormat(SportID sport) {
    return row(sport).meaning;
}

std::vector<FormatWord> formatWords(SportID sport) {
    std::vector<FormatWord> found;
    for (const WordRow& word : words) {
        if (belongsTo(word, sport))
            found.push_back(word.word);
    }
    return found;
}

}
