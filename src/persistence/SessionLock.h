// The lock of the stored session, and small files in its folder that survive the process: at any instant a
// file holds its old bytes or its new ones, and when a call returns they are on the disk.
#pragma once

#include "files/FileDescriptor.h"

#include <chrono>
#include <optional>
#include <QString>

namespace pointloom {

/// Advisory lock of a folder's files against other processes and other holders in this one. The system
/// releases it when the process dies.
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

/// Replaces the file, or what a symbolic link of that name points to. The new bytes are written to
/// "PATH.new", so hold a FolderGuard where another process may write too. Missing folders are made,
/// accessible to this user alone. Throws FileError, also for more than `largestSize` bytes; the file is then
/// as it was, or whole and new when only its folder could not be brought to disk.
void write(const QString& path, const QByteArray& bytes);

/// Makes the folder and those above it. Throws FileError.
void createFolder(const QString& path);

}

/// The lock of the instance that owns the stored session. The system releases it when the process dies,
/// however that happens.
class SessionLock {
public:
    /// Takes the lock of the session that is stored in `folder`, which is made when missing. Empty when
    /// another instance holds it. Throws FileError when the folder can take no lock.
    static std::optional<SessionLock> tryAcquire(const QString& folder);

    /// The same, waiting up to `patience` for the other instance to end.
    static std::optional<SessionLock> acquireWithin(const QString& folder,
                                                    std::chrono::milliseconds patience);

    const QString& folder() const { return m_folder; }

private:
    SessionLock(FileDescriptor file, QString folder)
        : m_file(std::move(file))
        , m_folder(std::move(folder)) {}

    FileDescriptor m_file;
    QString m_folder;
};

}
