// What a document holds, and what it lacks.
#pragma once

#include "persistence/ProjectFile.h"
#include "json/JsonCoding.h"

#include <optional>
#include <QString>
#include <QStringList>

namespace pointloom::cli {

/// A file that the document names.
struct FileReport {
    QString role;       // "video", "logo", "watermark"
    QString storedPath; // as the document says
    std::optional<QString> foundPath;
};

struct VideoReport {
    double duration = 0; // seconds
    int width = 0;       // pixels, upright
    int height = 0;
    QString codec;
};

struct ProjectReport {
    std::vector<FileReport> files;
    std::optional<VideoReport> video; // when it is there and can be read
    QStringList missing;              // what the document names and the disk does not have
    QStringList unset;                // what the document does not name yet and an export needs
    QStringList warnings;             // what will probably surprise
};

/// Looks at the disk and opens the video.
ProjectReport reportOn(const ProjectFile& project, const QString& projectPath);

/// For people, several lines.
QString reportText(const ProjectFile& project, const ProjectReport& report);

/// For programs.
json::OrderedValue reportJson(const ProjectFile& project, const ProjectReport& report);

}
