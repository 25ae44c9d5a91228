#include "cli/Arguments.h"

#include "cli/Messages.h"
#include "persistence/DecimalNumber.h"
#include "json/JsonCoding.h"

#include <algorithm>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
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

QString toText(const std::string& argument) {
    return QFile::decodeName(argument.c_str());
}

QString toPath(const std::string& argument) {
    return toText(argument.starts_with(':') ? "./" + argument : argument);
}

std::vector<std::string> ruleWords(const std::string& argument) {
    std::vector<std::string> words;
    for (const QString& word :
         toText(argument).split(QRegularExpression(QStringLiteral("[,\\s]+")), Qt::SkipEmptyParts))
        words.push_back(word.toStdString());
    return words;
}

CLI::Option* addPaths(CLI::App& app, const std::string& name, std::vector<QString>& paths,
                      const PathKind& kind, const std::string& description) {
    const auto take = [&paths](const std::vector<std::string>& arguments) {
        for (const std::string& argument : arguments)
            paths.push_back(toPath(argument));
    };
    return app.add_option_function<std::vector<std::string>>(name, take, description)
        ->type_name(std::string(kind.placeholder))
        ->allow_extra_args(false);
}

CLI::Option* addProjectArgument(CLI::App& app, QString& path) {
    return addPath(app, "project", path, projectFile, "The project document")->required();
}

CLI::Option* addOutputOption(CLI::App& app, QString& path, const PathKind& kind,
                             const std::string& description) {
    const auto requireExtension = [extension = std::string(kind.extensions)](const std::string& name) {
        const bool fits = QFileInfo(toPath(name)).suffix().toLower().toStdString() == extension;
        return fits ? std::string() : json::inQuotes(name) + " does not end in ." + extension;
    };
    return addPath(app, "-o,--output", path, kind, description)->check(requireExtension)->required();
}

CLI::Option* limitNumber(CLI::Option* option, double lowest, double highest) {
    const auto inRange = [lowest, highest](const std::string& text) -> std::string {
        const auto number = parseDecimal<double>(text);
        if (!number)
            return json::inQuotes(text) + " is not a decimal number";
        const auto shown = [](double bound) { return QString::number(bound).toStdString(); };
        if (*number < lowest)
            return text + " is below " + shown(lowest);
        return *number > highest ? text + " is above " + shown(highest) : std::string();
    };
    return option->check(inRange);
}

CLI::Option* limitWords(CLI::Option* option, const std::vector<std::string>& words,
                        const std::string& placeholder) {
    const auto isKnown = [words](const std::string& text) {
        const bool known = std::find(words.begin(), words.end(), text) != words.end();
        return known ? std::string() : json::inQuotes(text) + " is none of " + CLI::detail::join(words, ", ");
    };
    const std::string shown = '{' + CLI::detail::join(words, ",") + '}';
    return option->type_name(placeholder.empty() ? shown : placeholder)->check(isKnown);
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
