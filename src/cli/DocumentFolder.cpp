#include "cli/DocumentFolder.h"

#include "cli/CommandError.h"

#include <algorithm>
#include <filesystem>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace pointloom::cli {

namespace {

namespace fs = std::filesystem;

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

// `below` is the path below the folder that was asked for, empty or with a slash at its end.
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

}

FolderContents documentsIn(const QString& folder, bool withSubfolders) {
    if (!QFileInfo(folder).isDir())
        throw CommandError(folder + QStringLiteral(": there is no such folder"));
    FolderContents found;
    addDocuments(QFile::encodeName(folder).toStdString(), {}, withSubfolders, found);
    found.documents.sort();
    found.faults.sort();
    return found;
}

QString outputNameFor(const QString& document, const QString& extension) {
    return QStringLiteral("%1_scoreboard.%2").arg(document.chopped(4), extension); // without ".plp"
}

bool isNewerThan(const QString& output, const std::vector<InputFile>& inputs) {
    const QFileInfo file(output);
    return file.isFile() && std::all_of(inputs.begin(), inputs.end(), [&](const InputFile& input) {
               return file.lastModified() > QFileInfo(input.path).lastModified();
           });
}

}
