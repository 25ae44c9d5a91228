// The choices that every command that exports offers: format, size, how to show progress.
#pragma once

#include "export/ExportOptions.h"

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace pointloom::cli {

/// Each takes its default from `word` and leaves one of the offered words there.
void addFormatOption(CLI::App& app, std::string& word);
void addPresetOption(CLI::App& app, std::string& word);
void addProgressOption(CLI::App& app, std::string& word);

ExportFormat formatOf(std::string_view word);
ExportPreset presetOf(std::string_view word);

}
