#include "ui/timeline/ScoreWords.h"

#include <algorithm>
#include <QStringList>
#include <ranges>

namespace pointloom {

ScoreWords scoreInWords(const SportScoreState& score) {
    const auto& sets = setsOf(score);
    const auto hasBegun = [](const SetScore& set) {
        return set.team1 != 0 || set.team2 != 0 || set.tiebreak;
    };
    const auto lastBegun = std::ranges::find_if(sets | std::views::reverse, hasBegun).base();
    QStringList words;
    for (auto set = sets.begin(); set != lastBegun; ++set)
        words << set->display(Side::first) + QLatin1Char('-') + set->display(Side::second);

    const auto [first, second] = gameTexts(score);
    const QString none = QStringLiteral("0");
    const bool isGameOpen = first != none || second != none;
    if (isGameOpen || words.isEmpty())
        words << first + QLatin1Char('-') + second;
    return {words.join(QLatin1Char(' ')), words.back()};
}

}
