// Formats of play as rows of data: how far games, sets and tie-breaks go, and who serves. Each sport has a
// usual format; words such as "no-ad" or "doubles" change parts of it.
#pragma once

#include "model/MatchConfig.h"

#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pointloom {

constexpr std::int64_t unlimited = std::numeric_limits<std::int64_t>::max();

/// Won by the first to reach `target` with a lead of `margin`, or, from `cap` on, with any lead.
struct Race {
    std::int64_t target = 0;
    std::int64_t margin = 0;
    std::int64_t cap = unlimited;
};

/// Points in a turn of service: `first` in the first, then `each`; from a total of `lateFrom` on, `late`.
struct Turns {
    std::int64_t first = unlimited; // the whole game
    std::int64_t each = 1;
    std::int64_t lateFrom = unlimited;
    std::int64_t late = 1;
};

/// A unit counted in points: a game, a tie-break; in the point sports a set.
struct GameFormat {
    Race points;
    Turns turns; // for `Serve::inTurns`
};

struct SetFormat {
    GameFormat game;
    Race games{1, 1};             // in the point sports a set is one game
    std::int64_t tieBreakAt = -1; // games of each side; -1 without a tie-break
    GameFormat tieBreak;          // counts as one game
};

/// Who serves next.
enum class Serve {
    inTurns,  // the sides in turn, game after game
    toWinner, // the side that won the rally
    sideOut,  // the side that won the rally; only the serving side scores
};

struct Format {
    bool hasGames = false; // sets are counted in games, as in tennis; otherwise in points
    SetFormat set;
    SetFormat lastSet; // the last one that the match can have
    Serve serve = Serve::inTurns;
    bool alternatesSets = false;   // the first service of a set changes sides with each set
    bool hasTwoServers = false;    // on each side, for `sideOut`; a set begins with the second
    bool lastPointOnServe = false; // only the serving side can win a set
};

/// A word that changes the usual format of a sport.
struct FormatWord {
    std::string_view choice; // words of one choice exclude each other
    std::string_view word;
    std::string_view meaning;
};

/// A word that the sport does not have, or two that exclude each other.
class FormatError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// Throws FormatError.
Format formatOf(SportID sport, std::span<const std::string> words = {});

/// The usual format in words.
std::string_view usualFormat(SportID sport);

std::vector<FormatWord> formatWords(SportID sport);

}
