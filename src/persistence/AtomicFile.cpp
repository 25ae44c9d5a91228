#include "persistence/AtomicFile.h"

#include <fcntl.h>
#include <QFile>
#include <QFileInfo>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace pointloom {

FileError::FileError(const QString& path, const char* fault, const QString& reason)
    : std::runtime_error(
          (path + QStringLiteral(": %1: %2").arg(QString::fromUtf8(fault), reason)).toStdString()) {}

FileError::FileError(const QString& path, const char* fault, int error)
    : std::runtime_error(path.toStdString() + ": " + fault + ": " + std::generic_category().message(error)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (isOpen())
        ::close(m_descriptor);
}

namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateFolder = 0700;

FileDescriptor open(const QString& path, int flags, mode_t mode = privateFile) {
    return FileDescriptor(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, mode));
}

void syncFolder(const QString& path) {
    const FileDescriptor folder = open(path, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen())
        throw FileError(path, "could not be opened");
    // Some file systems cannot sync a folder and say so; theirs needs none.
    if (::fsync(folder.get()) != 0 && errno != EINVAL)
        throw FileError(path, "could not be written to the disk");
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

// The new file is readable to whom the old one was.
void keepMode(const FileDescriptor& file, const QString& path) {
    struct stat previous {};
    if (::stat(QFile::encodeName(path).constData(), &previous) == 0)
        static_cast<void>(::fchmod(file.get(), previous.st_mode & 0777));
}

void writeToDisk(const QString& path, const QByteArray& bytes, const QString& modeOf) {
    const FileDescriptor file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW);
    if (!file.isOpen())
        throw FileError(path, "could not be created");
    writeAll(file, bytes, path);
    keepMode(file, modeOf);
    if (::fsync(file.get()) != 0)
        throw FileError(path, "could not be written to the disk");
}

}

FolderGuard::FolderGuard(const QString& folder)
    : m_folder(open(folder, O_RDONLY | O_DIRECTORY)) {
    if (!m_folder.isOpen())
        throw FileError(folder, "could not be opened");
    // A file system without locks (some network shares) is used without.
    while (::flock(m_folder.get(), LOCK_EX) != 0 && errno == EINTR) {
    }
}

QByteArray AtomicFile::read(const QString& path) {
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly))
        throw FileError(path, "could not be read", file.errorString());
    if (file.size() > largestSize)
        throw FileError(path, "could not be read", EFBIG);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw FileError(path, "could not be read", file.errorString());
    return bytes;
}

void AtomicFile::write(const QString& path, const QByteArray& bytes) {
    if (bytes.size() > largestSize) // `read` would refuse it
        throw FileError(path, "could not be written", EFBIG);
    const QFileInfo named(path);
    const QFileInfo target(named.exists() ? named.canonicalFilePath() : named.absoluteFilePath());
    const QString folder = target.absolutePath();
    createFolder(folder);

    const QString temporary = target.absoluteFilePath() + QStringLiteral(".new");
    try {
        writeToDisk(temporary, bytes, target.absoluteFilePath());
        const auto from = QFile::encodeName(temporary);
        const auto to = QFile::encodeName(target.absoluteFilePath());
        if (::rename(from.constData(), to.constData()) != 0)
            throw FileError(path, "could not be replaced");
    } catch (const FileError&) {
        ::unlink(QFile::encodeName(temporary).constData()); // makes room again on a full disk
        throw;
    }
    syncFolder(folder);
}

void AtomicFile::createFolder(const QString& path) {
    const QFileInfo folder(path);
    if (folder.isDir())
        return;
    const QString parent = folder.absolutePath();
    if (parent != folder.absoluteFilePath())
        createFolder(parent);
    if (::mkdir(QFile::encodeName(path).constData(), privateFolder) != 0 && errno != EEXIST)
        throw FileError(path, "could not be created");
    syncFolder(parent);
}

}
