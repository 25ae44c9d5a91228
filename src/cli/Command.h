// One subcommand of the command line, and how it ends.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>

namespace pointloom::cli {

enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2, cancelled = 130 }; // 128 + SIGINT, as shells do

/// Its constructor names its arguments to the parser, which fills the members.
class Command {
public:
    Command(CLI::App& root, const char* name, const char* description)
        : m_app(*root.add_subcommand(name, description)) {}
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    bool wasChosen() const { return m_app.parsed(); }

    /// True when fonts and painting are needed.
    virtual bool drawsPictures() const { return false; }

    /// Throws CommandError and the errors of the modules below.
    virtual ExitStatus run() = 0;

protected:
    CLI::App& app() { return m_app; }

private:
    CLI::App& m_app;
};

std::unique_ptr<Command> makeExportCommand(CLI::App& root);
std::unique_ptr<Command> makeBatchCommand(CLI::App& root);
std::unique_ptr<Command> makePlanCommand(CLI::App& root);
std::unique_ptr<Command> makeSegmentCommand(CLI::App& root);
std::unique_ptr<Command> makeJoinCommand(CLI::App& root);
std::unique_ptr<Command> makeStillCommand(CLI::App& root);
std::unique_ptr<Command> makeScoreboardCommand(CLI::App& root);
std::unique_ptr<Command> makeCaptionsCommand(CLI::App& root);
std::unique_ptr<Command> makeScoreCommand(CLI::App& root);
std::unique_ptr<Command> makeNewCommand(CLI::App& root);
std::unique_ptr<Command> makeCheckCommand(CLI::App& root);
std::unique_ptr<Command> makeTemplatesCommand(CLI::App& root);
std::unique_ptr<Command> makeMarkersCommand(CLI::App& root);
std::unique_ptr<Command> makeLicenceCommand(CLI::App& root);
std::unique_ptr<Command> makeCompletionCommand(CLI::App& root);
std::unique_ptr<Command> makeCompleteCommand(CLI::App& root);
std::unique_ptr<Command> makeManualCommand(CLI::App& root);

}
