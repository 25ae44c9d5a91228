#include "persistence/FileLookup.h"

#include <QDir>
#include <QFileInfo>

namespace pointloom {

namespace {

// A name that begins with a colon is a file's here, not a resource's.
QString placeIn(const QDir& folder, const QString& name) {
    return name.startsWith(u':') ? folder.absolutePath() + u'/' + name : folder.absoluteFilePath(name);
}

NamedFile located(const QString& storedPath, const QDir& folder) {
    const QString named = placeIn(folder, storedPath);
    if (QFileInfo(named).isFile())
        return {.storedPath = storedPath, .path = named};
    const QString beside = placeIn(folder, QFileInfo(storedPath).fileName());
    if (QFileInfo(beside).isFile())
        return {.storedPath = storedPath, .path = beside, .isBesideDocument = true};
    return {.storedPath = storedPath, .path = std::nullopt};
}

NamedFile located(const QUrl& url, const QDir& folder) {
    if (url.isLocalFile())
        return located(url.toLocalFile(), folder);
    if (url.isRelative())
        return located(url.path(), folder);
    return {.storedPath = url.toDisplayString(), .path = std::nullopt};
}

}

ProjectFiles locateFiles(const ProjectFile& project, const QString& documentPath) {
    const QDir folder = QFileInfo(documentPath).absoluteDir();
    ProjectFiles files;
    if (project.videoPath)
        files.video = located(*project.videoPath, folder);
    if (project.matchConfig && project.matchConfig->logoURL)
        files.logo = located(*project.matchConfig->logoURL, folder);
    if (project.watermarkPath)
        files.watermark = located(*project.watermarkPath, folder);
    return files;
}

}
