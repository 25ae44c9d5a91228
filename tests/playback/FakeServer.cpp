#include "playback/FakeServer.h"

#include <QTcpSocket>
#include <stdexcept>

namespace pointloom::playback {

FakeServer::FakeServer() {
    if (!m_server.listen(QHostAddress::LocalHost))
        throw std::runtime_error("cannot listen: " + m_server.errorString().toStdString());
    QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
        ++m_visits;
        m_server.nextPendingConnection()->abort();
    });
}

QString FakeServer::address(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_server.serverPort()).arg(path);
}

}
