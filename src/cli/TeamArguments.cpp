#include "cli/TeamArguments.h"

#include "cli/CommandError.h"
#include "persistence/DecimalNumber.h"

#include <algorithm>
#include <QStringList>

namespace pointloom::cli {

namespace {

QStringList partsOf(const QString& text, QChar separator) {
    QStringList parts = text.split(separator);
    for (QString& part : parts)
        part = part.trimmed();
    return parts;
}

bool isCountryCode(const QString& text) {
    return text.size() == 2 && std::all_of(text.begin(), text.end(), [](QChar character) {
               return (character >= u'A' && character <= u'Z') || (character >= u'a' && character <= u'z');
           });
}

std::optional<QString> flag(const QString& code, const QString& option) {
    if (code.isEmpty())
        return std::nullopt;
    if (!isCountryCode(code))
        throw UsageError(option + QStringLiteral(": \"%1\" is not a country code of two letters").arg(code));
    return code.toUpper();
}

}

TeamConfig parseTeam(const QString& names, const QString& flags, int number) {
    const QString teamOption = QStringLiteral("--team%1").arg(number);
    const QStringList players = partsOf(names, u'/');
    if (players.size() > 2 || players.contains(QString()))
        throw UsageError(teamOption + QStringLiteral(": give one name, or two as \"A/B\""));
    TeamConfig team;
    team.player1 = players.front();
    if (players.size() == 2)
        team.player2 = players.back();

    const QString flagsOption = QStringLiteral("--flags%1").arg(number);
    const QStringList codes = flags.isEmpty() ? QStringList() : partsOf(flags, u',');
    if (codes.size() > players.size())
        throw UsageError(flagsOption + QStringLiteral(": more flags than players"));
    if (!codes.isEmpty())
        team.flag1 = flag(codes.front(), flagsOption);
    if (codes.size() == 2)
        team.flag2 = flag(codes.back(), flagsOption);
    return team;
}

QPointF parsePosition(const std::string& text) {
    const auto comma = std::min(text.find(','), text.size());
    const auto x = parseDecimal<double>(std::string_view(text).substr(0, comma));
    const auto y = parseDecimal<double>(std::string_view(text).substr(std::min(comma + 1, text.size())));
    const auto isFraction = [](const std::optional<double>& value) {
        return value && *value >= 0 && *value <= 1;
    };
    if (!isFraction(x) || !isFraction(y))
        throw UsageError("--position: give two numbers from 0 to 1, as 0.15,0.1");
    return {*x, *y};
}

}
