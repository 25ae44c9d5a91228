#include "cli/Arguments.h"

#include "persistence/DecimalNumber.h"
#include "json/JsonCoding.h"

#include <algorithm>
#include <QFile>
#include <QFileInfo>

namespace pointloom::cli {

const FileKind projectFile{"PROJECT.plp", {"plp"}};
const FileKind videoFile{"VIDEO", {"mp4", "m4v", "mov"}};
const FileKind imageFile{"IMAGE", {"png", "jpg", "jpeg"}};
const FileKind pngFile{"PICTURE.png", {"png"}};
const FileKind csvFile{"FILE.csv", {"csv"}};
const FileKind licenceFile{"FILE.json", {"json"}};
const FileKind planFile{"PLAN.json", {"json"}};

const std::vector<const FileKind*>& fileKinds() {
    static const std::vector<const FileKind*> kinds{&projectFile, &videoFile,   &imageFile, &pngFile,
                                                    &csvFile,     &licenceFile, &planFile};
    return kinds;
}

QString toText(const std::string& argument) {
    return QFile::decodeName(argument.c_str());
}

QString toPath(const std::string& argument) {
    return toText(argument.starts_with(':') ? "./" + argument : argument);
}

std::optional<QString> toPath(const std::optional<std::string>& argument) {
    return argument ? std::optional(toPath(*argument)) : std::nullopt;
}

CLI::Option* addProjectArgument(CLI::App& app, std::string& path) {
    return app.add_option("project", path, "The project document")
        ->type_name(projectFile.placeholder)
        ->required();
}

CLI::Option* addOutputOption(CLI::App& app, std::string& path, const FileKind& kind,
                             const std::string& description) {
    const std::string& extension = kind.extensions.front();
    const auto requireExtension = [extension](const std::string& name) {
        const bool fits = QFileInfo(toPath(name)).suffix().toLower().toStdString() == extension;
        return fits ? std::string() : json::inQuotes(name) + " does not end in ." + extension;
    };
    return addFileOption(app, "-o,--output", path, kind, description)->check(requireExtension)->required();
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

CLI::Option* limitChoices(CLI::Option* option, const std::vector<std::string>& choices) {
    return limitChoices(option, choices, '{' + CLI::detail::join(choices, ",") + '}');
}

CLI::Option* limitChoices(CLI::Option* option, const std::vector<std::string>& choices,
                          const std::string& placeholder) {
    const auto isChoice = [choices](const std::string& text) {
        const bool known = std::find(choices.begin(), choices.end(), text) != choices.end();
        return known ? std::string()
                     : json::inQuotes(text) + " is none of " + CLI::detail::join(choices, ", ");
    };
    return option->type_name(placeholder)->check(isChoice);
}

}
