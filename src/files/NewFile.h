// Files that appear under their name only when they are whole. Until then they have a temporary name beside
// it: "NAME.HOST.PROCESS.NUMBER.unfinished".
#pragma once

#include <QByteArray>
#include <QString>

namespace pointloom {

/// What becomes of a file that has the name already.
enum class IfExists {
    replace,
    addNumber, // it stays, and the new one is "name-2.mp4" or the next number that is free
};

enum class Access {
    usual,     // that of the file that is replaced, or the user's usual one
    ownerOnly, // from its first byte on
};

/// A new file, empty at first, which is removed unless it is kept. What processes of this machine that died
/// left of the same file is removed first. A symbolic link is followed, unless its name is to stay.
class NewFile {
public:
    /// Throws FileError, also for what is there and is write-protected or not a regular file.
    explicit NewFile(const QString& path, IfExists ifExists = IfExists::replace,
                     Access access = Access::usual);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Where the content is written. A writer may open it anew, but not replace it.
    const QString& temporaryPath() const { return m_temporaryPath; }

    /// Brings the content to the disk, then gives it the name and brings that to the disk. Returns the path.
    /// Throws FileError; what was there is whole then, or the new file when only its name could not be
    /// brought to the disk.
    QString keep();

private:
    QString m_path;
    IfExists m_ifExists;
    Access m_access;
    QString m_place; // where links lead
    QString m_temporaryPath;
    bool m_isKept = false;
};

/// The same for a folder. It can take the place of an empty folder, which stays and gets the files.
class NewFolder {
public:
    /// True when nothing has the name, or a folder that holds nothing but what died processes left there.
    static bool canBeAt(const QString& path);

    /// Throws FileError.
    explicit NewFolder(const QString& path, IfExists ifExists = IfExists::replace);
    ~NewFolder();
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    const QString& temporaryPath() const { return m_temporaryPath; }

    /// As of a file. Throws FileError also when something else took the name meanwhile.
    QString keep();

private:
    void moveFilesUp() const;

    QString m_path;
    IfExists m_ifExists;
    QString m_place;
    bool m_isInside; // the temporary folder is in the empty one that gets the files
    QString m_temporaryPath;
    bool m_isKept = false;
};

/// Replaces the file in one step. Throws FileError; what was there is whole then.
void writeWhole(const QString& path, const QByteArray& bytes, Access access = Access::usual);

}
