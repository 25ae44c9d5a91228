#include "support/LoopbackServer.h"

#include <optional>
#include <QTcpSocket>

namespace pointloom::test {

namespace {

std::optional<HttpRequest> completeRequest(const QByteArray& bytes) {
    const qsizetype headEnd = bytes.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return std::nullopt;
    QList<QByteArray> lines = bytes.left(headEnd).split('\n');
    const QList<QByteArray> start = lines.takeFirst().trimmed().split(' ');
    HttpRequest request{start.value(0), start.value(1), {}, bytes.mid(headEnd + 4)};
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers[line.left(colon).toLower()] = line.mid(colon + 1).trimmed();
    }
    if (request.body.size() < request.headers["content-length"].toLongLong())
        return std::nullopt;
    return request;
}

}

QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& extraHeaders) {
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Answer\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
           extraHeaders + "\r\n" + body;
}

LoopbackServer::LoopbackServer(Answer answer)
    : m_answer(std::move(answer)) {
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, &m_server, [this, socket] { serve(*socket); });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    m_server.listen(QHostAddress::LocalHost);
}

QUrl LoopbackServer::url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void LoopbackServer::serve(QTcpSocket& socket) {
    QByteArray& received = m_received[&socket];
    received += socket.readAll();
    const auto request = completeRequest(received);
    if (!request)
        return;
    received.clear();
    m_requests.push_back(*request);
    const QByteArray answer = m_answer(*request);
    if (answer.isEmpty())
        return;
    socket.write(answer);
    socket.disconnectFromHost();
}

}
