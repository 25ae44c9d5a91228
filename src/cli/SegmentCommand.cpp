// pointloom-cli segment: encodes one segment of a plan, or its sound.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Commands.h"
#include "cli/DamageWarning.h"
#include "cli/ExportChoices.h"
#include "cli/Messages.h"
#include "cli/PlanInputs.h"
#include "cli/ProgressDisplay.h"
#include "cli/ProjectInputs.h"
#include "export/segments/SegmentExport.h"

namespace pointloom::cli {

namespace {

constexpr std::string_view soundWord = "audio";

class SegmentCommand final : public Command {
public:
    explicit SegmentCommand(CLI::App& subcommand);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    QString pathFor(const SegmentPlan& plan, const QString& planPath) const;
    int number() const { return std::stoi(m_segment); }
    void runSound(const SegmentPlan& plan, const QString& path);
    void runSegment(const SegmentPlan& plan, const QString& path);

    std::string m_plan;
    std::string m_segment;
    std::optional<std::string> m_output;
    std::string m_progress = "auto";
};

std::string faultOfNumber(const std::string& text) {
    constexpr std::size_t mostDigits = 6;
    const bool isNumber = !text.empty() && text.size() <= mostDigits &&
                          text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber || text == soundWord
               ? std::string()
               : json::inQuotes(text) + " is neither the number of a segment nor \"audio\"";
}

SegmentCommand::SegmentCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addPlanArgument(app(), m_plan);
    app()
        .add_option("segment", m_segment, "Its number, from 1; or audio, for the sound of all")
        ->type_name("NUMBER")
        ->check(faultOfNumber)
        ->required();
    addFileOption(app(), "-o,--output", m_output, videoFile,
                  "Where to write; without it in the folder of parts beside the plan, where join looks");
    addProgressOption(app(), m_progress);
    app().footer("Example:\n  pointloom-cli segment final.json 3\n\n"
                 "A segment that is finished already is left as it is.");
}

QString SegmentCommand::pathFor(const SegmentPlan& plan, const QString& planPath) const {
    const SegmentFolder folder = SegmentFolder::beside(planPath, plan);
    if (!m_output)
        folder.create();
    const QString beside = m_segment == soundWord ? folder.sound() : folder.segment(number());
    const QString path = m_output ? toPath(*m_output) : beside;
    requireUsableOutput(path, inputFiles(plan, planPath));
    return path;
}

ExitStatus SegmentCommand::run() {
    const QString planPath = toPath(m_plan);
    const auto plan = SegmentPlan::load(planPath, QStringLiteral(POINTLOOM_VERSION));
    if (m_segment == soundWord && !plan.hasSound)
        throw CommandError(planPath + QStringLiteral(": the video has no sound"));
    if (m_segment != soundWord)
        (void)plan.window(number());
    try {
        const QString path = pathFor(plan, planPath);
        if (m_segment == soundWord)
            runSound(plan, path);
        else
            runSegment(plan, path);
    } catch (const ExportError& error) {
        throw faultOf(error, planPath);
    }
    return ExitStatus::done;
}

void SegmentCommand::runSound(const SegmentPlan& plan, const QString& path) {
    const CancelOnSignal cancellation;
    if (!encodeSound(plan, path, {[&] { return cancellation.isRequested(); }}))
        say(Remarks{.notes = {QStringLiteral("the sound was finished already")}, .warnings = {}});
    ProgressDisplay(*fromRawValue<ProgressMode>(m_progress)).finish(path);
}

void SegmentCommand::runSegment(const SegmentPlan& plan, const QString& path) {
    const CancelOnSignal cancellation;
    ProgressDisplay display(*fromRawValue<ProgressMode>(m_progress));
    const auto report = encodeSegment(plan, number(), path,
                                      {[&] { return cancellation.isRequested(); },
                                       [&](const ExportProgress& progress) { display.update(progress); }});
    display.finish(path);
    if (!report)
        say(Remarks{.notes = {QStringLiteral("segment %1 was finished already").arg(number())},
                    .warnings = {}});
    else if (const auto warning = damageWarning(report->damage))
        say(Remarks{.notes = {}, .warnings = {*warning}});
}

}

std::unique_ptr<Command> makeSegmentCommand(CLI::App& root) {
    return std::make_unique<SegmentCommand>(
        *root.add_subcommand("segment", "Encode one segment of a plan, on any machine that sees its files"));
}

}
