#include "model/MatchConfig.h"

namespace pointloom {

namespace {

bool isFilled(const std::optional<QString>& text) {
    return text && !text->isEmpty();
}

// A flag is the two regional-indicator symbols of its country code (Unicode, UTS #51); a blank follows.
QString flagEmoji(const std::optional<QString>& code) {
    constexpr char32_t regionalIndicatorA = 0x1F1E6;
    constexpr qsizetype codeLength = 2;
    if (!code || code->size() != codeLength)
        return {};
    const QString letters = code->toUpper();
    if (letters.size() != codeLength) // some letters grow, such as a sharp s
        return {};
    QString flag;
    for (const QChar character : letters) {
        if (character < u'A' || character > u'Z')
            return {};
        flag += QChar::fromUcs4(regionalIndicatorA + (character.unicode() - u'A'));
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
