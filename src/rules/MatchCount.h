// The markers of a match as a count: how each follows from the one before, and how a correction carries on
// through them.
#pragma once

#include "model/Marker.h"
#include "model/MatchConfig.h"
#include "rules/Counting.h"

#include <span>
#include <string>

namespace pointloom {

/// In place of the words of a format: scores are entered by hand.
inline constexpr std::string_view byHand = "by-hand";

/// The rules of a match by the words of `formatOf`, none of them for the sport's usual ones; empty for
/// `byHand`. A single set is no deciding one: words about that do not count. Throws FormatError.
std::optional<MatchRules> rulesOfMatch(const MatchConfig& config, std::span<const std::string> words);

struct CountedMatch {
    MatchRules rules;
    CountedScore start;          // before the first marker
    std::vector<Marker> markers; // sorted by time
};

/// Without an initial score the match starts with the side that serves first by the first marker.
CountedMatch countedMatch(MatchRules rules, const std::optional<SportScoreState>& initialScore,
                          std::vector<Marker> markers);

/// The score that the marker of that number follows; of their number, the score after the last one.
CountedScore scoreBefore(const CountedMatch& match, std::size_t marker);

/// How a score follows from the one before.
struct CountStep {
    enum class Kind {
        point,   // `winner` won it
        repeat,  // the same score
        entered, // by hand: neither, so that the count begins anew here
    };

    Kind kind = Kind::entered;
    Side winner = Side::first;
    Over over = Over::nothing; // what the point ended

    bool operator==(const CountStep&) const = default;
};

CountStep stepBetween(const MatchRules& rules, const CountedScore& before, const CountedScore& after);

/// One for each marker.
std::vector<CountStep> stepsOf(const CountedMatch& match);

/// Markers after a correction.
struct Recount {
    std::vector<Marker> markers;
    std::optional<std::size_t> untouchedFrom; // the first one that does not follow the corrected score
};

/// Counts the markers from `from` on anew: each keeps its point, or its repeat, as it has them in `before`.
/// `after` holds the correction: markers inserted, removed or moved, a score typed in before `from`, another
/// start. With a `winner` the marker at `from` is a point of that side, whatever its score. Nothing is
/// touched from the first marker on that was entered by hand, or whose point comes after the end of the
/// match. Of a label only the count's phrase changes.
Recount recounted(const CountedMatch& before, CountedMatch after, std::size_t from,
                  std::optional<Side> winner = std::nullopt);

}
