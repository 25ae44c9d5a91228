// pointloom-cli manual: the manual page, as packages install it.
#include "cli/Commands.h"
#include "cli/ManualPage.h"
#include "cli/Messages.h"

namespace pointloom::cli {

namespace {

class ManualCommand final : public Command {
public:
    ManualCommand(CLI::App& subcommand, const CLI::App& root)
        : Command(subcommand)
        , m_root(root) {
        app().footer("Example:\n  pointloom-cli manual | man -l -");
    }

    ExitStatus run() override {
        print(manualPage(m_root, programName, POINTLOOM_VERSION));
        return ExitStatus::done;
    }

private:
    const CLI::App& m_root;
};

}

std::unique_ptr<Command> makeManualCommand(CLI::App& root) {
    return std::make_unique<ManualCommand>(*root.add_subcommand("manual", "Print the manual page"), root);
}

}
