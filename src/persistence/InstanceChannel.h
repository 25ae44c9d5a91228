// Channel by which a second start of the program hands its arguments to the first, which owns the session.
#pragma once

#include "persistence/SessionLock.h"

#include <chrono>
#include <functional>
#include <QLocalServer>
#include <QStringList>

namespace pointloom {

/// Listens in the instance that holds the session's lock, on the thread that made it and in its event loop.
class InstanceServer {
public:
    using Handler = std::function<void(const QStringList&)>;

    /// `handler` is called once for each start that hands over. Throws FileError when no channel can be made.
    InstanceServer(const SessionLock& lock, Handler handler);

private:
    void greet();

    QLocalServer m_server;
    Handler m_handler;
};

/// Hands `arguments` to the instance that holds the lock of `folder`; file names in them should be absolute.
/// False when no instance took them within `timeout`.
[[nodiscard]] bool handOver(const QString& folder, const QStringList& arguments,
                            std::chrono::milliseconds timeout = std::chrono::seconds(3));

}
