#include "persistence/InstanceChannel.h"

#include "json/JsonDocument.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <vector>

namespace pointloom {

namespace {

// A message is a JSON list of texts and a line break; the answer is one byte.
constexpr qint64 largestMessage = 1024 * 1024; // bytes
constexpr char answer = '+';

// A folder of this user alone, and a name short enough for a socket.
QString socketPath(const QString& folder) {
    const QByteArray place = QFileInfo(folder).canonicalFilePath().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(place, QCryptographicHash::Sha256).toHex().first(16);
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QStringLiteral("/pointloom-") +
           QString::fromLatin1(digest);
}

std::optional<QStringList> argumentsIn(const QByteArray& message) {
    try {
        const auto texts = json::decode<std::vector<QString>>(json::parse(message));
        return QStringList(texts.begin(), texts.end());
    } catch (const json::DecodingError&) {
        return std::nullopt;
    }
}

}

InstanceServer::InstanceServer(const SessionLock& lock, Handler handler)
    : m_handler(std::move(handler)) {
    const QString path = socketPath(lock.folder());
    QLocalServer::removeServer(path); // left by an instance that died; a running one would hold the lock
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] { greet(); });
    if (!m_server.listen(path))
        throw FileError(path, "could not be listened to", m_server.errorString());
}

void InstanceServer::greet() {
    while (QLocalSocket* caller = m_server.nextPendingConnection()) {
        QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
        const auto receive = [this, caller] {
            if (!caller->canReadLine()) {
                if (caller->bytesAvailable() > largestMessage)
                    caller->abort();
                return;
            }
            const auto arguments = argumentsIn(caller->readLine(largestMessage));
            if (!arguments) {
                caller->abort();
                return;
            }
            caller->write(&answer, 1);
            caller->disconnectFromServer(); // once the answer is out
            // Not from within a signal of the caller: the handler may wait for the user, and the caller is
            // deleted by then.
            QMetaObject::invokeMethod(
                &m_server, [this, arguments] { m_handler(*arguments); }, Qt::QueuedConnection);
        };
        QObject::connect(caller, &QLocalSocket::readyRead, caller, receive);
        if (caller->bytesAvailable() > 0)
            receive();
    }
}

bool handOver(const QString& folder, const QStringList& arguments, std::chrono::milliseconds timeout) {
    const QDeadlineTimer deadline(timeout);
    const auto remaining = [&] { return static_cast<int>(deadline.remainingTime()); };
    const QString path = socketPath(folder);
    QLocalSocket socket;
    // The other instance may hold the lock already and not listen yet.
    for (socket.connectToServer(path); !socket.waitForConnected(remaining()); socket.connectToServer(path)) {
        if (deadline.hasExpired())
            return false;
        constexpr unsigned long pause = 20; // milliseconds
        QThread::msleep(pause);
    }
    socket.write(json::compact(json::encode(std::vector<QString>(arguments.begin(), arguments.end()))) +
                 '\n');
    while (socket.bytesAvailable() == 0) {
        if (deadline.hasExpired() || !socket.waitForReadyRead(remaining()))
            return false;
    }
    char received = 0;
    return socket.getChar(&received) && received == answer;
}

}
