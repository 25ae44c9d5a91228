// The documents of a folder and the videos that are made of them.
#pragma once

#include "cli/OutputPlace.h"

#include <QString>
#include <QStringList>

namespace pointloom::cli {

struct FolderContents {
    QStringList documents; // paths below the folder, in the order of their names
    QStringList faults;    // "finals: cannot be read: Permission denied", in the same order
};

/// The project documents of a folder. Links to folders are not followed, hidden files and folders left out.
/// What cannot be read, or has a name that is not UTF-8, is a fault. Throws CommandError when it is no
/// folder.
FolderContents documentsIn(const QString& folder, bool withSubfolders);

/// "finals/court1.plp" becomes "finals/court1_scoreboard.mp4": never the name of a video that lies beside its
/// document.
QString outputNameFor(const QString& document, const QString& extension);

/// True when a file stands at `output` that was written after every one of `inputs` last changed.
bool isNewerThan(const QString& output, const std::vector<InputFile>& inputs);

}
