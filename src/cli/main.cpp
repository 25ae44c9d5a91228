// The program without a window; no command needs a screen.
#include "cli/Command.h"
#include "cli/Messages.h"
#include "export/ExportJob.h"

#include <clocale>
#include <iostream>
#include <langinfo.h>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <string_view>

namespace pointloom::cli {

namespace {

std::vector<std::unique_ptr<Command>> makeCommands(CLI::App& root) {
    std::vector<std::unique_ptr<Command>> commands; // in the order of help
    for (const auto make :
         {makeExportCommand, makeBatchCommand, makePlanCommand, makeSegmentCommand, makeJoinCommand,
          makeStillCommand, makeScoreboardCommand, makeCaptionsCommand, makeScoreCommand, makeNewCommand,
          makeCheckCommand, makeTemplatesCommand, makeMarkersCommand, makeLicenceCommand,
          makeCompletionCommand, makeCompleteCommand, makeManualCommand})
        commands.push_back(make(root));
    return commands;
}

void describe(CLI::App& root) {
    root.set_version_flag("--version", std::string(programName) + " " POINTLOOM_VERSION, "Print the version");
    root.require_subcommand(1);
    root.get_formatter()->column_width(36);
    root.footer(
        "Example:\n  pointloom-cli export final.plp -o final.mp4\n\n"
        "\"pointloom-cli COMMAND --help\" explains a command. Exit status: 0 done, 1 failed, 2 wrong\n"
        "usage, 130 cancelled.");
}

// Help and version go to standard output; a fault is one line on standard error.
ExitStatus endParsing(const CLI::App& root, const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
        root.exit(error);
        return ExitStatus::done;
    }
    const auto chosen = root.get_subcommands();
    const std::string command = chosen.empty() ? "" : ' ' + chosen.front()->get_name();
    sayOnStandardError((command.empty() ? "" : command.substr(1) + ": ") + error.what() + " (see \"" +
                       programName + command + " --help\")");
    return ExitStatus::wrongUsage;
}

// Texts are UTF-8 and numbers are written with a point, whatever the locale of the environment.
void settleEnvironment() {
    std::setlocale(LC_ALL, "");
    if (nl_langinfo(CODESET) != std::string_view("UTF-8"))
        qputenv("LC_ALL", "C.UTF-8");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("*=false")); // QT_LOGGING_RULES brings it back
}

std::unique_ptr<QCoreApplication> makeApplication(const Command& command, int& argc, char** argv) {
    settleEnvironment();
    auto application = command.drawsPictures() ? std::make_unique<QGuiApplication>(argc, argv)
                                               : std::make_unique<QCoreApplication>(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QCoreApplication::setApplicationName(QStringLiteral("Pointloom"));
    return application;
}

ExitStatus runCommand(Command& command) {
    try {
        const ExitStatus status = command.run();
        finishPrinting();
        return status;
    } catch (const ExportCancelled& cancelled) {
        sayOnStandardError(cancelled.what());
        return ExitStatus::cancelled;
    } catch (const UsageError& error) {
        sayOnStandardError(error.what());
        return ExitStatus::wrongUsage;
    } catch (const std::bad_alloc&) {
        sayOnStandardError("not enough memory");
    } catch (const std::exception& error) {
        sayOnStandardError(error.what());
    }
    return ExitStatus::failed;
}

ExitStatus runProgram(int argc, char** argv) {
    CLI::App root("Burns a live scoreboard into match videos, without a window.", programName);
    describe(root);
    const auto commands = makeCommands(root);
    try {
        root.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return endParsing(root, error);
    }
    const auto chosen = std::find_if(commands.begin(), commands.end(),
                                     [](const auto& command) { return command->wasChosen(); });
    const auto application = makeApplication(**chosen, argc, argv);
    return runCommand(**chosen);
}

}

}

int main(int argc, char** argv) {
    return static_cast<int>(pointloom::cli::runProgram(argc, argv));
}
