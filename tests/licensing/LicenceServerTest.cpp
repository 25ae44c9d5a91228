// The service's own manners, spoken to without the client.
#include "licensing/LicenceFixture.h"
#include "licensing/LicenceStatus.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTcpSocket>

namespace pointloom {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class LicenceServerTest : public test::LicenceFixture {
protected:
    // Everything the service writes back before it hangs up.
    std::string speak(const QByteArray& bytes) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_listener.port());
        socket.write(bytes);
        constexpr int patience = 5000; // ms
        const QDeadlineTimer deadline(patience);
        do {
            QCoreApplication::processEvents();
        } while (socket.state() != QAbstractSocket::UnconnectedState && !deadline.hasExpired());
        EXPECT_FALSE(deadline.hasExpired()) << "the service keeps the line open";
        return socket.readAll().toStdString();
    }

    LicenceRequest request(const LicenceKey& key) const {
        return LicenceRequest::make(key, machineFingerprint("laptop"), QStringLiteral("1.2.3"));
    }
};

TEST_F(LicenceServerTest, ARecordedDeactivationDoesNotFreeTheMachineAgain) {
    const auto key = sell();
    m_service.answer("/activate", request(key).toJson());
    const QByteArray recorded = request(key).toJson();
    EXPECT_EQ(m_service.answer("/deactivate", recorded).status, 200);
    m_service.answer("/activate", request(key).toJson());
    const auto replay = m_service.answer("/deactivate", recorded);
    EXPECT_EQ(replay.status, 409);
    EXPECT_THAT(replay.body.toStdString(), HasSubstr("replayed"));
    EXPECT_EQ(m_database.machineCount(key.text()), 1);
}

TEST_F(LicenceServerTest, RequestsThatAreNoneAreRefusedWithoutTakingAMachine) {
    const auto key = sell();
    const auto with = [&](auto change) {
        LicenceRequest changed = request(key);
        change(changed);
        return m_service.answer("/activate", changed.toJson()).status;
    };
    EXPECT_EQ(with([](auto& r) { r.format = QStringLiteral("x"); }), 400);
    EXPECT_EQ(with([](auto& r) { r.fingerprint = QStringLiteral("laptop"); }), 400);
    EXPECT_EQ(with([](auto& r) { r.nonce.clear(); }), 400);
    EXPECT_EQ(with([](auto& r) { r.version = QString(1000, u'9'); }), 400);
    EXPECT_EQ(with([](auto& r) { r.key = QStringLiteral("' OR 1=1 --"); }), 404);
    EXPECT_EQ(m_service.answer("/activate", "not JSON").status, 400);
    EXPECT_EQ(m_service.answer("/", request(key).toJson()).status, 404);
    EXPECT_EQ(m_service.answer("/renew", request(key).toJson()).status, 404);
    EXPECT_EQ(m_database.machineCount(key.text()), 0);
}

TEST_F(LicenceServerTest, HttpThatIsTooLongOrOddEndsTheConnection) {
    EXPECT_THAT(speak("GET / HTTP/1.1\r\n\r\n"), StartsWith("HTTP/1.1 405"));
    EXPECT_THAT(speak("POST /activate HTTP/1.1\r\n\r\n"), StartsWith("HTTP/1.1 411"));
    EXPECT_THAT(speak("POST /activate HTTP/1.1\r\nContent-Length: -5\r\n\r\n"), StartsWith("HTTP/1.1 411"));
    EXPECT_THAT(speak("POST /activate HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\n"),
                StartsWith("HTTP/1.1 413"));
    EXPECT_THAT(speak(QByteArray(20'000, 'a')), StartsWith("HTTP/1.1 431"));
    EXPECT_THAT(speak("POST /activate HTTP/1.1\r\nContent-Length: 2\r\n\r\n{}"), StartsWith("HTTP/1.1 400"));
    const QByteArray body = request(sell()).toJson();
    EXPECT_THAT(speak("POST /v1/activate HTTP/1.1\r\nContent-Length: " + QByteArray::number(body.size()) +
                      "\r\n\r\n" + body),
                StartsWith("HTTP/1.1 200"));
}

}
}
