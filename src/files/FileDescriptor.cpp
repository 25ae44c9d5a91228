#include "files/FileDescriptor.h"

#include <fcntl.h>
#include <filesystem>
#include <QFile>
#include <system_error>
#include <unistd.h>

namespace pointloom {

FileError::FileError(const QString& path, const char* fault, const QString& reason)
    : std::runtime_error(
          (path + QStringLiteral(": %1: %2").arg(QString::fromUtf8(fault), reason)).toStdString())
    , m_reason(reason) {}

FileError::FileError(const QString& path, const char* fault, int error)
    : FileError(path, fault, QString::fromStdString(std::generic_category().message(error))) {
    m_error = error;
}

FileDescriptor::FileDescriptor(const QString& path, int flags, unsigned mode)
    : m_descriptor(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, mode)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (isOpen())
        ::close(m_descriptor);
}

void writeAll(const FileDescriptor& file, const QByteArray& bytes, const QString& path) {
    for (qsizetype written = 0; written < bytes.size();) {
        const auto count = ::write(file.get(), bytes.constData() + written,
                                   static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw FileError(path, "could not be written");
        written += count;
    }
}

void syncFile(const FileDescriptor& file, const QString& path) {
    if (::fsync(file.get()) != 0)
        throw FileError(path, "could not be written to the disk");
}

void syncFolder(const QString& path) {
    const FileDescriptor folder(path, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen() && errno == EACCES)
        return; // a folder may be writable without being readable
    if (!folder.isOpen())
        throw FileError(path, "could not be opened");
    // EINVAL: this file system does not support fsync on a folder.
    if (::fsync(folder.get()) != 0 && errno != EINVAL)
        throw FileError(path, "could not be written to the disk");
}

QString linkTarget(const QString& path) {
    constexpr int mostLinks = 40; // as Linux follows
    std::filesystem::path place = QFile::encodeName(path).toStdString();
    for (int links = 0; links <= mostLinks; ++links) {
        std::error_code error;
        const auto next = std::filesystem::read_symlink(place, error);
        if (error)
            return QFile::decodeName(place.c_str());
        place = place.parent_path() / next;
    }
    throw FileError(path, "could not be opened", ELOOP);
}

}
