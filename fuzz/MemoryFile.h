// Bytes under a path, for code that opens files, without touching a disk.
#pragma once

#include <QByteArrayView>
#include <QString>

namespace pointloom::fuzz {

/// A regular file in memory that goes away with its object.
class MemoryFile {
public:
    /// Throws std::system_error.
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Makes `content` all that the file holds. Throws std::system_error.
    void replace(QByteArrayView content);

    /// Opens the file from its beginning, as often as wanted, within this process.
    QString path() const;

private:
    int m_descriptor;
};

}
