// A file that appears under its name only when it is whole.
#pragma once

#include <QString>

namespace pointloom {

/// Is written under a name of its own beside the final one, and removed unless it is kept. What a process of
/// this machine that died left of the same file is removed first.
class NewFile {
public:
    explicit NewFile(QString path);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    const QString& temporaryPath() const { return m_temporaryPath; }

    /// Brings the content to the disk and gives it the final name, in the place of what stood there. Throws
    /// ExportError.
    void keep();

private:
    void removeRemains() const;

    QString m_path;
    QString m_temporaryPath;
    bool m_isKept = false;
};

}
