// Finds the files that a document names.
#pragma once

#include "persistence/ProjectFile.h"

#include <optional>
#include <QString>

namespace pointloom {

struct NamedFile {
    QString storedPath;            // as the document says; the address of a picture on another machine
    std::optional<QString> path;   // where the file is; none: missing
    bool isBesideDocument = false; // found by its name next to the document, not where the document says
};

/// Files that a document does not name are empty.
struct ProjectFiles {
    std::optional<NamedFile> video;
    std::optional<NamedFile> logo;
    std::optional<NamedFile> watermark;
};

/// Each file where the document says or, when both were moved together, beside the document. Relative paths
/// count from the document's folder. A picture on another machine is never found.
ProjectFiles locateFiles(const ProjectFile& project, const QString& documentPath);

}
