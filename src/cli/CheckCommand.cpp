// pointloom-cli check: says what a document holds and whether everything is there.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/ProjectReport.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class CheckCommand final : public Command {
public:
    explicit CheckCommand(CLI::App& subcommand);
    ExitStatus run() override;

private:
    std::string m_project;
    bool m_asJson = false;
};

CheckCommand::CheckCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addProjectArgument(app(), m_project);
    app().add_flag("--json", m_asJson, "Print one object");
    app().footer("Example:\n  pointloom-cli check final.plp && pointloom-cli export final.plp\n\n"
                 "The exit status is 0 when every file that it names is there, and 1 otherwise.");
}

ExitStatus CheckCommand::run() {
    const QString path = toPath(m_project);
    const ProjectFile project = ProjectFile::load(path);
    const ProjectReport report = reportOn(project, path);
    if (m_asJson)
        printJson(reportJson(project, report));
    else
        print(reportText(project, report).toStdString());
    if (report.missing.isEmpty())
        return ExitStatus::done;
    finishPrinting();
    throw CommandError(QFileInfo(path).fileName() + QStringLiteral(": ") +
                       report.missing.join(QStringLiteral("; ")));
}

}

std::unique_ptr<Command> makeCheckCommand(CLI::App& root) {
    return std::make_unique<CheckCommand>(
        *root.add_subcommand("check", "Say what a project holds and what is missing"));
}

}
