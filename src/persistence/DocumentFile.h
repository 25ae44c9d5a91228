// Whole documents: reading within limits, writing all or nothing, and their errors.
#pragma once

#include "files/NewFile.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <stdexcept>

namespace pointloom {

/// Thrown when a document cannot be read or written. `what()` names the file and the reason on one line:
/// `match.plp: markers[3].startTime: expected a number`.
class DocumentError : public std::runtime_error {
public:
    /// `path` of the document, of which the message shows the file's name; `reason` without a full stop.
    DocumentError(const QString& path, const QString& reason);
};

/// The content of a regular file of at most `byteLimit` bytes. Throws DocumentError; never waits on a pipe
/// or a device.
QByteArray readDocument(const QString& path, qint64 byteLimit);

/// Replaces the file in one step; it is on the disk when the call returns. After an error the
/// previous file is whole. A link is followed. Throws DocumentError.
void writeDocument(const QString& path, const QByteArray& content);

/// Throws DocumentError when a file written to `path` would replace one of the inputs.
void requireNoInput(const QString& path, const std::vector<InputFile>& inputs);

/// Writes a PNG file in one step. Throws DocumentError.
void writePng(const QImage& picture, const QString& path);

}
