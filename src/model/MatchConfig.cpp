#include "model/MatchConfig.h"

#include <algorithm>
#include <array>

namespace pointloom {

namespace {

struct Sport {
    SportID id;
    const char* displayName;
    const char* emoji;
    const char* imageName;
    bool usesTennisScoring;
    bool supportsDoubles;
    std::array<std::int64_t, 3> sets; // padded with zeros
};

// clang-format off
constexpr Sport sports[] = {
    {SportID::tennis,      "Tennis",       "\U0001F3BE", "sport_tennis",      true,  true,  {1, 3, 5}},
    {SportID::padel,       "Padel",        "\U0001F3BE", "sport_padel",       true,  true,  {1, 3, 5}},
    {SportID::volleyball,  "Volleyball",   "\U0001F3D0", "sport_volleyball",  false, false, {3, 5}},
    {SportID::badminton,   "Badminton",    "\U0001F3F8", "sport_badminton",   false, false, {3}},
    {SportID::tableTennis, "Table Tennis", "\U0001F3D3", "sport_tabletennis", false, false, {5, 7}},
    {SportID::squash,      "Squash",       "\U0001F535", "sport_squash",      false, false, {5}},
    {SportID::pickleball,  "Pickleball",   "\U0001F952", "sport_pickleball",  false, false, {3}},
};
// clang-format on

const Sport& row(SportID sport) {
    return sports[static_cast<std::size_t>(sport)];
}

static_assert(
    [] {
        for (std::size_t i = 0; i < std::size(sports); ++i) {
            if (static_cast<std::size_t>(sports[i].id) != i)
                return false;
        }
        return std::size(sports) == RawValues<SportID>::table.size();
    }(),
    "one row for each sport, in the order of the enumeration");

bool isFilled(const std::optional<QString>& text) {
    return text && !text->isEmpty();
}

// A flag is the two regional-indicator symbols of its country code (Unicode, UTS #51); a space follows.
// Characters after "Z" are not refused: they give the characters at the same distance after the symbols.
QString flagEmoji(const std::optional<QString>& code) {
    constexpr char32_t regionalIndicatorA = 0x1F1E6;
    constexpr qsizetype codeLength = 2;
    if (!code || code->toUcs4().size() != codeLength)
        return {};
    const auto letters = code->toUpper().toUcs4();
    if (letters.size() != codeLength) // some letters grow, such as a sharp s
        return {};
    QString flag;
    for (const char32_t letter : letters) {
        const char32_t symbol = regionalIndicatorA + (letter - U'A');
        if (letter < U'A' || symbol > QChar::LastValidCodePoint)
            return {};
        flag += QChar::fromUcs4(symbol);
    }
    return flag + u' ';
}

}

QString displayName(SportID sport) {
    return QString::fromUtf8(row(sport).displayName);
}

QString emoji(SportID sport) {
    return QString::fromUtf8(row(sport).emoji);
}

QString imageName(SportID sport) {
    return QString::fromUtf8(row(sport).imageName);
}

bool usesTennisScoring(SportID sport) {
    return row(sport).usesTennisScoring;
}

bool supportsDoubles(SportID sport) {
    return row(sport).supportsDoubles;
}

std::span<const std::int64_t> numberOfSetsOptions(SportID sport) {
    const auto& sets = row(sport).sets;
    const auto count = std::find(sets.begin(), sets.end(), 0) - sets.begin();
    return std::span(sets).first(static_cast<std::size_t>(count));
}

std::int64_t defaultNumberOfSets(SportID sport) {
    const auto options = numberOfSetsOptions(sport);
    return options.empty() ? 3 : options.front();
}

QString TeamConfig::displayName() const {
    return isFilled(player2) ? player1 + QStringLiteral(" / ") + *player2 : player1;
}

QString TeamConfig::flagDisplayName(MatchFormat format) const {
    const QString first = flagEmoji(flag1) + player1;
    if (format != MatchFormat::doubles || !isFilled(player2))
        return first;
    return first + QStringLiteral(" / ") + flagEmoji(flag2) + *player2;
}

QString displayName(const MatchConfig& match) {
    return match.team1.displayName() + QStringLiteral(" – ") + match.team2.displayName();
}

}
