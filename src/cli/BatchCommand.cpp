// pointloom-cli batch: exports every document of a folder.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Commands.h"
#include "cli/DamageWarning.h"
#include "cli/DocumentFolder.h"
#include "cli/ExportChoices.h"
#include "cli/LicenceOfThisMachine.h"
#include "cli/Messages.h"
#include "cli/ProgressDisplay.h"
#include "cli/ProjectInputs.h"
#include "export/ExportManager.h"

#include <QDir>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

struct Summary {
    int done = 0;
    int skipped = 0;
    QStringList failures; // "court1.plp: the video is missing: ..."
};

// Messages begin with the document's name already, some with its whole path; two of one name in different
// folders are told apart by the path below the folder.
QString nameOnce(const QString& document, const QString& message) {
    const QString name = QFileInfo(document).fileName() + QStringLiteral(": ");
    const auto at = message.indexOf(name);
    const bool leads = at == 0 || (at > 0 && message[at - 1] == u'/' && !message.left(at).contains(u": "));
    return document + QStringLiteral(": ") + (leads ? message.mid(at + name.size()) : message);
}

// QDir takes a name that begins with a colon for a resource's.
QString inFolder(const QString& folder, const QString& name) {
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

Remarks named(const QString& document, Remarks remarks) {
    for (QStringList* kind : {&remarks.notes, &remarks.warnings}) {
        for (QString& remark : *kind)
            remark.prepend(document + QStringLiteral(": "));
    }
    return remarks;
}

class BatchCommand final : public Command {
public:
    explicit BatchCommand(CLI::App& subcommand);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    void exportAll(const QStringList& documents, Summary& summary);
    void exportOne(const QString& document, Summary& summary, const CancelOnSignal& cancellation);
    void protectInputsOf(const QStringList& documents);
    QString pathOf(const QString& document) const { return inFolder(toPath(m_folder), document); }
    ProjectInputs inputsOf(const QString& document) const;
    void tell(const Summary& summary) const;
    ProgressMode progressMode() const { return *fromRawValue<ProgressMode>(m_progress); }

    std::string m_folder;
    std::optional<std::string> m_outputFolder;
    bool m_withSubfolders = false;
    bool m_again = false;
    std::string m_format = "h264";
    std::string m_preset = "original";
    std::string m_quality = "default";
    std::string m_encoder = "auto";
    std::string m_progress = "auto";
    std::unique_ptr<LicenceManager> m_licence;
    std::vector<InputFile> m_protected; // what all documents read, and the videos of those that are done
};

BatchCommand::BatchCommand(CLI::App& subcommand)
    : Command(subcommand) {
    app()
        .add_option("folder", m_folder, "The folder with the project documents")
        ->type_name("FOLDER")
        ->required();
    app()
        .add_option("--output-dir", m_outputFolder, "Where to write; without it beside each document")
        ->type_name("FOLDER");
    app().add_flag("--recursive", m_withSubfolders, "Take the documents of its subfolders too");
    app().add_flag("--again", m_again, "Export also what is up to date");
    addFormatOption(app(), m_format);
    addPresetOption(app(), m_preset);
    addQualityOption(app(), m_quality);
    addEncoderOption(app(), m_encoder);
    addProgressOption(app(), m_progress);
    app().footer(
        "Example:\n  pointloom-cli batch tournament --recursive --output-dir videos\n\n"
        "court1.plp becomes court1_scoreboard.mp4. A video that is newer than its document and what\n"
        "that names is kept, so that a batch that was stopped goes on where it was. Ctrl-C removes the\n"
        "video that was being written. The exit status is 1 when any document failed.");
}

ExitStatus BatchCommand::run() {
    const FolderContents found = documentsIn(toPath(m_folder), m_withSubfolders);
    if (found.documents.isEmpty() && found.faults.isEmpty())
        throw CommandError(toPath(m_folder) + QStringLiteral(": holds no project documents (.plp)"));
    if (m_outputFolder && m_outputFolder->empty())
        throw CommandError("the output folder has no name");
    m_licence = licenceOfThisMachine();
    Summary summary;
    summary.failures = found.faults;
    protectInputsOf(found.documents);
    try {
        exportAll(found.documents, summary);
    } catch (const ExportCancelled&) {
        tell(summary);
        throw;
    }
    tell(summary);
    return summary.failures.isEmpty() ? ExitStatus::done : ExitStatus::failed;
}

// Those of documents that cannot be exported count too.
void BatchCommand::protectInputsOf(const QStringList& documents) {
    for (const QString& document : documents) {
        m_protected.push_back({pathOf(document), document});
        try {
            for (InputFile& file : inputFiles(ProjectFile::load(pathOf(document)), pathOf(document))) {
                file.role += QStringLiteral(" of ") + document;
                m_protected.push_back(std::move(file));
            }
        } catch (const std::exception&) {
            continue; // its fault is told in its turn
        }
    }
}

void BatchCommand::exportAll(const QStringList& documents, Summary& summary) {
    const CancelOnSignal cancellation;
    for (const QString& document : documents) {
        if (cancellation.isRequested())
            throw ExportCancelled();
        try {
            exportOne(document, summary, cancellation);
        } catch (const ExportCancelled&) {
            throw;
        } catch (const std::exception& error) {
            summary.failures += nameOnce(document, QString::fromUtf8(error.what()));
        }
    }
}

void BatchCommand::exportOne(const QString& document, Summary& summary, const CancelOnSignal& cancellation) {
    ProjectInputs inputs = inputsOf(document);
    const QString output = inputs.job.outputPath;
    if (const InputFile* input = replacedInput(output, m_protected))
        throw CommandError(output + QStringLiteral(": is ") + input->role + QStringLiteral("; rename one"));
    if (!m_again && isNewerThan(output, inputFiles(inputs.job))) {
        ++summary.skipped;
        m_protected.push_back({output, QStringLiteral("the new video of ") + document});
        return;
    }
    QDir().mkpath(QFileInfo(output).absolutePath());
    requireUsableOutput(output, {});
    settleEncoder(inputs);
    say(named(document, inputs.remarks));

    ProgressDisplay display(progressMode());
    display.begin(document);
    inputs.job.overlay.isLicensed = isLicensed(*m_licence);
    const ExportReport report = ExportManager::exportVideo(
        inputs.job, {[&] { return cancellation.isRequested(); },
                     [&](const ExportProgress& progress) { display.update(progress); }});
    display.finish(output);
    m_protected.push_back({output, QStringLiteral("the new video of ") + document});
    ++summary.done;
    if (const auto warning = damageWarning(report.damage))
        say(named(document, {.notes = {}, .warnings = {*warning}}));
}

ProjectInputs BatchCommand::inputsOf(const QString& document) const {
    const QString outputFolder = toPath(m_outputFolder.value_or(m_folder));
    const QString projectPath = pathOf(document);
    ExportRequest request;
    request.settings.format = formatOf(m_format);
    request.settings.preset = presetOf(m_preset);
    request.settings.quality = qualityOf(m_quality);
    request.settings.encoder = encoderOf(m_encoder);
    request.outputPath =
        inFolder(outputFolder, outputNameFor(document, fileExtension(request.settings.format)));
    ProjectInputs inputs = resolveInputs(ProjectFile::load(projectPath), projectPath, request);
    return inputs;
}

void BatchCommand::tell(const Summary& summary) const {
    for (const QString& failure : summary.failures)
        sayOnStandardError("failed: " + failure.toStdString());
    if (progressMode() == ProgressMode::json) {
        json::OrderedValue failures = json::OrderedValue::array();
        for (const QString& failure : summary.failures)
            failures.push_back(failure.toStdString());
        print(
            json::OrderedValue{{"exported", summary.done}, {"skipped", summary.skipped}, {"failed", failures}}
                .dump() +
            '\n');
        return;
    }
    sayOnStandardError(std::to_string(summary.done) + " done, " + std::to_string(summary.skipped) +
                       " skipped, " + std::to_string(summary.failures.size()) + " failed");
}

}

std::unique_ptr<Command> makeBatchCommand(CLI::App& root) {
    return std::make_unique<BatchCommand>(*root.add_subcommand("batch", "Export every project of a folder"));
}

}
