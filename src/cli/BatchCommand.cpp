// pointloom-cli batch: exports every document of a folder.
#include "cli/Arguments.h"
#include "cli/CancelOnSignal.h"
#include "cli/Command.h"
#include "cli/ExportArguments.h"
#include "cli/LicenceCommand.h"
#include "export/ExportQueue.h"
#include "persistence/KeptSegments.h"

#include <algorithm>
#include <filesystem>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

namespace fs = std::filesystem;

struct FolderContents {
    QStringList documents; // paths below the folder, in the order of their names
    QStringList faults;    // "finals: cannot be read: Permission denied", in the same order
};

bool isDocument(const fs::directory_entry& entry) {
    std::error_code error;
    return QString::fromStdString(entry.path().extension().string())
                   .compare(QStringLiteral(".plp"), Qt::CaseInsensitive) == 0 &&
           entry.is_regular_file(error);
}

bool isFolder(const fs::directory_entry& entry) {
    std::error_code error;
    return entry.is_directory(error) && !entry.is_symlink(error);
}

// Links to folders are not followed, hidden files and folders left out. `below` is the path below the
// requested folder, empty or with a slash at its end.
void addDocuments(const fs::path& folder, const QString& below, bool withSubfolders, FolderContents& found) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const QByteArray bytes = QByteArray::fromStdString(entry->path().filename().string());
        const bool isWanted = isDocument(*entry) || (withSubfolders && isFolder(*entry));
        if (!isWanted || bytes.startsWith('.'))
            continue;
        const QString path = below + QFile::decodeName(bytes);
        if (QFile::encodeName(QFile::decodeName(bytes)) != bytes)
            found.faults += path + QStringLiteral(": its name is not UTF-8; rename it");
        else if (isDocument(*entry))
            found.documents += path;
        else
            addDocuments(entry->path(), path + u'/', withSubfolders, found);
    }
    if (error)
        found.faults += (below.isEmpty() ? QStringLiteral("the folder") : below.chopped(1)) +
                        QStringLiteral(": cannot be read: ") + QString::fromStdString(error.message());
}

// The project documents of a folder. An entry that cannot be read, or has a name that is not UTF-8, is a
// fault.
FolderContents documentsIn(const QString& folder, bool withSubfolders) {
    if (!QFileInfo(folder).isDir())
        throw CommandError(folder + QStringLiteral(": there is no such folder"));
    FolderContents found;
    addDocuments(QFile::encodeName(folder).toStdString(), {}, withSubfolders, found);
    found.documents.sort();
    found.faults.sort();
    return found;
}

// "finals/court1.plp" becomes "finals/court1_scoreboard.mp4": never the name of a video that lies beside its
// document.
QString outputNameFor(const QString& document, const QString& extension) {
    return QStringLiteral("%1_scoreboard.%2").arg(document.chopped(4), extension); // without ".plp"
}

// True when a file at `output` was written after every one of `inputs` last changed.
bool isNewerThan(const QString& output, const std::vector<InputFile>& inputs) {
    const QFileInfo file(output);
    return file.isFile() && std::all_of(inputs.begin(), inputs.end(), [&](const InputFile& input) {
               return file.lastModified() > QFileInfo(input.path).lastModified();
           });
}

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

class BatchCommand final : public Command {
public:
    explicit BatchCommand(CLI::App& root);
    bool drawsPictures() const override { return true; }
    ExitStatus run() override;

private:
    void exportAll(const QStringList& documents, Summary& summary);
    void exportOne(const QString& document, Summary& summary, const CancelOnSignal& cancellation);
    void protectInputsOf(const QStringList& documents);
    QString pathOf(const QString& document) const { return inFolder(m_folder, document); }
    ProjectInputs inputsOf(const QString& document) const;
    void tell(const Summary& summary) const;

    QString m_folder;
    std::optional<QString> m_outputFolder;
    bool m_withSubfolders = false;
    bool m_again = false;
    ExportRequest m_request;
    ReuseChoices m_reuse;
    ProgressMode m_progress = ProgressMode::automatic;
    std::unique_ptr<LicenceManager> m_licence;
    ExportQueue m_queue{{[this](const ExportJob& job, const ExportControl& control) {
                             return exportReusing(job, KeptSegments::cache(), control, m_reuse);
                         },
                         {},
                         {},
                         {}}};
    std::vector<InputFile> m_protected; // the inputs of all documents, and the videos of those that are done
};

BatchCommand::BatchCommand(CLI::App& root)
    : Command(root, "batch", "Export every project of a folder") {
    addPath(app(), "folder", m_folder, folderPath, "The folder with the project documents")->required();
    addPath(app(), "--output-dir", m_outputFolder, folderPath,
            "Where to write; without it beside each document");
    app().add_flag("--recursive", m_withSubfolders, "Take the documents of its subfolders too");
    app().add_flag("--again", m_again, "Export also what is up to date");
    addEncodingOptions(app(), m_request);
    addEncoderOption(app(), m_request);
    addFreshOption(app(), m_reuse);
    addProgressOption(app(), m_progress);
    app().footer(
        "Example:\n  pointloom-cli batch tournament --recursive --output-dir videos\n\n"
        "court1.plp becomes court1_scoreboard.mp4. A video that is newer than its document and what\n"
        "that names is kept, so that a batch that was stopped goes on where it was, in the middle of a\n"
        "video too. The exit status is 1 when any document failed.");
}

ExitStatus BatchCommand::run() {
    const FolderContents found = documentsIn(m_folder, m_withSubfolders);
    if (found.documents.isEmpty() && found.faults.isEmpty())
        throw CommandError(m_folder + QStringLiteral(": holds no project documents (.plp)"));
    if (m_outputFolder && m_outputFolder->isEmpty())
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

// The inputs of documents that cannot be exported count too.
void BatchCommand::protectInputsOf(const QStringList& documents) {
    for (const QString& document : documents) {
        m_protected.push_back({pathOf(document), document});
        try {
            for (InputFile& file : inputFiles(ProjectFile::load(pathOf(document)), pathOf(document))) {
                file.role += QStringLiteral(" of ") + document;
                m_protected.push_back(std::move(file));
            }
        } catch (const std::exception&) {
            continue; // its fault is reported when it is exported
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
    const QString prefix = document + QStringLiteral(": ");
    say(inputs.remarks, prefix);

    ProgressDisplay display(m_progress);
    display.begin(document);
    inputs.job.overlay.isLicensed = isLicensed(*m_licence);
    m_queue.add({.name = document, .job = inputs.job});
    const auto ended = m_queue.runNext(display.control(cancellation)).value();
    m_queue.removeEnded();
    if (ended.state == QueueState::cancelled)
        throw ExportCancelled();
    if (ended.state == QueueState::failed)
        throw CommandError(ended.message);
    display.finish(output);
    m_protected.push_back({output, QStringLiteral("the new video of ") + document});
    ++summary.done;
    say(ended.report, prefix);
}

ProjectInputs BatchCommand::inputsOf(const QString& document) const {
    ExportRequest request = m_request;
    request.outputPath = inFolder(m_outputFolder.value_or(m_folder),
                                  outputNameFor(document, fileExtension(request.settings.format)));
    return resolveInputs(ProjectFile::load(pathOf(document)), pathOf(document), request);
}

void BatchCommand::tell(const Summary& summary) const {
    for (const QString& failure : summary.failures)
        sayOnStandardError("failed: " + failure.toStdString());
    if (m_progress == ProgressMode::json) {
        const json::OrderedValue object{
            {"exported", summary.done}, {"skipped", summary.skipped}, {"failed", jsonList(summary.failures)}};
        return print(object.dump() + '\n');
    }
    sayOnStandardError(std::to_string(summary.done) + " done, " + std::to_string(summary.skipped) +
                       " skipped, " + std::to_string(summary.failures.size()) + " failed");
}

}

std::unique_ptr<Command> makeBatchCommand(CLI::App& root) {
    return std::make_unique<BatchCommand>(root);
}

}
