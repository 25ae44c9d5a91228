// Boards as files: one to share, and the folder of those that the user keeps.
#pragma once

#include "model/BoardStyle.h"
#include "render/TemplateID.h"

#include <QByteArray>
#include <QStringList>
#include <vector>

namespace pointloom {

/// A board with the template that it was made from.
struct BoardFile {
    std::int64_t version = 1;
    TemplateID base = TemplateID::classic; // any of which a board can be made
    BoardStyle board{};

    bool operator==(const BoardFile&) const = default;

    /// Throws DocumentError: the file cannot be read, is not a regular file, is larger than 1 MB, of a newer
    /// version or no board. A board without a name gets the file's.
    static BoardFile load(const QString& path);

    /// `load` of a file's content. `path` is only named in errors.
    static BoardFile decode(const QByteArray& bytes, const QString& path);

    /// Writes the file in one step. Throws DocumentError; what was there is whole then.
    void save(const QString& path) const;

    static constexpr auto jsonFields() {
        return std::tuple{json::field("version", &BoardFile::version),
                          json::field("template", &BoardFile::base), json::field("board", &BoardFile::board)};
    }
};

/// A name for its file, "TC Riverside.json".
QString boardFileName(const QString& name, const QString& number = {});

struct KeptBoard {
    QString path;
    BoardFile file;
};

/// A folder of boards, a file each. It keeps no state: other processes may change the folder.
class BoardFolder {
public:
    /// The user's, in the data folder.
    static BoardFolder ofUser();

    explicit BoardFolder(const QString& path)
        : m_path(path) {}

    struct Content {
        std::vector<KeptBoard> boards; // by name
        QStringList faults;            // of files that are no boards, a line each
    };

    /// Reads at most 200 files.
    Content read() const;

    /// Writes to `path`, or to a new file of the folder, which is made where it is missing. Returns the
    /// file's path. Throws DocumentError.
    QString save(const BoardFile& file, const QString& path = {}) const;

    /// Throws DocumentError.
    static void remove(const QString& path);

private:
    QString m_path;
};

}
