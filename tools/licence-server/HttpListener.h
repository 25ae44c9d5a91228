// Just enough HTTP for a service behind a proxy that speaks TLS: one POST a connection, bounded in size and
// time.
#pragma once

#include <functional>
#include <QByteArray>
#include <QHostAddress>
#include <QTcpServer>
#include <QUrl>

namespace pointloom::licenceserver {

struct Answer;

class HttpListener {
public:
    /// The answer to a path and a body.
    using Handler = std::function<Answer(const QByteArray& path, const QByteArray& body)>;

    explicit HttpListener(Handler handler);

    /// Port 0 takes any free port. Throws std::runtime_error when the address cannot be had.
    void listen(const QHostAddress& address, quint16 port);

    quint16 port() const { return m_server.serverPort(); }

private:
    void accept(QTcpSocket& socket);
    void read(QTcpSocket& socket, QByteArray& received);

    Handler m_handler;
    QTcpServer m_server;
};

}
