// Files of the operating system, their errors, and syncing to the disk.
#pragma once

#include <cerrno>
#include <QByteArray>
#include <QString>
#include <stdexcept>
#include <utility>

namespace pointloom {

/// Thrown when a file cannot be read or written. `what()` is fit for a user: the file and the system's
/// reason.
class FileError : public std::runtime_error {
public:
    /// "PATH: FAULT: REASON"
    FileError(const QString& path, const char* fault, const QString& reason);

    /// The same with the system's reason for `error`, an errno value.
    FileError(const QString& path, const char* fault, int error = errno);

    const QString& reason() const { return m_reason; } // alone: "No space left on device"
    int error() const { return m_error; }              // an errno value; 0 when there is none

private:
    QString m_reason;
    int m_error = 0;
};

/// An open file of the operating system.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1)
        : m_descriptor(descriptor) {}
    /// As open(2), closed in child processes. Not open when the call failed; errno has the reason.
    FileDescriptor(const QString& path, int flags, unsigned mode = 0);
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }

private:
    int m_descriptor;
};

/// Throws FileError, which names `path`.
void writeAll(const FileDescriptor& file, const QByteArray& bytes, const QString& path);

/// Returns when the content is on the disk. Throws FileError, which names `path`.
void syncFile(const FileDescriptor& file, const QString& path);

/// Returns when the names of the folder's files are on the disk. Throws FileError.
void syncFolder(const QString& path);

/// The path with links resolved, also a link whose target does not exist yet. Throws FileError for links in a
/// circle.
QString linkTarget(const QString& path);

}
