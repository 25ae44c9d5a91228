#include "licence-server/HttpListener.h"

#include "licence-server/LicenceService.h"

#include <memory>
#include <QTcpSocket>
#include <QTimer>
#include <stdexcept>

namespace pointloom::licenceserver {

namespace {

constexpr qsizetype longestHead = 16 * 1024; // bytes
constexpr qsizetype longestBody = 16 * 1024; // bytes
constexpr int patience = 10'000;             // ms from connection to answer
constexpr QByteArrayView headEndMark = "\r\n\r\n";

void reply(QTcpSocket& socket, const Answer& answer) {
    socket.write("HTTP/1.1 " + QByteArray::number(answer.status) +
                 (answer.status == 200 ? " OK" : " Refused") +
                 "\r\nContent-Type: application/json\r\nConnection: close\r\nContent-Length: " +
                 QByteArray::number(answer.body.size()) + "\r\n\r\n" + answer.body);
    socket.disconnectFromHost();
}

// -1 when the head names no length.
qsizetype contentLength(const QByteArray& head) {
    for (const QByteArray& line : head.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed().toLower() != "content-length")
            continue;
        bool isNumber = false;
        const qlonglong length = line.mid(colon + 1).trimmed().toLongLong(&isNumber);
        return isNumber && length >= 0 ? length : -1;
    }
    return -1;
}

}

HttpListener::HttpListener(Handler handler)
    : m_handler(std::move(handler)) {
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection())
            accept(*socket);
    });
}

void HttpListener::listen(const QHostAddress& address, quint16 port) {
    if (!m_server.listen(address, port))
        throw std::runtime_error("cannot listen on " + address.toString().toStdString() + " port " +
                                 std::to_string(port) + ": " + m_server.errorString().toStdString());
}

void HttpListener::accept(QTcpSocket& socket) {
    socket.setReadBufferSize(longestHead + longestBody);
    const auto received = std::make_shared<QByteArray>();
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket,
                     [this, &socket, received] { read(socket, *received); });
    QObject::connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
    QTimer::singleShot(patience, &socket, &QTcpSocket::abort);
}

void HttpListener::read(QTcpSocket& socket, QByteArray& received) {
    received += socket.readAll();
    const qsizetype headEnd = received.indexOf(headEndMark);
    if (headEnd < 0) {
        if (received.size() > longestHead)
            reply(socket, {431, "{\"error\":\"bad_request\"}\n"});
        return;
    }
    const QByteArray head = received.left(headEnd);
    const QList<QByteArray> start = received.left(received.indexOf('\r')).split(' ');
    if (start.value(0) != "POST")
        return reply(socket, {405, "{\"error\":\"bad_request\"}\n"});
    const qsizetype length = contentLength(head);
    if (length < 0 || length > longestBody)
        return reply(socket, {length < 0 ? 411 : 413, "{\"error\":\"bad_request\"}\n"});
    const QByteArray body = received.mid(headEnd + headEndMark.size());
    if (body.size() < length)
        return;
    received.clear();
    reply(socket, m_handler(start.value(1), body.left(length)));
}

}
