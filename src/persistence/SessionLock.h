// One running instance at a time owns the stored session.
#pragma once

#include "persistence/AtomicFile.h"

#include <chrono>
#include <optional>
#include <QString>

namespace pointloom {

/// Held as long as it lives; the system releases it when the process dies, however that happens.
class SessionLock {
public:
    /// Takes the lock of the session that is stored in `folder`, which is made when missing. Empty when
    /// another instance holds it. Throws FileError when the folder can take no lock.
    static std::optional<SessionLock> tryAcquire(const QString& folder);

    /// The same, waiting up to `patience` for the other instance to end.
    static std::optional<SessionLock> acquireWithin(const QString& folder,
                                                    std::chrono::milliseconds patience);

    const QString& folder() const { return m_folder; }

private:
    SessionLock(FileDescriptor file, QString folder)
        : m_file(std::move(file))
        , m_folder(std::move(folder)) {}

    FileDescriptor m_file;
    QString m_folder;
};

}
