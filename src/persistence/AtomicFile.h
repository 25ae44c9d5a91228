// Small files that survive the process: at any instant a file holds its old bytes or its new ones, and
// when a call returns they are on the disk.
#pragma once

#include "files/FileDescriptor.h"
#include "files/FileError.h"

namespace pointloom {

/// Keeps other processes, and other holders in this one, out of a folder's files as long as it lives.
/// The system releases it when a process dies. Only those who ask for it are kept out.
class FolderGuard {
public:
    /// Waits for its turn. Throws FileError when the folder cannot be opened.
    explicit FolderGuard(const QString& folder);

private:
    FileDescriptor m_folder;
};

namespace AtomicFile {

/// The whole file; empty when there is none. Throws FileError when it cannot be read or is larger than
/// `largestSize` bytes.
QByteArray read(const QString& path);

constexpr qsizetype largestSize = 256 * 1024 * 1024;

/// Replaces the file, or what a symbolic link of that name points to. The new bytes are gathered in
/// "PATH.new", so hold a FolderGuard where another process may write too. Missing folders are made,
/// open to this user alone. Throws FileError, also for more than `largestSize` bytes; the file is then as it
/// was, or whole and new when only its folder could not be brought to disk.
void write(const QString& path, const QByteArray& bytes);

/// Makes the folder and those above it. Throws FileError.
void createFolder(const QString& path);

}

}
