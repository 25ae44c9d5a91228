// pointloom-cli export: burns the scoreboard into the video.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Command.h"
#include "cli/ExportArguments.h"
#include "cli/LicenceCommand.h"
#include "export/Chapters.h"
#include "export/ExportTimeline.h"
#include "export/OverlayExport.h"
#include "persistence/KeptSegments.h"

#include <utility>

namespace pointloom::cli {

namespace {

class ExportCommand final : public Command {
public:
    explicit ExportCommand(CLI::App& root);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    void settleFormat();
    void settleOutput(ExportJob& job) const;
    void settleEncoding(ProjectInputs& inputs);
    ExportReport write(const ExportJob& job, const ExportControl& control) const;

    QString m_project;
    std::optional<QString> m_output;
    ExportRequest m_request;
    ProgressMode m_progress = ProgressMode::automatic;
    bool m_overlayOnly = false;
    bool m_asPictures = false; // an overlay as a folder of them
    bool m_chaptersText = false;
    ReuseChoices m_reuse;
};

ExportCommand::ExportCommand(CLI::App& root)
    : Command(root, "export", "Export the project's video with the scoreboard burned in") {
    constexpr int mostJobs = 64; // each holds frames of its own
    addProjectArgument(app(), m_project);
    addPath(app(), "-o,--output", m_output, videoFile,
            "Where to write, in the place of a file there; without it a new file in the Downloads folder");
    addRequestOptions(app(), m_request, Pictures::too);
    addEncoderOption(app(), m_request);
    app()
        .add_option("--jobs", m_reuse.atOnce, "Segments of the video to encode at the same time")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, mostJobs));
    addFreshOption(app(), m_reuse);
    app().add_flag(
        "--overlay-only", m_overlayOnly,
        "The scoreboard alone on a transparent ground: ProRes 4444, or with --format png a folder of "
        "pictures");
    app().add_flag("--chapters-text", m_chaptersText,
                   "Print the chapters as video sites take them, and export nothing");
    addProgressOption(app(), m_progress);
    app().footer(
        "Example:\n  pointloom-cli export final.plp -o final.mp4 --preset youtube4k --trim-end 90\n\n"
        "Ctrl-C stops the export; the exit status is then 130. The next export goes on where it was.");
}

void printChapters(const ExportJob& job) {
    const auto chapters = chaptersOf(job, exportTimeline(job, videoInfo(job)).map);
    if (chapters.empty())
        throw CommandError("no marker of the project has a label, so there are no chapters");
    print(chapterList(chapters).toStdString());
}

// Only some formats have transparency, and what H.264 is to whole videos ProRes is to overlays.
void ExportCommand::settleFormat() {
    const CLI::Option& format = *app().get_option("--format");
    const auto word = format.as<std::string>();
    m_asPictures = word == pngWord;
    if (!m_overlayOnly) {
        if (m_asPictures)
            throw UsageError("--format png: pictures are for --overlay-only");
        return;
    }
    if (format.empty())
        m_request.settings.format = ExportFormat::prores;
    if (!m_asPictures && m_request.settings.format != ExportFormat::prores)
        throw UsageError("--overlay-only: " + word + " has no transparency; use --format prores or png");
    if (m_reuse.atOnce > 1 || m_request.settings.encoder != media::EncoderKind::software)
        throw UsageError("--overlay-only: is encoded by one job in software; leave out --jobs and --encoder");
}

void ExportCommand::settleOutput(ExportJob& job) const {
    if (!m_output) {
        job.outputPath = newDefaultOutputPath(job.settings.format);
        job.ifExists = IfExists::addNumber;
        if (m_asPictures) // a folder of the same name
            job.outputPath.chop(fileExtension(job.settings.format).size() + 1);
        return;
    }
    job.outputPath = *m_output;
    if (m_asPictures)
        requireUsableFolder(job.outputPath);
    else
        requireUsableOutput(job.outputPath, inputFiles(job));
}

// Needs to try the encoder.
void ExportCommand::settleEncoding(ProjectInputs& inputs) {
    settleEncoder(inputs);
    if (m_reuse.atOnce > 1 && inputs.job.settings.encoder != media::EncoderKind::software)
        inputs.remarks.notes += QStringLiteral("one job: an encoder in hardware serves one at a time");
}

ExportReport ExportCommand::write(const ExportJob& job, const ExportControl& control) const {
    if (m_overlayOnly)
        return exportOverlay(job, m_asPictures ? OverlayFormat::png : OverlayFormat::prores, control);
    return exportReusing(job, KeptSegments::cache(), control, m_reuse);
}

ExitStatus ExportCommand::run() {
    settleFormat();
    ProjectInputs inputs = resolveInputs(ProjectFile::load(m_project), m_project, m_request);
    inputs.job.overlay.isLicensed = isLicensed(*licenceOfThisMachine());
    const ExportJob& job = inputs.job;
    if (m_chaptersText) {
        printChapters(job);
        return ExitStatus::done;
    }
    settleOutput(inputs.job);

    const CancelOnSignal cancellation;
    ProgressDisplay display(m_progress);
    try {
        settleEncoding(inputs);
        // Remarks wait until the export runs: one that cannot start says only why.
        Remarks unsaid = inputs.remarks;
        ExportControl control = display.control(cancellation);
        control.onProgress = [&](const ExportProgress& progress) {
            say(std::exchange(unsaid, {}));
            display.update(progress);
        };
        const ExportReport report = write(job, control);
        display.finish(report.outputPath);
        say(report);
    } catch (const ExportError& error) {
        throw faultOf(error, m_project);
    }
    return ExitStatus::done;
}

}

std::unique_ptr<Command> makeExportCommand(CLI::App& root) {
    return std::make_unique<ExportCommand>(root);
}

}
