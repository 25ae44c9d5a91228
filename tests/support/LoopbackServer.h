// An HTTP server on loopback that keeps what it was asked and answers as a test tells it to.
#pragma once

#include <functional>
#include <map>
#include <QByteArray>
#include <QTcpServer>
#include <QUrl>
#include <vector>

namespace pointloom::test {

struct HttpRequest {
    QByteArray method;
    QByteArray target;
    std::map<QByteArray, QByteArray> headers; // names in lower case
    QByteArray body;
};

/// The bytes of an answer; `extraHeaders` are whole lines with their line ends.
QByteArray httpAnswer(int status, const QByteArray& body = {}, const QByteArray& extraHeaders = {});

/// Serves on a free port, on the thread that made it, whenever that thread's event loop runs.
class LoopbackServer {
public:
    /// Bytes of the answer; none leaves the client waiting.
    using Answer = std::function<QByteArray(const HttpRequest&)>;

    explicit LoopbackServer(Answer answer);

    bool isListening() const { return m_server.isListening(); }
    QUrl url(const QString& path) const;
    const std::vector<HttpRequest>& requests() const { return m_requests; }

private:
    void serve(QTcpSocket& socket);

    Answer m_answer;
    std::vector<HttpRequest> m_requests;
    std::map<QTcpSocket*, QByteArray> m_received;
    QTcpServer m_server;
};

}
