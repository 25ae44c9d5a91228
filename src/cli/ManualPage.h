// The manual page, written from the parser's own description of the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace pointloom::cli {

/// In the man macros of roff, section 1.
std::string manualPage(const CLI::App& root, const std::string& program, const std::string& version);

}
