#include "rules/MatchCount.h"

#include "rules/CountLabel.h"

#include <algorithm>
#include <QHash>

namespace pointloom {

namespace {

CountedScore scoreOf(const Marker& marker) {
    return {marker.score, marker.label};
}

/// `before` with the label's phrase alone, as a marker that repeats it gets it.
CountedScore repeated(const MatchRules& rules, const CountedScore& before) {
    if (!before.label)
        return before;
    if (const auto points = tieBreakPoints(*before.label); points && rules.format.hasGames)
        return {before.score, tieBreakPhrase(*points)};
    if (rules.format.hasTwoServers && namesSecondServer(*before.label))
        return {before.score, secondServerPhrase()};
    return {before.score, std::nullopt};
}

}

std::optional<MatchRules> rulesOfMatch(const MatchConfig& config, std::span<const std::string> words) {
    if (std::ranges::find(words, byHand) != words.end())
        return std::nullopt;
    const auto offered = formatWords(config.sport);
    const auto isOffered = [&](std::string_view word) {
        return std::ranges::find(offered, word, &FormatWord::word) != offered.end();
    };
    std::vector<std::string> applied;
    std::ranges::copy_if(words, std::back_inserter(applied), [&](const std::string& word) {
        return config.numberOfSets > 1 || !word.starts_with("deciding=") || !isOffered(word);
    });
    const std::string doubles = "doubles";
    if (config.format == MatchFormat::doubles && isOffered(doubles))
        applied.push_back(doubles);
    return MatchRules{formatOf(config.sport, applied), config.numberOfSets, Side::first};
}

CountedMatch countedMatch(MatchRules rules, const std::optional<SportScoreState>& initialScore,
                          std::vector<Marker> markers) {
    if (initialScore) {
        const CountedScore start = startFrom(rules, *initialScore);
        return {rules, start, std::move(markers)};
    }
    for (const Side server : bothSides) {
        rules.firstServer = server;
        const CountedScore start = startOfMatch(rules);
        if (markers.empty() ||
            stepBetween(rules, start, scoreOf(markers.front())).kind != CountStep::Kind::entered)
            return {rules, start, std::move(markers)};
    }
    rules.firstServer = Side::first;
    startFrom(rules, markers.front().score);
    return {rules, startOfMatch(rules), std::move(markers)};
}

CountedScore scoreBefore(const CountedMatch& match, std::size_t marker) {
    return marker == 0 ? match.start : scoreOf(match.markers.at(marker - 1));
}

CountStep stepBetween(const MatchRules& rules, const CountedScore& before, const CountedScore& after) {
    if (isSameScore(rules, before, after))
        return {.kind = CountStep::Kind::repeat};
    if (const auto winner = winnerBetween(rules, before, after))
        return {CountStep::Kind::point, *winner, countPoint(rules, before, *winner).over};
    return {};
}

std::vector<CountStep> stepsOf(const CountedMatch& match) {
    std::vector<CountStep> steps;
    for (std::size_t i = 0; i < match.markers.size(); ++i)
        steps.push_back(stepBetween(match.rules, scoreBefore(match, i), scoreOf(match.markers[i])));
    return steps;
}

Recount recounted(const CountedMatch& before, CountedMatch after, std::size_t from,
                  std::optional<Side> winner) {
    QHash<QUuid, std::size_t> places;
    for (std::size_t i = 0; i < before.markers.size(); ++i)
        places.insert(before.markers[i].id, i);

    for (std::size_t i = from; i < after.markers.size(); ++i) {
        Marker& marker = after.markers[i];
        const CountedScore previous = scoreBefore(after, i);
        const auto known = places.constFind(marker.id);
        CountStep step;
        if (known != places.constEnd())
            step = stepBetween(before.rules, scoreBefore(before, *known), scoreOf(before.markers[*known]));
        if (i == from && winner)
            step = {CountStep::Kind::point, *winner};

        CountedScore counted = repeated(after.rules, previous);
        if (step.kind == CountStep::Kind::point)
            counted = countPoint(after.rules, previous, step.winner).after;
        const bool follows =
            step.kind != CountStep::Kind::entered && isCountable(after.rules, previous) &&
            (step.kind == CountStep::Kind::repeat || !isMatchOver(after.rules, previous.score));
        if (!follows) {
            const bool isBroken =
                stepBetween(after.rules, previous, scoreOf(marker)).kind == CountStep::Kind::entered;
            const bool wasCorrected = known == places.constEnd() ||
                                      !isSameScore(after.rules, previous, scoreBefore(before, *known));
            return {std::move(after.markers), isBroken && wasCorrected ? std::optional(i) : std::nullopt};
        }
        if (isSameScore(after.rules, counted, scoreOf(marker)))
            continue;
        marker.score = counted.score;
        marker.label = withPhrase(marker.label, counted.label);
    }
    return {std::move(after.markers), std::nullopt};
}

}
