// pointloom-cli plan: cuts an export into segments that can be encoded apart from each other.
#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/LicenceOfThisMachine.h"
#include "cli/PlanInputs.h"
#include "cli/RequestOptions.h"
#include "export/segments/SegmentPlan.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class PlanCommand final : public Command {
public:
    explicit PlanCommand(CLI::App& subcommand);
    ExitStatus run() override;

private:
    QString outputPath() const;
    ExportRequest request() const;

    std::string m_project;
    int m_segments = 1;
    std::string m_plan;
    std::optional<std::string> m_output;
    RequestOptions m_options;
};

PlanCommand::PlanCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addProjectArgument(app(), m_project);
    app()
        .add_option("--segments", m_segments, "How many, at most")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, SegmentPlan::mostSegments))
        ->required();
    addOutputOption(app(), m_plan, planFile, "The plan to write");
    addFileOption(app(), "--to", m_output, videoFile,
                  "Where the joined video is to stand; without it beside the plan, under its name");
    m_options.addTo(app());
    app().footer("Example:\n  pointloom-cli plan final.plp --segments 8 -o final.json\n\n"
                 "Then \"pointloom-cli segment final.json K\" for each K, on any machine that sees the same "
                 "files, and\n"
                 "\"pointloom-cli join final.json\".");
}

QString PlanCommand::outputPath() const {
    if (m_output)
        return toPath(*m_output);
    const QFileInfo plan(toPath(m_plan));
    return plan.path() + u'/' + plan.completeBaseName() + u'.' + fileExtension(formatOf(m_options.format()));
}

ExportRequest PlanCommand::request() const {
    ExportRequest request = m_options.request();
    request.outputPath = outputPath();
    return request;
}

ExitStatus PlanCommand::run() {
    const QString projectPath = toPath(m_project);
    const QString planPath = toPath(m_plan);
    ProjectInputs inputs = resolveInputs(ProjectFile::load(projectPath), projectPath, request());
    inputs.job.overlay.isLicensed = isLicensed(*licenceOfThisMachine());
    for (const QString& path : {planPath, inputs.job.outputPath})
        requireUsableOutput(path, inputFiles(inputs.job));
    try {
        const auto plan = SegmentPlan::make(inputs.job, m_segments, QStringLiteral(POINTLOOM_VERSION));
        plan.save(planPath);
        noteFewerSegments(plan, m_segments, inputs.remarks);
    } catch (const ExportError& error) {
        throw faultOf(error, projectPath);
    }
    say(inputs.remarks);
    print(m_plan + '\n');
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makePlanCommand(CLI::App& root) {
    return std::make_unique<PlanCommand>(
        *root.add_subcommand("plan", "Cut an export into segments, for several machines"));
}

}
