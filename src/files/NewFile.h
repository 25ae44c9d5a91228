// Files and folders that are written whole or not at all, and the check that they replace no input.
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace pointloom {

/// A file that is read, which no new file may replace.
struct InputFile {
    QString path;
    QString role; // "the source video"
};

/// The first of the inputs that a file written to `path` would replace, by whatever name: through links,
/// hard links and links to folders. Null when there is none.
const InputFile* replacedInput(const QString& path, const std::vector<InputFile>& inputs);

/// Treatment of a file that has the name already.
enum class IfExists {
    replace,
    addNumber, // it stays, and the new file is "name-2.mp4" or gets the next free number
};

enum class Access {
    usual,     // as the replaced file has, or the user's default
    ownerOnly, // from the first byte on
};

/// A new file, empty at first, which is removed unless it is kept. Remains of the same file from processes of
/// this machine that died are removed first. With `replace` a symbolic link is followed.
class NewFile {
public:
    /// Throws FileError, also when the file to replace is write-protected or not a regular file.
    explicit NewFile(const QString& path, IfExists ifExists = IfExists::replace,
                     Access access = Access::usual);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// The path to write the content to. A writer may open the file anew, but not replace it.
    const QString& temporaryPath() const { return m_temporaryPath; }

    /// Syncs the content, gives the file its name and syncs the folder. Returns the path. With `addNumber`
    /// the name is free with the other ending too, that of a file that is going to be beside this one. Throws
    /// FileError; the previous file is whole then, or the new one when only the folder could not be synced.
    QString keep(const QString& otherEnding = {});

private:
    QString m_path;
    IfExists m_ifExists;
    Access m_access;
    QString m_place; // the path with links resolved
    QString m_temporaryPath;
    bool m_isKept = false;
};

/// The same for a folder. It can take the place of an empty folder, which stays and gets the files.
class NewFolder {
public:
    /// True when the name is free, or belongs to a folder that is empty but for remains of died processes.
    static bool canBeAt(const QString& path);

    /// Throws FileError.
    explicit NewFolder(const QString& path, IfExists ifExists = IfExists::replace);
    ~NewFolder();
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    const QString& temporaryPath() const { return m_temporaryPath; }

    /// As NewFile::keep. Throws FileError also when another file took the name meanwhile.
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

/// The path with another ending: "match.srt" beside "match.mp4".
QString pathBeside(const QString& path, const QString& ending);

/// Writes the file in one step. Throws FileError; the previous file is whole then.
void writeWhole(const QString& path, const QByteArray& bytes, Access access = Access::usual,
                IfExists ifExists = IfExists::replace);

}
