// The door to the disk for documents: reading whole within limits, writing all or nothing.
#pragma once

#include <QByteArray>
#include <QString>

namespace pointloom {

/// The content of a regular file of at most `byteLimit` bytes. Throws DocumentError; never waits on a pipe
/// or a device.
QByteArray readDocument(const QString& path, qint64 byteLimit);

/// Replaces the file in one step: whatever goes wrong, what stood there before is still whole.
/// A link is followed. Throws DocumentError.
void writeDocument(const QString& path, const QByteArray& content);

}
