// Between project documents and the session.
#pragma once

#include "files/InputFile.h"
#include "persistence/ProjectFile.h"

#include <QString>
#include <QUrl>
#include <vector>

namespace pointloom {

class AppState;

/// The session as a document. The cut zones and the interface language are not part of it.
ProjectFile projectFrom(const AppState& state);

/// Replaces the whole session by the document, which becomes the current project, goes to the first screen
/// for which something is still missing, and saves the session. Whether files exist is not looked at.
void apply(const ProjectFile& project, AppState& state, const QUrl& sourceURL);

/// What opening a document had to say about the files that it names.
struct OpenReport {
    enum class Role { logo, watermark, video };

    struct Relocation {
        Role role;
        QString storedPath;
        QString foundPath; // the same name beside the document

        bool operator==(const Relocation&) const = default;
    };

    struct Missing {
        Role role;
        QString storedPath;

        bool operator==(const Missing&) const = default;
    };

    std::vector<Relocation> relocated;
    std::vector<Missing> missing;
};

/// Opens a document into the session. A file that is not where the document says is looked for under the
/// same name beside the document. A missing video is to be imported again, a missing logo or watermark
/// stays named. Throws DocumentError when the document cannot be read; the session is untouched then.
OpenReport openProject(const QString& path, AppState& state);

/// The document of the session and the files that it names, which no other new file may replace.
std::vector<InputFile> inputFiles(const AppState& state);

}
