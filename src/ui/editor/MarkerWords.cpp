#include "ui/editor/MarkerWords.h"

#include "ui/common/PlainToolTip.h"
#include "ui/common/TeamName.h"
#include "ui/common/TimeCode.h"

#include <algorithm>
#include <QStringList>
#include <ranges>

namespace pointloom::MarkerWords {

namespace {

QString pair(const QString& first, const QString& second) {
    return first + QStringLiteral("–") + second;
}

QStringList lines(const UiContext& context, const Marker& marker) {
    const QString colon = QStringLiteral(": ");
    QStringList result{shortTime(marker.startTime, true)};
    if (marker.label && !marker.label->isEmpty())
        result << *marker.label;
    if (const QString text = sets(marker.score); !text.isEmpty())
        result << context.text(L10nKey::sets) + colon + text;
    result << context.text(L10nKey::gameScore) + colon + game(marker.score);
    result << context.text(L10nKey::serving) + colon + teamName(context, servingSide(marker.score));
    return result;
}

}

QString game(const SportScoreState& score) {
    const auto [first, second] = gameTexts(score);
    return pair(first, second);
}

QString sets(const SportScoreState& score) {
    const auto& all = setsOf(score);
    const auto hasBegun = [](const SetScore& set) {
        return set.team1 != 0 || set.team2 != 0 || set.tiebreak;
    };
    const auto end = std::ranges::find_if(all | std::views::reverse, hasBegun).base();
    QStringList words;
    for (auto set = all.begin(); set != end; ++set)
        words << pair(set->display(Side::first), set->display(Side::second));
    return words.join(QStringLiteral("  "));
}

QString toolTip(const UiContext& context, const Marker& marker) {
    return plainToolTip(lines(context, marker));
}

QString spoken(const UiContext& context, const Marker& marker) {
    return lines(context, marker).join(QStringLiteral(", "));
}

}
