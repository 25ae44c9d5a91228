// What every subcommand of the command line is, and how it ends.
#pragma once

#include "cli/CommandError.h"

#include <CLI/CLI.hpp>

namespace pointloom::cli {

enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2, cancelled = 130 }; // 128 + SIGINT, as shells do

/// One subcommand. Its constructor names its arguments to the parser, which fills the members.
class Command {
public:
    explicit Command(CLI::App& subcommand)
        : m_app(subcommand) {}
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

}
