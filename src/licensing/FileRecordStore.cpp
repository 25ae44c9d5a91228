#include "licensing/FileRecordStore.h"

#include "files/WholeFile.h"
#include "licensing/LicenceError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace pointloom {

namespace {

constexpr qint64 largestFile = 64 * 1024;

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw LicenceError(LicenceFault::file,
                       QStringLiteral("The licence cannot be kept in %1: %2").arg(path, reason));
}

}

FileRecordStore::FileRecordStore(const QString& path)
    : m_path(path) {}

QString FileRecordStore::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Pointloom/licence.json");
}

std::optional<QByteArray> FileRecordStore::load() {
    QFile file(m_path);
    if (!QFileInfo(m_path).isFile() || file.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.read(largestFile);
}

void FileRecordStore::save(const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        !commitWhole(file, bytes))
        fail(m_path, file.errorString());
}

void FileRecordStore::remove() {
    QFile file(m_path);
    if (file.exists() && !file.remove())
        fail(m_path, file.errorString());
}

}
