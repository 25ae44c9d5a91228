#include "licensing/FileRecordStore.h"

#include "files/FileError.h"
#include "files/NewFile.h"
#include "licensing/LicenceError.h"

#include <filesystem>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <system_error>

namespace pointloom {

namespace {

[[noreturn]] void fail(const QString& words, const QString& path, const QString& reason) {
    throw LicenceError(LicenceFault::file, words.arg(path, reason));
}

[[noreturn]] void failToRead(const QString& path, const QString& reason) {
    fail(QStringLiteral("The licence file %1 cannot be read: %2"), path, reason);
}

std::filesystem::path nativePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

}

FileRecordStore::FileRecordStore(const QString& path)
    : m_path(path) {}

QString FileRecordStore::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Pointloom/licence.json");
}

bool FileRecordStore::exists() const {
    std::error_code error;
    return std::filesystem::status(nativePath(m_path), error).type() != std::filesystem::file_type::not_found;
}

std::optional<QByteArray> FileRecordStore::load(const StopQuery&) {
    std::error_code error;
    const auto type = std::filesystem::status(nativePath(m_path), error).type();
    if (type == std::filesystem::file_type::not_found)
        return std::nullopt;
    if (type != std::filesystem::file_type::regular)
        failToRead(m_path,
                   error ? QString::fromStdString(error.message()) : QStringLiteral("it is not a file"));
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        failToRead(m_path, file.errorString());
    const QByteArray bytes = file.read(largestRecord + 1);
    if (file.error() != QFile::NoError)
        failToRead(m_path, file.errorString());
    if (bytes.size() > largestRecord)
        failToRead(m_path, QStringLiteral("it is too large"));
    return bytes;
}

void FileRecordStore::save(const QByteArray& bytes, const StopQuery&) {
    QDir().mkpath(QFileInfo(m_path).path());
    try {
        writeWhole(m_path, bytes, Access::ownerOnly);
    } catch (const FileError& error) {
        fail(QStringLiteral("The licence file %1 cannot be written: %2"), m_path, error.reason());
    }
}

}
