// Counts a match point by point, forwards and backwards. Pure functions over what markers hold: each score
// follows from the one before alone, so that a count can go on from any marker.
#pragma once

#include "model/ScoreState.h"
#include "rules/Format.h"

namespace pointloom {

struct MatchRules {
    Format format;
    std::int64_t numberOfSets = 1;  // best of
    Side firstServer = Side::first; // of the match; decides who serves first in later sets that alternate
};

/// Score and label of a marker. The label holds what the score has no field for (CountLabel.h); without it a
/// tie-break is at 0–0, and the first server serves.
struct CountedScore {
    SportScoreState score;
    std::optional<QString> label;

    bool operator==(const CountedScore&) const = default;
};

/// The largest part of the match that a point has ended.
POINTLOOM_NAMED_ENUM(Over, nothing, game, set, match);

struct CountedPoint {
    CountedScore after;
    Over over = Over::nothing;
};

CountedScore startOfMatch(const MatchRules& rules);

/// The score after `winner` has won a point (a rally, also one that scores nothing). In a new game, set and
/// tie-break all counts start at 0; a finished set keeps its games, or points, and the loser's points of its
/// tie-break. Unchanged after the end of the match, and where counting cannot go on: in a score of another
/// family, with a number below 0 or above `largestCount`, with neither side serving, or with points in a game
/// that is a tie-break.
CountedPoint countPoint(const MatchRules& rules, const CountedScore& before, Side winner);

constexpr std::int64_t largestCount = 1'000'000'000;

/// The side whose point leads from one score to the other; empty when no single point does. 40 and deuce are
/// the same, other words in labels do not count.
std::optional<Side> winnerBetween(const MatchRules& rules, const CountedScore& before,
                                  const CountedScore& after);

/// True when both stand at the same point of the match, as at 40–40 and deuce. False for scores that cannot
/// be counted on from.
bool isSameScore(const MatchRules& rules, const CountedScore& left, const CountedScore& right);

/// True when `countPoint` can go on from the score, or the match is over in it.
bool isCountable(const MatchRules& rules, const CountedScore& score);

/// The score as one from which a count begins, without a label. At 0 to 0 the side that serves starts its
/// set, which says whether its second server does, and who served first in the match: `rules` learns that.
CountedScore startFrom(MatchRules& rules, const SportScoreState& score);

bool isMatchOver(const MatchRules& rules, const SportScoreState& score);

}
