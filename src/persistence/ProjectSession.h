// Conversion between project documents, the session and export jobs.
#pragma once

#include "files/NewFile.h"
#include "persistence/ProjectFile.h"

#include <optional>
#include <QString>
#include <QUrl>
#include <vector>

namespace pointloom {

struct ExportJob;

/// A file that a document names.
struct NamedFile {
    QString storedPath;            // as the document says; the address of a picture on another machine
    std::optional<QString> path;   // where the file is; none: missing
    bool isBesideDocument = false; // found by its name next to the document, not where the document says
};

/// Files that a document does not name are empty.
struct ProjectFiles {
    std::optional<NamedFile> video;
    std::vector<NamedFile> furtherVideos{}; // of a split recording
    std::optional<NamedFile> logo;
    std::optional<NamedFile> watermark;
};

/// Each file where the document says or, when both were moved together, beside the document. Relative paths
/// count from the document's folder. A picture on another machine is never found.
ProjectFiles locateFiles(const ProjectFile& project, const QString& documentPath);

/// The session as a document.
ProjectFile projectFrom(const AppState& state);

/// Replaces the whole session by the document, which becomes the current project, goes to the first screen
/// for which something is still missing, and saves the session. Whether files exist is not checked.
void apply(const ProjectFile& project, AppState& state, const QUrl& sourceURL);

/// References to the properties of the session that a document stores.
inline auto documentProperties(AppState& state) {
    const auto property = [&](const auto& field) {
        if constexpr (requires { field.property; })
            return std::tie(state.*field.property);
        else
            return std::tuple{};
    };
    return std::apply([&](const auto&... fields) { return std::tuple_cat(property(fields)...); },
                      storedFields<ProjectFile>());
}

/// The files named by a document that were not where it says when it was opened.
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

/// The export of the document: its video, its range and the parts of it, its whole overlay, without a
/// licence; settings other than the rallies, the watermark's corner and the output are the defaults. Empty
/// while match, template or video are missing. Whether files exist is not checked.
std::optional<ExportJob> exportJobFor(const ProjectFile& project);

/// The score before the first marker.
SportScoreState initialScoreOf(const ProjectFile& project, const MatchConfig& config);

}
