// A web server on this machine that only notes who calls.
#pragma once

#include <QString>
#include <QTcpServer>

namespace pointloom::playback {

class FakeServer {
public:
    FakeServer();

    QString address(const QString& path) const;
    int visits() const { return m_visits; }

private:
    QTcpServer m_server;
    int m_visits = 0;
};

}
