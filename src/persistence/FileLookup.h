// Finds the files that a document names.
#pragma once

#include <optional>
#include <QString>
#include <QUrl>

namespace pointloom {

struct FoundFile {
    QString path;
    bool isBesideDocument = false; // found by its name next to the document, not where the document says
};

/// A file that the document at `documentPath` names: where it says or, when both were moved together, beside
/// the document. Relative paths count from the document's folder.
std::optional<FoundFile> findFile(const QString& storedPath, const QString& documentPath);

/// The same for a picture; an address on another machine is never found.
std::optional<FoundFile> findFile(const QUrl& storedPicture, const QString& documentPath);

/// The path of a picture, or its address when that is on another machine.
QString placeOf(const QUrl& storedPicture);

}
