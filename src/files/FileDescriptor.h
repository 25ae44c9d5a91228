// Files of the operating system, and how they get onto the disk.
#pragma once

#include <QByteArray>
#include <QString>
#include <utility>

namespace pointloom {

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

/// Where a file written to `path` goes: links are followed, also one that points to nothing yet. Throws
/// FileError for links that lead in a circle.
QString linkTarget(const QString& path);

}
