// pointloom-cli export: burns the scoreboard into the video.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Commands.h"
#include "cli/DamageWarning.h"
#include "cli/ExportChoices.h"
#include "cli/LicenceOfThisMachine.h"
#include "cli/Messages.h"
#include "cli/ProgressDisplay.h"
#include "cli/ProjectInputs.h"
#include "export/Chapters.h"
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
    static ExitStatus printChapters(const ExportJob& job);

    std::string m_project;
    std::string m_output;
    std::optional<std::string> m_video;
    std::string m_format = "h264";
    std::string m_preset = "original";
    std::optional<double> m_trimStart;
    std::optional<double> m_trimEnd;
    std::optional<std::string> m_watermark;
    std::string m_watermarkCorner;
    std::string m_progress = "auto";
    bool m_withoutChapters = false;
    bool m_chaptersText = false;
    std::string m_encoderPreset;
};

ExportCommand::ExportCommand(CLI::App& subcommand)
    : Command(subcommand) {
    addProjectArgument(app(), m_project);
    addFileOption(app(), "-o,--output", m_output, videoFile,
                  "Where to write; without it a new file in the Downloads folder. A file there is replaced");
    addFileOption(app(), "--video", m_video, videoFile, "The source, in place of the project's video");
    addFormatOption(app(), m_format);
    addPresetOption(app(), m_preset);
    addTimeOption(app(), "--trim-start", m_trimStart, "Start of the range, in place of the project's");
    addTimeOption(app(), "--trim-end", m_trimEnd, "End of the range, in place of the project's");
    addFileOption(app(), "--watermark", m_watermark, imageFile,
                  "Logo in a corner, in place of the project's");
    limitChoices(app().add_option("--watermark-corner", m_watermarkCorner, "Its corner"),
                 rawValues<WatermarkCorner>());
    app().add_flag("--no-chapters", m_withoutChapters, "Do not make chapters of labelled markers");
    app().add_flag("--chapters-text", m_chaptersText,
                   "Print the chapters as video sites take them, and export nothing");
    addProgressOption(app(), m_progress);
    app().add_option("--encoder-preset", m_encoderPreset, "Speed preset of x264 or x265")->group("");
    app().footer(
        "Example:\n  pointloom-cli export final.plp -o final.mp4 --preset youtube4k --trim-end 90\n\n"
        "Ctrl-C stops the export and removes what was written; the exit status is then 130.");
}

ExportRequest ExportCommand::request() const {
    ExportRequest request;
    request.videoPath = toText(m_video);
    request.watermarkPath = toText(m_watermark);
    request.watermarkCorner = fromRawValue<WatermarkCorner>(m_watermarkCorner);
    request.trimStart = m_trimStart;
    request.trimEnd = m_trimEnd;
    request.format = formatOf(m_format);
    request.preset = presetOf(m_preset);
    request.outputPath = toText(m_output);
    request.encoderPreset = m_encoderPreset;
    return request;
}

ExitStatus ExportCommand::printChapters(const ExportJob& job) {
    const double end = job.trimEnd ? *job.trimEnd : media::readMediaInfo(job.videoPath).duration;
    const auto chapters = chaptersOf(job.overlay.markers, job.overlay.config, job.trimStart, end);
    if (chapters.empty())
        throw CommandError("no marker of the project has a label, so there are no chapters");
    print(chapterList(chapters).toStdString());
    return ExitStatus::done;
}

ExitStatus ExportCommand::run() {
    const QString projectPath = toText(m_project);
    ProjectInputs inputs = resolveInputs(ProjectFile::load(projectPath), projectPath, request());
    inputs.job.overlay.isLicensed = licenceOfThisMachine()->isLicensed();
    inputs.job.withChapters = !m_withoutChapters;
    const ExportJob& job = inputs.job;
    if (m_chaptersText)
        return printChapters(job);
    requireUsableOutput(job.outputPath, inputFiles(job, projectPath));

    const CancelOnSignal cancellation;
    ProgressDisplay display(*fromRawValue<ProgressMode>(m_progress));
    // Remarks wait until the export runs: one that cannot start says only why.
    Remarks unsaid = inputs.remarks;
    const auto showProgress = [&](const ExportProgress& progress) {
        say(std::exchange(unsaid, {}));
        display.update(progress);
    };
    try {
        const ExportReport report = ExportManager::exportVideo(
            job, [&] { return cancellation.isRequested(); }, showProgress);
        display.finish(job.outputPath);
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
