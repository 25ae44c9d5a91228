#include "persistence/BoardFile.h"

#include "persistence/DocumentFile.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace pointloom {

namespace {

constexpr std::int64_t newestBoardVersion = 1;
constexpr qint64 largestBoardFile = 1024 * 1024; // bytes
constexpr qsizetype mostKeptBoards = 200;

BoardFile decodeBoard(const QByteArray& bytes) {
    const json::Value value = json::parse(bytes);
    const json::Path versionPlace = json::Path().key("version");
    const auto version = json::decode<std::int64_t>(json::requiredMember(value, "version", {}), versionPlace);
    if (version < 1 || version > newestBoardVersion)
        throw json::DecodingError("version: this program reads version 1 of boards, found " +
                                  std::to_string(version));
    auto file = json::decode<BoardFile>(value);
    if (!canBecomeBoard(file.base))
        throw json::DecodingError("template: no board can be made from \"" +
                                  std::string(rawValue(file.base)) + '"');
    return file;
}

}

BoardFile BoardFile::load(const QString& path) {
    return decode(readDocument(path, largestBoardFile), path);
}

BoardFile BoardFile::decode(const QByteArray& bytes, const QString& path) {
    try {
        BoardFile file = decodeBoard(bytes);
        file.board.name = boardName(file.board.name);
        if (file.board.name.isEmpty())
            file.board.name = boardName(QFileInfo(path).completeBaseName());
        return file;
    } catch (const json::DecodingError& error) {
        throw DocumentError(path, QString::fromUtf8(error.what()));
    }
}

void BoardFile::save(const QString& path) const {
    try {
        writeDocument(path, json::prettySorted(json::encode(*this)));
    } catch (const json::EncodingError& error) {
        throw DocumentError(path, QString::fromUtf8(error.what()));
    }
}

QString boardFileName(const QString& name, const QString& number) {
    constexpr qsizetype longestStem = 40; // with what is added while it is written, below 255 bytes
    QString stem;
    for (const QChar character : name.left(longestStem)) {
        const bool isUnfit = character < u' ' || QStringView(u"/\\:*?\"<>|").contains(character);
        stem += isUnfit ? QChar(u'-') : character;
    }
    while (stem.startsWith(u'.')) // hidden
        stem.remove(0, 1);
    return (stem.isEmpty() ? QStringLiteral("board") : stem) + number + QStringLiteral(".json");
}

BoardFolder BoardFolder::ofUser() {
    return BoardFolder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                       QStringLiteral("/Pointloom/boards"));
}

BoardFolder::Content BoardFolder::read() const {
    Content content;
    const QDir folder(m_path);
    const QStringList names =
        folder.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QString& name : names.first(std::min(names.size(), mostKeptBoards))) {
        const QString path = folder.filePath(name);
        try {
            content.boards.push_back({path, BoardFile::load(path)});
        } catch (const DocumentError& error) {
            content.faults += QString::fromUtf8(error.what());
        }
    }
    std::ranges::stable_sort(content.boards, [](const KeptBoard& one, const KeptBoard& other) {
        return one.file.board.name.localeAwareCompare(other.file.board.name) < 0;
    });
    return content;
}

QString BoardFolder::save(const BoardFile& file, const QString& path) const {
    const QDir folder(m_path);
    QString place = path;
    for (int number = 1; place.isEmpty() || (path.isEmpty() && QFile::exists(place)); ++number) {
        const QString numbered = number > 1 ? QStringLiteral(" %1").arg(number) : QString();
        place = folder.filePath(boardFileName(file.board.name, numbered));
    }
    if (!folder.mkpath(QStringLiteral(".")))
        throw DocumentError(place, QStringLiteral("the folder %1 cannot be made").arg(m_path));
    file.save(place);
    return place;
}

void BoardFolder::remove(const QString& path) {
    QFile file(path);
    if (!file.remove() && file.exists())
        throw DocumentError(path, file.errorString());
}

}
