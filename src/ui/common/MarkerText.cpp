#include "ui/common/MarkerText.h"

#include "ui/common/TimeCode.h"
#include "ui/style/Controls.h"

#include <algorithm>

namespace pointloom {

namespace {

QStringList scoreLines(const UiContext& context, const SportScoreState& score) {
    const QString colon = QStringLiteral(": ");
    QStringList result;
    if (const QString sets = setsText(score); !sets.isEmpty())
        result << context.text(L10nKey::sets) + colon + sets;
    result << context.text(L10nKey::gameScore) + colon + gameText(score);
    result << context.text(L10nKey::serving) + colon + sideName(context, servingSide(score));
    return result;
}

QStringList lines(const UiContext& context, const Marker& marker, bool isEntered) {
    QStringList result{shortTime(marker.startTime, true)};
    if (marker.label && !marker.label->isEmpty())
        result << *marker.label;
    result << scoreLines(context, marker.score);
    if (isEntered)
        result << context.text(L10nKey::countEntered);
    return result;
}

}

QString sideName(const UiContext& context, Side side) {
    const auto& config = context.state.matchConfig.value();
    const QString name = config ? ofSide(*config, side).displayName() : QString();
    return name.isEmpty() ? context.text(side == Side::first ? L10nKey::team1 : L10nKey::team2) : name;
}

QString setsText(const SportScoreState& score) {
    return setTexts(score).join(QStringLiteral("  "));
}

ShortScore shortScore(const SportScoreState& score) {
    QStringList words = setTexts(score, u'-');
    const auto [first, second] = gameTexts(score);
    const QString none = QStringLiteral("0");
    const bool isGameOpen = first != none || second != none;
    if (isGameOpen || words.isEmpty())
        words << first + u'-' + second;
    return {words.join(u' '), words.back()};
}

namespace {

L10nKey endedByPoint(Over over, bool hasGames) {
    switch (over) {
    case Over::nothing:
        return L10nKey::countPoint;
    case Over::game:
        return L10nKey::countGame;
    case Over::set:
        return hasGames ? L10nKey::countGameSet : L10nKey::countSet;
    case Over::match:
        return hasGames ? L10nKey::countGameSetMatch : L10nKey::countSetMatch;
    }
    Q_UNREACHABLE();
}

}

QString countText(const UiContext& context, const CountedMatch& match, std::size_t marker) {
    const CountedScore before = scoreBefore(match, marker);
    const CountedScore after = scoreBefore(match, marker + 1);
    const CountStep step = stepBetween(match.rules, before, after);
    if (step.kind == CountStep::Kind::repeat)
        return {};
    if (step.kind == CountStep::Kind::entered)
        return context.text(L10nKey::countEntered);
    const bool scores = step.over != Over::nothing || gameTexts(before.score) != gameTexts(after.score);
    const L10nKey text = scores ? endedByPoint(step.over, match.rules.format.hasGames) : L10nKey::countRally;
    return format(context.text(text), sideName(context, step.winner));
}

QString scoreAsSpoken(const UiContext& context, const SportScoreState& score) {
    return scoreLines(context, score).join(QStringLiteral(", "));
}

QString markerAsToolTip(const UiContext& context, const Marker& marker, bool isEntered) {
    return plainToolTip(lines(context, marker, isEntered));
}

QString markerAsSpoken(const UiContext& context, const Marker& marker, bool isEntered) {
    return lines(context, marker, isEntered).join(QStringLiteral(", "));
}

}
