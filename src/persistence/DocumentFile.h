// The door to the disk for documents: reading whole within limits, writing all or nothing.
#pragma once

#include "files/InputFile.h"

#include <QByteArray>
#include <QString>

namespace pointloom {

/// The content of a regular file of at most `byteLimit` bytes. Throws DocumentError; never waits on a pipe
/// or a device.
QByteArray readDocument(const QString& path, qint64 byteLimit);

/// Replaces the file in one step; it is on the disk when the call returns. Whatever goes wrong, what was
/// there before is still whole. A link is followed. Throws DocumentError.
void writeDocument(const QString& path, const QByteArray& content);

/// Throws DocumentError when a file written to `path` would replace one of the inputs.
void requireNoInput(const QString& path, const std::vector<InputFile>& inputs);

}
