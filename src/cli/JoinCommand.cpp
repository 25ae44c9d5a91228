// pointloom-cli join: makes one video of the segments of a plan.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Commands.h"
#include "cli/ExportChoices.h"
#include "cli/PlanInputs.h"
#include "cli/ProgressDisplay.h"
#include "cli/ProjectInputs.h"
#include "export/segments/SegmentExport.h"

#include <QDir>

namespace pointloom::cli {

namespace {

class JoinCommand final : public Command {
public:
    explicit JoinCommand(CLI::App& subcommand);
    ExitStatus run() override;

private:
    SegmentFolder parts(const SegmentPlan& plan, const QString& planPath) const;

    std::string m_plan;
    std::optional<std::string> m_output;
    std::optional<std::string> m_parts;
    std::string m_progress = "auto";
};

JoinCommand::JoinCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addPlanArgument(app(), m_plan);
    addFileOption(app(), "-o,--output", m_output, videoFile,
                  "Where to write; without it where the plan says. A file there is replaced");
    app()
        .add_option("--parts", m_parts, "Where the segments are; without it the folder beside the plan")
        ->type_name("FOLDER");
    addProgressOption(app(), m_progress);
    app().footer(
        "Example:\n  pointloom-cli join final.json -o final.mp4\n\n"
        "Nothing is encoded but the sound, when \"pointloom-cli segment final.json audio\" was not done.");
}

SegmentFolder JoinCommand::parts(const SegmentPlan& plan, const QString& planPath) const {
    return m_parts ? SegmentFolder(toPath(*m_parts), plan.job.settings.format)
                   : SegmentFolder::beside(planPath, plan);
}

ExitStatus JoinCommand::run() {
    const QString planPath = toPath(m_plan);
    const auto plan = SegmentPlan::load(planPath, QStringLiteral(POINTLOOM_VERSION));
    const SegmentFolder folder = parts(plan, planPath);
    const QString output = m_output ? toPath(*m_output) : plan.job.outputPath;
    std::vector<InputFile> inputs = inputFiles(plan, planPath);
    for (int number = 1; number <= plan.count(); ++number)
        inputs.push_back({folder.segment(number), QStringLiteral("a segment")});
    inputs.push_back({folder.sound(), QStringLiteral("the sound")});
    requireUsableOutput(output, inputs);

    const CancelOnSignal cancellation;
    ProgressDisplay display(*fromRawValue<ProgressMode>(m_progress));
    try {
        joinSegments(plan, folder, output,
                     {[&] { return cancellation.isRequested(); },
                      [&](const ExportProgress& progress) { display.update(progress); }});
    } catch (const ExportError& error) {
        throw faultOf(error, planPath);
    }
    display.finish(output);
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeJoinCommand(CLI::App& root) {
    return std::make_unique<JoinCommand>(
        *root.add_subcommand("join", "Join the finished segments of a plan"));
}

}
