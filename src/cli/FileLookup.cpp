#include "cli/FileLookup.h"

#include "cli/CommandError.h"

#include <filesystem>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pointloom::cli {

std::optional<FoundFile> findFile(const QString& storedPath, const QString& projectPath) {
    const QDir folder = QFileInfo(projectPath).absoluteDir();
    const QString path = folder.absoluteFilePath(storedPath);
    if (storedPath.isEmpty())
        return std::nullopt;
    if (QFileInfo::exists(path))
        return FoundFile{path, false};
    const QString beside = folder.absoluteFilePath(QFileInfo(storedPath).fileName());
    return QFileInfo(beside).isFile() ? std::optional(FoundFile{beside, true}) : std::nullopt;
}

std::optional<QString> localPath(const QUrl& url) {
    if (url.isLocalFile())
        return url.toLocalFile();
    return url.isRelative() && !url.path().isEmpty() ? std::optional(url.path()) : std::nullopt;
}

namespace {

bool isSameFile(const QString& left, const QString& right) {
    std::error_code error; // one that does not exist is no other's equal
    return std::filesystem::equivalent(QFile::encodeName(left).toStdString(),
                                       QFile::encodeName(right).toStdString(), error);
}

}

void requireUsableFolder(const QString& path) {
    const QFileInfo folder(path);
    if (folder.exists() && !folder.isDir())
        throw CommandError(path + QStringLiteral(": is a file; pictures go into a folder"));
    if (folder.isDir() && !QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        throw CommandError(path + QStringLiteral(": the folder is not empty"));
    if (!folder.absoluteDir().exists())
        throw CommandError(path + QStringLiteral(": there is no folder ") + folder.absolutePath());
}

void requireUsableOutput(const QString& path, const std::vector<InputFile>& inputs) {
    const QFileInfo output(path);
    if (path.isEmpty())
        throw CommandError("the output has no name");
    if (output.isDir())
        throw CommandError(path + QStringLiteral(": is a folder; name a file in it"));
    if (output.exists() && !output.isFile())
        throw CommandError(path + QStringLiteral(": is not a regular file"));
    if (!output.absoluteDir().exists())
        throw CommandError(path + QStringLiteral(": there is no folder ") + output.absolutePath());
    for (const InputFile& input : inputs) {
        if (isSameFile(path, input.path))
            throw CommandError(path + QStringLiteral(": is ") + input.role +
                               QStringLiteral("; choose another output"));
    }
}

}
