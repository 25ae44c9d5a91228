#include "model/ScoreState.h"

#include "json/JsonDocument.h"

#include <algorithm>
#include <limits>
#include <span>

namespace pointloom {

QString displayString(GamePoint point) {
    switch (point) {
    case GamePoint::zero:
        return QStringLiteral("0");
    case GamePoint::fifteen:
        return QStringLiteral("15");
    case GamePoint::thirty:
        return QStringLiteral("30");
    case GamePoint::forty:
    case GamePoint::deuce: // each side shows 40 at deuce
        return QStringLiteral("40");
    case GamePoint::advantage:
        return QStringLiteral("Ad");
    }
    Q_UNREACHABLE();
}

QString SetScore::display(Side side) const {
    const std::int64_t games = ofSide(*this, side);
    const Side winner = team1 > team2 ? Side::first : Side::second; // a level set counts as the second's
    return tiebreak && side != winner ? QStringLiteral("%1(%2)").arg(games).arg(*tiebreak)
                                      : QString::number(games);
}

const std::vector<SetScore>& setsOf(const SportScoreState& score) {
    return std::visit([](const auto& state) -> const std::vector<SetScore>& { return state.sets; }, score);
}

bool isServing(const SportScoreState& score, Side side) {
    return std::visit([&](const auto& state) { return state.servingTeam == teamNumber(side); }, score);
}

Side servingSide(const SportScoreState& score) {
    return isServing(score, Side::second) ? Side::second : Side::first;
}

std::pair<QString, QString> gameTexts(const SportScoreState& score) {
    if (const auto* tennis = std::get_if<ScoreState>(&score))
        return {displayString(tennis->currentGame.team1), displayString(tennis->currentGame.team2)};
    const auto& game = std::get<PointScoreState>(score).currentGame;
    return {QString::number(game.team1), QString::number(game.team2)};
}

namespace {

// Skips values that read the same, as deuce and 40 do: the key would seem to do nothing.
GamePoint stepped(GamePoint point, StepDirection direction) {
    constexpr int last = static_cast<int>(GamePoint::advantage);
    const int step = direction == StepDirection::next ? 1 : -1;
    int next = static_cast<int>(point) + step;
    while (next >= 0 && next <= last && displayString(static_cast<GamePoint>(next)) == displayString(point))
        next += step;
    return next < 0 || next > last ? point : static_cast<GamePoint>(next);
}

std::int64_t stepped(std::int64_t points, StepDirection direction) {
    if (direction == StepDirection::next)
        return points < std::numeric_limits<std::int64_t>::max() ? points + 1 : points;
    return points > 0 ? points - 1 : points;
}

}

SportScoreState steppedScore(SportScoreState score, Side side, StepDirection direction) {
    std::visit(
        [&](auto& state) {
            auto& value = ofSide(state.currentGame, side);
            value = stepped(value, direction);
        },
        score);
    return score;
}

SportScoreState withNumberOfSets(SportScoreState score, std::int64_t count) {
    std::visit([&](auto& state) { state.sets.resize(static_cast<std::size_t>(count)); }, score);
    return score;
}

bool hasScoreAfterSet(const SportScoreState& score, std::int64_t count) {
    const std::span sets(setsOf(score));
    const auto after = sets.subspan(std::min(static_cast<std::size_t>(count), sets.size()));
    return std::ranges::any_of(after, [](const SetScore& set) { return set != SetScore{}; });
}

SportScoreState withServeSwapped(SportScoreState score) {
    const Side next = isServing(score, Side::first) ? Side::second : Side::first;
    std::visit([&](auto& state) { state.servingTeam = teamNumber(next); }, score);
    return score;
}

namespace {

constexpr std::string_view typeKey = "type";
constexpr std::string_view scoreKey = "score";
constexpr std::string_view tennisType = "tennis";
constexpr std::string_view pointsType = "points";

}

json::OrderedValue json::Codec<SportScoreState>::encode(const SportScoreState& score) {
    OrderedValue object = OrderedValue::object();
    const bool isTennis = std::holds_alternative<ScoreState>(score);
    object[std::string(typeKey)] = std::string(isTennis ? tennisType : pointsType);
    object[std::string(scoreKey)] = std::visit([](const auto& state) { return json::encode(state); }, score);
    return object;
}

SportScoreState json::Codec<SportScoreState>::decode(const Value& value, const Path& path) {
    const Value& type = requiredMember(value, typeKey, path);
    const Path typePlace = path.key(typeKey);
    if (!type.is_string())
        throw DecodingError(typePlace, "expected a text");
    const auto& name = type.get_ref<const std::string&>();
    if (name != tennisType && name != pointsType)
        throw DecodingError(typePlace, "unknown value " + inQuotes(name));
    const Value& score = requiredMember(value, scoreKey, path);
    const Path scorePlace = path.key(scoreKey);
    if (name == tennisType)
        return json::decode<ScoreState>(score, scorePlace);
    return json::decode<PointScoreState>(score, scorePlace);
}

void json::Writer<SportScoreState>::append(QByteArray& text, const SportScoreState& score) {
    text += '{';
    appendQuoted(text, typeKey);
    text += ':';
    appendQuoted(text, std::holds_alternative<ScoreState>(score) ? tennisType : pointsType);
    text += ',';
    appendQuoted(text, scoreKey);
    text += ':';
    std::visit([&]<class State>(const State& state) { Writer<State>::append(text, state); }, score);
    text += '}';
}

}
