// Writes shell completion from the parser's own description of the command line, so that the two agree.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace pointloom::cli {

/// Scripts that complete subcommands, options, the words and files that options take, and positional
/// arguments. Options without a help group stay hidden.
std::string bashCompletion(const CLI::App& root, const std::string& program);
std::string zshCompletion(const CLI::App& root, const std::string& program);
std::string fishCompletion(const CLI::App& root, const std::string& program);

}
