#include "cli/OutputPlace.h"

#include "cli/CommandError.h"

#include <filesystem>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pointloom::cli {

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
