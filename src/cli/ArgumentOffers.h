// What may stand on the command line, read from the parser's own description: completion scripts and the
// manual are written from it, so that they agree with --help.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace pointloom::cli {

/// What may follow an option, or stand where a positional argument does.
struct ArgumentOffer {
    std::vector<std::string> words;
    std::vector<std::string> extensions; // of files, without the dot
};

/// Told by the placeholder that help shows; empty for numbers and names, which cannot be foretold.
ArgumentOffer offerFor(const CLI::Option& option);

/// The options and positional arguments that help shows, in its order.
std::vector<const CLI::Option*> shownOptions(const CLI::App& app);

/// "-o" and "--output"; empty for a positional argument.
std::vector<std::string> namesOf(const CLI::Option& option);

inline bool takesValue(const CLI::Option& option) {
    return option.get_expected_max() > 0;
}

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app);

/// `words` with a blank between them.
std::string joined(const std::vector<std::string>& words, const std::string& between = " ");

void replaceAll(std::string& text, std::string_view from, std::string_view to);

}
