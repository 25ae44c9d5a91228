#include "model/MatchConfig.h"

namespace pointloom {

namespace {

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

QString TeamConfig::displayName() const {
    return isFilled(player2) ? player1 + QStringLiteral(" / ") + *player2 : player1;
}

QString TeamConfig::flagDisplayName(MatchFormat format) const {
    const QString first = flagEmoji(flag1) + player1;
    if (format != MatchFormat::doubles || !isFilled(player2))
        return first;
    return first + QStringLiteral(" / ") + flagEmoji(flag2) + *player2;
}

}
