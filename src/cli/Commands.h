// Every subcommand, each in a file of its own name.
#pragma once

#include "cli/Command.h"

#include <memory>

namespace pointloom::cli {

std::unique_ptr<Command> makeExportCommand(CLI::App& root);
std::unique_ptr<Command> makeBatchCommand(CLI::App& root);
std::unique_ptr<Command> makePlanCommand(CLI::App& root);
std::unique_ptr<Command> makeSegmentCommand(CLI::App& root);
std::unique_ptr<Command> makeJoinCommand(CLI::App& root);
std::unique_ptr<Command> makeStillCommand(CLI::App& root);
std::unique_ptr<Command> makeScoreboardCommand(CLI::App& root);
std::unique_ptr<Command> makeTemplatesCommand(CLI::App& root);
std::unique_ptr<Command> makeMarkersCommand(CLI::App& root);
std::unique_ptr<Command> makeScoreCommand(CLI::App& root);
std::unique_ptr<Command> makeNewCommand(CLI::App& root);
std::unique_ptr<Command> makeCheckCommand(CLI::App& root);
std::unique_ptr<Command> makeLicenceCommand(CLI::App& root);
std::unique_ptr<Command> makeCompletionCommand(CLI::App& root);
std::unique_ptr<Command> makeManualCommand(CLI::App& root);

}
