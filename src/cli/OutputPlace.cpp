#include "cli/OutputPlace.h"

#include "cli/CommandError.h"
#include "files/NewFile.h"

#include <QDir>
#include <QFileInfo>

namespace pointloom::cli {

void requireUsableFolder(const QString& path) {
    const QFileInfo folder(path);
    if (path.isEmpty())
        throw CommandError("the output has no name");
    if (folder.exists() && !folder.isDir())
        throw CommandError(path + QStringLiteral(": is a file; pictures go into a folder"));
    if (folder.isDir() && !NewFolder::canBeAt(path))
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
    if (const InputFile* input = replacedInput(path, inputs))
        throw CommandError(path + QStringLiteral(": is ") + input->role +
                           QStringLiteral("; choose another output"));
}

}
