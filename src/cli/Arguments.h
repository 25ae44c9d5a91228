// The kinds of argument that subcommands share: files, numbers, choices.
#pragma once

#include "json/JsonFields.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <optional>
#include <QString>
#include <string>
#include <vector>

namespace pointloom::cli {

/// The placeholders of arguments that are files, as help shows them; completion offers files by them.
struct FileKind {
    const char* placeholder;
    std::vector<std::string> extensions; // without the dot; empty for any file
};

extern const FileKind projectFile;
extern const FileKind videoFile;
extern const FileKind imageFile;
extern const FileKind pngFile;
extern const FileKind csvFile;
extern const FileKind licenceFile;
extern const FileKind planFile;
const std::vector<const FileKind*>& fileKinds();

/// The placeholder of an argument that is a template's identifier.
constexpr auto templatePlaceholder = "TEMPLATE";

/// An argument as text. Arguments and file names are UTF-8.
QString toText(const std::string& argument);

/// An argument as the path of a file; one that begins with a colon would otherwise name a resource.
QString toPath(const std::string& argument);
std::optional<QString> toPath(const std::optional<std::string>& argument);

CLI::Option* addProjectArgument(CLI::App& app, std::string& path);

/// `-o`, required; a name that does not end in the kind's extension is wrong usage.
CLI::Option* addOutputOption(CLI::App& app, std::string& path, const FileKind& kind,
                             const std::string& description);

template <class Path>
CLI::Option* addFileOption(CLI::App& app, const std::string& name, Path& path, const FileKind& kind,
                           const std::string& description) {
    return app.add_option(name, path, description)->type_name(kind.placeholder);
}

/// Limits an option to finite decimal numbers in [lowest, highest].
CLI::Option* limitNumber(CLI::Option* option, double lowest,
                         double highest = std::numeric_limits<double>::max());

/// Seconds from the start of the video, 0 or later.
template <class Seconds>
CLI::Option* addTimeOption(CLI::App& app, const std::string& name, Seconds& seconds,
                           const std::string& description) {
    return limitNumber(app.add_option(name, seconds, description)->type_name("SECONDS"), 0);
}

/// Limits an option to some words, which help and completion show.
CLI::Option* limitChoices(CLI::Option* option, const std::vector<std::string>& choices);

/// The same, shown by a placeholder: for more words than a line of help can hold.
CLI::Option* limitChoices(CLI::Option* option, const std::vector<std::string>& choices,
                          const std::string& placeholder);

/// Every raw value of an enumeration, in declaration order.
template <HasRawValues Enumeration>
std::vector<std::string> rawValues() {
    std::vector<std::string> values;
    for (const auto& [value, text] : RawValues<Enumeration>::table)
        values.emplace_back(text);
    return values;
}

}
