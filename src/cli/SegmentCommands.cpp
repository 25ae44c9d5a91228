// pointloom-cli plan, segment, join: one export cut into segments that are encoded apart from each other.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Command.h"
#include "cli/ExportArguments.h"
#include "cli/LicenceCommand.h"
#include "export/segments/SegmentExport.h"

#include <QFileInfo>

namespace pointloom::cli {

namespace {

class PlanCommand final : public Command {
public:
    explicit PlanCommand(CLI::App& root);
    ExitStatus run() override;

private:
    QString outputPath() const;

    QString m_project;
    int m_segments = 1;
    QString m_plan;
    std::optional<QString> m_output;
    ExportRequest m_request;
};

PlanCommand::PlanCommand(CLI::App& root)
    : Command(root, "plan", "Cut an export into segments, for several machines") {
    addProjectArgument(app(), m_project);
    app()
        .add_option("--segments", m_segments, "How many, at most")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, SegmentPlan::mostSegments))
        ->required();
    addOutputOption(app(), m_plan, planFile, "The plan to write");
    addPath(app(), "--to", m_output, videoFile,
            "Where the joined video is to stand; without it beside the plan, under its name");
    addRequestOptions(app(), m_request);
    app().footer("Example:\n  pointloom-cli plan final.plp --segments 8 -o final.json\n\n"
                 "Then \"pointloom-cli segment final.json K\" for each K, on any machine that sees the same "
                 "files, and\n"
                 "\"pointloom-cli join final.json\".");
}

QString PlanCommand::outputPath() const {
    const QFileInfo plan(m_plan);
    return m_output.value_or(plan.path() + u'/' + plan.completeBaseName() + u'.' +
                             fileExtension(m_request.settings.format));
}

ExitStatus PlanCommand::run() {
    m_request.outputPath = outputPath();
    ProjectInputs inputs = resolveInputs(ProjectFile::load(m_project), m_project, m_request);
    inputs.job.overlay.isLicensed = isLicensed(*licenceOfThisMachine());
    for (const QString& path : {m_plan, inputs.job.outputPath})
        requireUsableOutput(path, inputFiles(inputs.job));
    try {
        makePlan(inputs, m_segments).save(m_plan);
    } catch (const ExportError& error) {
        throw faultOf(error, m_project);
    }
    say(inputs.remarks);
    print(m_plan.toStdString() + '\n');
    return ExitStatus::done;
}

void addPlanArgument(CLI::App& app, QString& path) {
    addPath(app, "plan", path, planFile, "The plan, as \"plan\" wrote it")->required();
}

SegmentPlan loadPlan(const QString& path) {
    return SegmentPlan::load(path, QStringLiteral(POINTLOOM_VERSION));
}

// The files that no segment and no joined video may replace.
std::vector<InputFile> inputFiles(const SegmentPlan& plan, const QString& planPath) {
    std::vector<InputFile> files{{planPath, QStringLiteral("the plan itself")}};
    for (const QString& video : plan.job.recording().files())
        files.push_back({video, QStringLiteral("the source video")});
    for (const FileFingerprint& picture : plan.pictures)
        files.push_back({picture.path, QStringLiteral("a logo")});
    return files;
}

constexpr std::string_view soundWord = "audio";

class SegmentCommand final : public Command {
public:
    explicit SegmentCommand(CLI::App& root);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    bool isSound() const { return m_segment == soundWord; }
    int number() const { return std::stoi(m_segment); }
    QString pathFor(const SegmentPlan& plan) const;
    void encode(const SegmentPlan& plan, const QString& path) const;

    QString m_plan;
    std::string m_segment;
    std::optional<QString> m_output;
    ProgressMode m_progress = ProgressMode::automatic;
};

std::string faultOfNumber(const std::string& text) {
    constexpr std::size_t mostDigits = 6;
    const bool isNumber = !text.empty() && text.size() <= mostDigits &&
                          text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber || text == soundWord
               ? std::string()
               : json::inQuotes(text) + " is neither the number of a segment nor \"audio\"";
}

SegmentCommand::SegmentCommand(CLI::App& root)
    : Command(root, "segment", "Encode one segment of a plan, on any machine that sees its files") {
    addPlanArgument(app(), m_plan);
    app()
        .add_option("segment", m_segment, "Its number, from 1; or audio, for the sound of all")
        ->type_name("NUMBER")
        ->check(faultOfNumber)
        ->required();
    addPath(app(), "-o,--output", m_output, videoFile,
            "Where to write; without it in the folder of parts beside the plan, where join looks");
    addProgressOption(app(), m_progress);
    app().footer("Example:\n  pointloom-cli segment final.json 3\n\n"
                 "A segment that is finished already is left as it is.");
}

QString SegmentCommand::pathFor(const SegmentPlan& plan) const {
    const SegmentFolder folder = SegmentFolder::beside(m_plan, plan);
    if (!m_output)
        folder.create();
    const QString beside = isSound() ? folder.sound() : folder.segment(number());
    const QString path = m_output.value_or(beside);
    requireUsableOutput(path, inputFiles(plan, m_plan));
    return path;
}

ExitStatus SegmentCommand::run() {
    const SegmentPlan plan = loadPlan(m_plan);
    if (isSound() && !plan.hasSound)
        throw CommandError(m_plan + QStringLiteral(": the video has no sound"));
    if (!isSound())
        (void)plan.window(number()); // throws when the plan has no such segment
    try {
        encode(plan, pathFor(plan));
    } catch (const ExportError& error) {
        throw faultOf(error, m_plan);
    }
    return ExitStatus::done;
}

void SegmentCommand::encode(const SegmentPlan& plan, const QString& path) const {
    const CancelOnSignal cancellation;
    ProgressDisplay display(m_progress);
    if (isSound()) {
        if (!encodeSound(plan, path, display.control(cancellation)))
            sayNote(QStringLiteral("the sound was finished already"));
        return display.finish(path);
    }
    const auto report = encodeSegment(plan, number(), path, display.control(cancellation));
    display.finish(path);
    if (report)
        say(*report);
    else
        sayNote(QStringLiteral("segment %1 was finished already").arg(number()));
}

class JoinCommand final : public Command {
public:
    explicit JoinCommand(CLI::App& root);
    ExitStatus run() override;

private:
    QString m_plan;
    std::optional<QString> m_output;
    std::optional<QString> m_parts;
    ProgressMode m_progress = ProgressMode::automatic;
};

JoinCommand::JoinCommand(CLI::App& root)
    : Command(root, "join", "Join the finished segments of a plan") {
    addPlanArgument(app(), m_plan);
    addPath(app(), "-o,--output", m_output, videoFile,
            "Where to write; without it where the plan says. A file there is replaced");
    addPath(app(), "--parts", m_parts, folderPath,
            "Where the segments are; without it the folder beside the plan");
    addProgressOption(app(), m_progress);
    app().footer(
        "Example:\n  pointloom-cli join final.json -o final.mp4\n\n"
        "Nothing is encoded but the sound, when \"pointloom-cli segment final.json audio\" was not done.");
}

ExitStatus JoinCommand::run() {
    const SegmentPlan plan = loadPlan(m_plan);
    const SegmentFolder folder =
        m_parts ? SegmentFolder(*m_parts, plan.job.settings.format) : SegmentFolder::beside(m_plan, plan);
    const QString output = m_output.value_or(plan.job.outputPath);
    std::vector<InputFile> inputs = inputFiles(plan, m_plan);
    for (int number = 1; number <= plan.count(); ++number)
        inputs.push_back({folder.segment(number), QStringLiteral("a segment")});
    inputs.push_back({folder.sound(), QStringLiteral("the sound")});
    requireUsableOutput(output, inputs);

    const CancelOnSignal cancellation;
    ProgressDisplay display(m_progress);
    ExportReport report;
    try {
        report = joinSegments(plan, folder, output, display.control(cancellation));
    } catch (const ExportError& error) {
        throw faultOf(error, m_plan);
    }
    display.finish(output);
    say(report);
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makePlanCommand(CLI::App& root) {
    return std::make_unique<PlanCommand>(root);
}

std::unique_ptr<Command> makeSegmentCommand(CLI::App& root) {
    return std::make_unique<SegmentCommand>(root);
}

std::unique_ptr<Command> makeJoinCommand(CLI::App& root) {
    return std::make_unique<JoinCommand>(root);
}

}
