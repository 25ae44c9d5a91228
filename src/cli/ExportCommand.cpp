// pointloom-cli export: burns the scoreboard into the video.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Commands.h"
#include "cli/DamageWarning.h"
#include "cli/LicenceOfThisMachine.h"
#include "cli/Messages.h"
#include "cli/PlanInputs.h"
#include "cli/ProgressDisplay.h"
#include "cli/RequestOptions.h"
#include "export/Chapters.h"
#include "export/ExportManager.h"
#include "export/OverlayExport.h"
#include "export/segments/ParallelExport.h"
#include "media/MediaError.h"
#include "media/MediaInfo.h"

#include <utility>

namespace pointloom::cli {

namespace {

class ExportCommand final : public Command {
public:
    explicit ExportCommand(CLI::App& subcommand);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    ExportRequest request() const;
    void settleFormat();
    void settleOutput(ExportJob& job) const;
    void settleEncoding(ProjectInputs& inputs);
    OverlayFormat overlayFormat() const {
        return m_options.format() == pngWord ? OverlayFormat::png : OverlayFormat::prores;
    }
    static ExitStatus printChapters(const ExportJob& job);
    ExportReport write(const ExportJob& job, const ExportControl& control) const;

    std::string m_project;
    std::optional<std::string> m_output;
    std::string m_progress = "auto";
    bool m_overlayOnly = false;
    bool m_chaptersText = false;
    std::string m_encoder = "auto";
    int m_jobs = 1;
    RequestOptions m_options;
    std::optional<SegmentPlan> m_plan; // of an export by several jobs
};

ExportCommand::ExportCommand(CLI::App& subcommand)
    : Command(subcommand) {
    constexpr int mostJobs = 64; // each holds pictures of its own
    addProjectArgument(app(), m_project);
    addFileOption(
        app(), "-o,--output", m_output, videoFile,
        "Where to write, in the place of a file there; without it a new file in the Downloads folder");
    m_options.addTo(app(), Transparent::too);
    addEncoderOption(app(), m_encoder);
    app()
        .add_option("--jobs", m_jobs, "Segments of the video to encode at the same time")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, mostJobs))
        ->capture_default_str();
    app().add_flag(
        "--overlay-only", m_overlayOnly,
        "The scoreboard alone on a transparent ground: ProRes 4444, or with --format png a folder of "
        "pictures");
    app().add_flag("--chapters-text", m_chaptersText,
                   "Print the chapters as video sites take them, and export nothing");
    addProgressOption(app(), m_progress);
    app().footer(
        "Example:\n  pointloom-cli export final.plp -o final.mp4 --preset youtube4k --trim-end 90\n\n"
        "Ctrl-C stops the export and removes what was written; the exit status is then 130.");
}

ExportRequest ExportCommand::request() const {
    ExportRequest request = m_options.request();
    request.settings.encoder = encoderOf(m_encoder);
    return request;
}

double endOfRange(const ExportJob& job) {
    try {
        const double duration = media::readMediaInfo(job.videoPath).duration;
        requireRange(job, duration);
        return pointloom::endOfRange(job.trimEnd, duration);
    } catch (const media::MediaError& error) {
        throw CommandError(job.videoPath + QStringLiteral(": ") + QString::fromUtf8(error.what()));
    }
}

ExitStatus ExportCommand::printChapters(const ExportJob& job) {
    const auto chapters = chaptersOf(job.overlay.markers, job.overlay.config, job.trimStart, endOfRange(job));
    if (chapters.empty())
        throw CommandError("no marker of the project has a label, so there are no chapters");
    print(chapterList(chapters).toStdString());
    return ExitStatus::done;
}

// Only some formats have transparency, and what H.264 is to whole videos ProRes is to overlays.
void ExportCommand::settleFormat() {
    if (m_overlayOnly && !m_options.isFormatGiven())
        m_options.setFormat("prores");
    if (m_overlayOnly && m_options.format() != pngWord &&
        formatOf(m_options.format()) != ExportFormat::prores)
        throw UsageError("--overlay-only: " + m_options.format() +
                         " has no transparency; use --format prores or png");
    if (m_overlayOnly && (m_jobs > 1 || encoderOf(m_encoder) != media::EncoderKind::software))
        throw UsageError("--overlay-only: is encoded by one job in software; leave out --jobs and --encoder");
    if (!m_overlayOnly && m_options.format() == pngWord)
        throw UsageError("--format png: pictures are for --overlay-only");
}

void ExportCommand::settleOutput(ExportJob& job) const {
    const bool isFolder = m_options.format() == pngWord;
    if (!m_output) {
        job.outputPath = newDefaultOutputPath(job.settings.format);
        job.ifExists = IfExists::addNumber;
        if (isFolder) // of the same name
            job.outputPath.chop(fileExtension(job.settings.format).size() + 1);
        return;
    }
    job.outputPath = toPath(*m_output);
    if (isFolder)
        requireUsableFolder(job.outputPath);
    else
        requireUsableOutput(job.outputPath, inputFiles(job));
}

// Settles what needs a look at the machine or into the video.
void ExportCommand::settleEncoding(ProjectInputs& inputs) {
    settleEncoder(inputs);
    if (m_jobs == 1)
        return;
    if (inputs.job.settings.encoder != media::EncoderKind::software) {
        inputs.remarks.notes += QStringLiteral("one job: an encoder in hardware serves one at a time");
        return;
    }
    m_plan = SegmentPlan::make(inputs.job, m_jobs, QStringLiteral(POINTLOOM_VERSION));
    noteFewerSegments(*m_plan, m_jobs, inputs.remarks);
}

ExportReport ExportCommand::write(const ExportJob& job, const ExportControl& control) const {
    if (m_plan)
        return exportInParallel(*m_plan, control, job.ifExists);
    return m_overlayOnly ? exportOverlay(job, overlayFormat(), control)
                         : ExportManager::exportVideo(job, control);
}

ExitStatus ExportCommand::run() {
    settleFormat();
    const QString projectPath = toPath(m_project);
    ProjectInputs inputs = resolveInputs(ProjectFile::load(projectPath), projectPath, request());
    inputs.job.overlay.isLicensed = isLicensed(*licenceOfThisMachine());
    const ExportJob& job = inputs.job;
    if (m_chaptersText)
        return printChapters(job);
    settleOutput(inputs.job);

    const CancelOnSignal cancellation;
    ProgressDisplay display(*fromRawValue<ProgressMode>(m_progress));
    try {
        settleEncoding(inputs);
        // Remarks wait until the export runs: one that cannot start says only why.
        Remarks unsaid = inputs.remarks;
        const auto showProgress = [&](const ExportProgress& progress) {
            say(std::exchange(unsaid, {}));
            display.update(progress);
        };
        const ExportReport report = write(job, {[&] { return cancellation.isRequested(); }, showProgress});
        display.finish(report.outputPath);
        if (const auto warning = damageWarning(report.damage))
            say(Remarks{.notes = {}, .warnings = {*warning}});
    } catch (const ExportError& error) {
        throw faultOf(error, projectPath);
    }
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeExportCommand(CLI::App& root) {
    return std::make_unique<ExportCommand>(
        *root.add_subcommand("export", "Export the project's video with the scoreboard burned in"));
}

}
