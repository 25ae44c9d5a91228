// pointloom-cli completion: a script that teaches a shell the subcommands and options.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/CompletionScript.h"
#include "cli/Messages.h"

namespace pointloom::cli {

namespace {

class CompletionCommand final : public Command {
public:
    CompletionCommand(CLI::App& subcommand, const CLI::App& root);
    ExitStatus run() override;

private:
    const CLI::App& m_root;
    std::string m_shell;
};

CompletionCommand::CompletionCommand(CLI::App& subcommand, const CLI::App& root)
    : Command(subcommand)
    , m_root(root) {
    limitChoices(app().add_option("shell", m_shell, "The shell"), {"bash", "fish", "zsh"})->required();
    app().footer("Example:\n  source <(pointloom-cli completion bash)");
}

ExitStatus CompletionCommand::run() {
    const auto write = m_shell == "bash" ? bashCompletion : m_shell == "zsh" ? zshCompletion : fishCompletion;
    print(write(m_root, programName));
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeCompletionCommand(CLI::App& root) {
    return std::make_unique<CompletionCommand>(
        *root.add_subcommand("completion", "Print a completion script for a shell"), root);
}

}
