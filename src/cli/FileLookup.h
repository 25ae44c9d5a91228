// Finds the files that a document names, and guards the ones that must not be overwritten.
#pragma once

#include <optional>
#include <QString>
#include <QUrl>
#include <vector>

namespace pointloom::cli {

struct FoundFile {
    QString path;
    bool isBesideDocument = false; // found by its name next to the document, not where the document says
};

/// A file that the document at `projectPath` remembers: where it says or, when the video and its document
/// were moved together, beside the document. Relative paths count from the document's folder.
std::optional<FoundFile> findFile(const QString& storedPath, const QString& projectPath);

/// The path of a picture on this machine's disk; nothing for an address on another machine.
std::optional<QString> localPath(const QUrl& url);

/// A file that a command reads, and what to call it.
struct InputFile {
    QString path;
    QString role; // "the source video"
};

/// Throws CommandError unless a folder that is empty, or not there yet, can stand at `path`.
void requireUsableFolder(const QString& path);

/// Throws CommandError unless a file can stand at `path`: a folder that exists, no pipe or device, and
/// none of the inputs, by whatever name.
void requireUsableOutput(const QString& path, const std::vector<InputFile>& inputs);

}
