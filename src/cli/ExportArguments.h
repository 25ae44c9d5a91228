// The options of commands that export.
#pragma once

#include "cli/ProgressDisplay.h"
#include "cli/ProjectInputs.h"
#include "export/segments/ReusingExport.h"

#include <CLI/CLI.hpp>
#include <string_view>

namespace pointloom::cli {

/// Whether "png" is offered, which only an overlay without its video can be. It leaves the format at H.264.
enum class Pictures { no, too };
constexpr std::string_view pngWord = "png";

/// --preset, --fill.
void addSizeOptions(CLI::App& app, ExportRequest& request);

/// These and --format, --quality.
void addEncodingOptions(CLI::App& app, ExportRequest& request, Pictures pictures = Pictures::no);

/// --video, --trim-start, --trim-end, --rallies, --leave-out.
void addRangeOptions(CLI::App& app, ExportRequest& request);

/// All of these and the others that `export` and `plan` have in common.
void addRequestOptions(CLI::App& app, ExportRequest& request, Pictures pictures = Pictures::no);

/// "auto" is software: its quality is what the defaults promise.
void addEncoderOption(CLI::App& app, ExportRequest& request);

/// --fresh.
void addFreshOption(CLI::App& app, ReuseChoices& choices);

void addProgressOption(CLI::App& app, ProgressMode& mode);

}
