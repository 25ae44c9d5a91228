// The kinds of argument that commands share: files, numbers, choices, teams.
#pragma once

#include "model/MatchConfig.h"
#include "model/ScoreState.h"
#include "json/JsonFields.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <optional>
#include <QPointF>
#include <QString>
#include <string>
#include <type_traits>
#include <vector>

namespace pointloom::cli {

/// An argument that is a file or a folder.
struct PathKind {
    std::string_view placeholder; // in help; completion offers files by it
    std::string_view extensions;  // without dots, separated by spaces
};

constexpr PathKind projectFile{"PROJECT.plp", "plp"};
constexpr PathKind videoFile{"VIDEO", "mp4 m4v mov"};
constexpr PathKind imageFile{"IMAGE", "png jpg jpeg"};
constexpr PathKind boardFile{"BOARD.json", "json"};
constexpr PathKind pngFile{"PICTURE.png", "png"};
constexpr PathKind csvFile{"FILE.csv", "csv"};
constexpr PathKind pointsFile{"FILE", "csv tsv txt dvw"};
constexpr PathKind licenceFile{"FILE.json", "json"};
constexpr PathKind planFile{"PLAN.json", "json"};
constexpr PathKind captionsFile{"CAPTIONS", "srt vtt csv json"};
constexpr PathKind folderPath{"FOLDER", ""};
inline constexpr std::array pathKinds{projectFile, videoFile,   imageFile, boardFile,    pngFile,   csvFile,
                                      pointsFile,  licenceFile, planFile,  captionsFile, folderPath};

/// Choices of a side.
constexpr auto sideNumbers =
    std::to_array<std::pair<Side, std::string_view>>({{Side::first, "1"}, {Side::second, "2"}});

/// Rules of a match: words joined by commas or spaces.
std::vector<std::string> ruleWords(const std::string& argument);

/// The placeholder of an argument that is a template's identifier.
constexpr auto templatePlaceholder = "TEMPLATE";

/// An argument as text. Arguments and file names are UTF-8.
QString toText(const std::string& argument);

/// An argument as the path of a file; one that begins with a colon would otherwise name a resource.
QString toPath(const std::string& argument);

/// An argument or option whose `toPath` goes into a QString, or an optional one.
template <class Path>
CLI::Option* addPath(CLI::App& app, const std::string& name, Path& path, const PathKind& kind,
                     const std::string& description) {
    const auto take = [&path](const std::string& argument) { path = toPath(argument); };
    return app.add_option_function<std::string>(name, take, description)
        ->type_name(std::string(kind.placeholder));
}

/// An option that may be given several times.
CLI::Option* addPaths(CLI::App& app, const std::string& name, std::vector<QString>& paths,
                      const PathKind& kind, const std::string& description);

CLI::Option* addProjectArgument(CLI::App& app, QString& path);

/// `-o`, required; a name that does not end in the kind's only extension is wrong usage.
CLI::Option* addOutputOption(CLI::App& app, QString& path, const PathKind& kind,
                             const std::string& description);

/// Limits an option to finite decimal numbers in [lowest, highest].
CLI::Option* limitNumber(CLI::Option* option, double lowest,
                         double highest = std::numeric_limits<double>::max());

/// Seconds from the start of the video, 0 or later.
template <class Seconds>
CLI::Option* addTimeOption(CLI::App& app, const std::string& name, Seconds& seconds,
                           const std::string& description) {
    return limitNumber(app.add_option(name, seconds, description)->type_name("SECONDS"), 0);
}

/// Limits an option to some words, which completion offers. Help shows them, or `placeholder` where they do
/// not fit on a line.
CLI::Option* limitWords(CLI::Option* option, const std::vector<std::string>& words,
                        const std::string& placeholder = {});

/// The words of a table of (value, word).
template <class Table>
std::vector<std::string> wordsOf(const Table& table) {
    std::vector<std::string> words;
    for (const auto& [value, word] : table)
        words.emplace_back(word);
    return words;
}

/// An argument or option that takes a word of a table of (value, word) and puts its value into `value`. When
/// that is no optional, it is the default, which help shows.
template <class Value, class Table>
CLI::Option* addChoice(CLI::App& app, const std::string& name, Value& value, const Table& table,
                       const std::string& description, const std::string& placeholder = {}) {
    const auto take = [&value, table](const std::string& argument) {
        for (const auto& [candidate, word] : table) {
            if (word == argument)
                value = candidate;
        }
    };
    CLI::Option* option = limitWords(app.add_option_function<std::string>(name, take, description),
                                     wordsOf(table), placeholder);
    using Candidate = std::decay_t<decltype(table.front().first)>;
    if constexpr (std::is_same_v<Value, Candidate>) {
        const auto isDefault = [&](const auto& row) { return row.first == value; };
        option->default_str(std::string(std::find_if(table.begin(), table.end(), isDefault)->second));
    }
    return option;
}

/// A team of one name or, around a slash, two: "Ana/Bea"; flags as two-letter codes around a comma, "FR,GB",
/// empty for none. `number` of the team is for the message. Throws UsageError.
TeamConfig parseTeam(const QString& names, const QString& flags, int number);

/// Two numbers of 0 to 1 around a comma: "0.15,0.1". Throws UsageError.
QPointF parsePosition(const std::string& text);

}
