// Where a command may write: never over what it reads.
#pragma once

#include "files/NewFile.h"

namespace pointloom::cli {

/// Throws CommandError unless a folder that is empty, or not there yet, can stand at `path`.
void requireUsableFolder(const QString& path);

/// Throws CommandError unless a file can stand at `path`: a folder that exists, no pipe or device, and
/// none of the inputs, by whatever name.
void requireUsableOutput(const QString& path, const std::vector<InputFile>& inputs);

}
