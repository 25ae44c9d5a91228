#include "persistence/SessionLock.h"

#include <fcntl.h>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace pointloom {

namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateFolder = 0700;

// Copies the access bits of the old file.
void keepMode(const FileDescriptor& file, const QString& path) {
    struct stat previous {};
    if (::stat(QFile::encodeName(path).constData(), &previous) == 0)
        static_cast<void>(::fchmod(file.get(), previous.st_mode & 0777));
}

void writeToDisk(const QString& path, const QByteArray& bytes, const QString& modeOf) {
    const FileDescriptor file(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW, privateFile);
    if (!file.isOpen())
        throw FileError(path, "could not be created");
    writeAll(file, bytes, path);
    keepMode(file, modeOf);
    syncFile(file, path);
}

}

FolderGuard::FolderGuard(const QString& folder)
    : m_folder(folder, O_RDONLY | O_DIRECTORY) {
    if (!m_folder.isOpen())
        throw FileError(folder, "could not be opened");
    // A file system without locks (some network shares) is used without one.
    while (::flock(m_folder.get(), LOCK_EX) != 0 && errno == EINTR) {
    }
}

QByteArray AtomicFile::read(const QString& path) {
    const FileDescriptor descriptor(path, O_RDONLY);
    if (!descriptor.isOpen() && errno == ENOENT)
        return {};
    if (!descriptor.isOpen())
        throw FileError(path, "could not be read");
    QFile file;
    if (!file.open(descriptor.get(), QIODevice::ReadOnly))
        throw FileError(path, "could not be read", file.errorString());
    if (file.size() > largestSize)
        throw FileError(path, "could not be read", EFBIG);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw FileError(path, "could not be read", file.errorString());
    return bytes;
}

void AtomicFile::write(const QString& path, const QByteArray& bytes) {
    if (bytes.size() > largestSize)
        throw FileError(path, "could not be written", EFBIG);
    const QFileInfo target(linkTarget(path));
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
        ::unlink(QFile::encodeName(temporary).constData()); // the disk may be full
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

std::optional<SessionLock> SessionLock::tryAcquire(const QString& folder) {
    AtomicFile::createFolder(folder);
    const QString path = folder + QStringLiteral("/Pointloom.lock");
    const QByteArray name = QFile::encodeName(path);
    FileDescriptor file(::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file.isOpen())
        file = FileDescriptor(::open(name.constData(), O_RDONLY | O_CLOEXEC)); // in a read-only folder
    if (!file.isOpen())
        throw FileError(path, "could not be opened");
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        return SessionLock(std::move(file), folder);
    if (errno == EWOULDBLOCK)
        return std::nullopt;
    throw FileError(path, "could not be locked");
}

std::optional<SessionLock> SessionLock::acquireWithin(const QString& folder,
                                                      std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds pause(20);
    const QDeadlineTimer deadline(patience);
    std::optional<SessionLock> lock = tryAcquire(folder);
    while (!lock && !deadline.hasExpired()) {
        std::this_thread::sleep_for(pause);
        lock = tryAcquire(folder);
    }
    return lock;
}

}
