#include "persistence/SessionLock.h"

#include <fcntl.h>
#include <QDeadlineTimer>
#include <QFile>
#include <sys/file.h>
#include <thread>

namespace pointloom {

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
