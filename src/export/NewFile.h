// A file that appears under its name only when it is whole, and a folder for what is needed until then.
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
    QString m_path;
    QString m_temporaryPath;
    bool m_isKept = false;
};

/// Is made beside `path`, under a name of its own, and removed with all that it holds. What a process of this
/// machine that died left of one for the same file is removed first.
class ScratchFolder {
public:
    /// Throws ExportError.
    explicit ScratchFolder(const QString& path);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const QString& path() const { return m_path; }

private:
    QString m_path;
};

}
