// Files that are read, which no new file may replace.
#pragma once

#include <QString>
#include <vector>

namespace pointloom {

struct InputFile {
    QString path;
    QString role; // "the source video"
};

/// The first of the inputs that a file written to `path` would replace, by whatever name: through links,
/// hard links and links to folders. Null when there is none.
const InputFile* replacedInput(const QString& path, const std::vector<InputFile>& inputs);

}
