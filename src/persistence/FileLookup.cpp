#include "persistence/FileLookup.h"

#include <QDir>
#include <QFileInfo>

namespace pointloom {

namespace {

std::optional<QString> localPath(const QUrl& url) {
    if (url.isLocalFile())
        return url.toLocalFile();
    return url.isRelative() ? std::optional(url.path()) : std::nullopt;
}

// A name that begins with a colon is a file's here, not a resource's.
QString placeIn(const QDir& folder, const QString& name) {
    return name.startsWith(u':') ? folder.absolutePath() + u'/' + name : folder.absoluteFilePath(name);
}

}

std::optional<FoundFile> findFile(const QString& storedPath, const QString& documentPath) {
    const QDir folder = QFileInfo(documentPath).absoluteDir();
    const QString named = placeIn(folder, storedPath);
    if (QFileInfo(named).isFile())
        return FoundFile{named, false};
    const QString beside = placeIn(folder, QFileInfo(storedPath).fileName());
    return QFileInfo(beside).isFile() ? std::optional(FoundFile{beside, true}) : std::nullopt;
}

std::optional<FoundFile> findFile(const QUrl& storedPicture, const QString& documentPath) {
    const auto path = localPath(storedPicture);
    return path ? findFile(*path, documentPath) : std::nullopt;
}

QString placeOf(const QUrl& storedPicture) {
    return localPath(storedPicture).value_or(storedPicture.toDisplayString());
}

}
