#include "model/ScoreText.h"

#include <algorithm>

namespace pointloom {

QString gameText(const SportScoreState& score) {
    const auto [first, second] = gameTexts(score);
    return first + u'–' + second;
}

QStringList setTexts(const SportScoreState& score, QChar dash) {
    const auto& sets = setsOf(score);
    const auto hasBegun = [](const SetScore& set) {
        return set.team1 != 0 || set.team2 != 0 || set.tiebreak;
    };
    const auto end = std::find_if(sets.rbegin(), sets.rend(), hasBegun).base();
    QStringList texts;
    for (auto set = sets.begin(); set != end; ++set)
        texts += set->display(Side::first) + dash + set->display(Side::second);
    return texts;
}

}
