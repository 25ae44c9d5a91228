// The client against services that misbehave.
#include "licensing/LicenceFixture.h"
#include "support/LoopbackServer.h"
#include "json/JsonDocument.h"

#include <gmock/gmock.h>

namespace pointloom {
namespace {

using namespace std::chrono_literals;
using test::httpAnswer;
using test::HttpRequest;
using test::LoopbackServer;
using testing::HasSubstr;

class LicenceClientTest : public test::LicenceFixture {
protected:
    std::optional<LicenceFault> activateAt(const QString& url,
                                           const LicenceManager::StopQuery& isStopping = {}) {
        m_serviceURL = url;
        return faultOf([&] { start(m_laptop)->activate(m_key.text(), isStopping); });
    }

    std::optional<LicenceFault> activateWith(const QByteArray& answer) {
        LoopbackServer server([&](const HttpRequest&) { return answer; });
        return activateAt(server.url(QString()).toString());
    }

    LicenceKey m_key = LicenceKey::generate();
};

TEST_F(LicenceClientTest, SendsKeyFingerprintVersionAndNonceAndNothingElse) {
    LoopbackServer server([](const HttpRequest&) { return httpAnswer(500); });
    activateAt(server.url(QStringLiteral("/v1/")).toString());
    ASSERT_EQ(server.requests().size(), 1U);
    HttpRequest request = server.requests()[0];
    EXPECT_EQ(request.target, "/v1/activate");
    EXPECT_EQ(request.headers["accept-language"], "*");
    const auto body = json::Value::parse(request.body.toStdString());
    EXPECT_EQ(body.size(), 5U);
    EXPECT_EQ(body.at("key"), m_key.text().toStdString());
    EXPECT_EQ(body.at("version"), "1.2.3");
    EXPECT_EQ(body.at("fingerprint").get<std::string>().size(), 64U);
    EXPECT_FALSE(request.body.contains("laptop"));
}

TEST_F(LicenceClientTest, OnlyASafeAddressIsSpokenTo) {
    for (const char* url : {"", "http://licences.example/v1", "ftp://127.0.0.1/", "licences.example",
                            "https://", "http://127.0.0.1.example/", "file:///etc/passwd"}) {
        EXPECT_EQ(activateAt(QString::fromLatin1(url)), LicenceFault::notConfigured) << url;
    }
    for (const char* url :
         {"https://licences.example/v1", "http://localhost:1", "http://[::1]:1/", "http://127.3.2.1:1"})
        EXPECT_NO_THROW(LicenceClient(QString::fromLatin1(url))) << url;
}

TEST_F(LicenceClientTest, WithoutThePublicKeyNothingIsAsked) {
    LoopbackServer server([](const HttpRequest&) { return httpAnswer(500); });
    for (const char* key : {"", "AAAA", "not Base64"}) {
        m_publicKey = key;
        EXPECT_EQ(activateAt(server.url(QString()).toString()), LicenceFault::notConfigured) << key;
    }
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(LicenceClientTest, NoConnectionAndSilenceAreToldApartFromTrouble) {
    const QString closed =
        LoopbackServer([](const HttpRequest&) { return QByteArray(); }).url(QString()).toString();
    EXPECT_EQ(activateAt(closed), LicenceFault::noConnection);
    EXPECT_THAT(m_message, HasSubstr("could not be reached"));

    m_timeout = 300ms;
    EXPECT_EQ(activateWith({}), LicenceFault::noConnection);
    EXPECT_THAT(m_message, HasSubstr("no answer in time"));
}

TEST_F(LicenceClientTest, CancellingEndsAtOnce) {
    LoopbackServer server([](const HttpRequest&) { return QByteArray(); });
    EXPECT_EQ(activateAt(server.url(QString()).toString(), [] { return true; }), LicenceFault::cancelled);
}

TEST_F(LicenceClientTest, AnswersThatMakeNoSenseActivateNothing) {
    EXPECT_EQ(activateWith(httpAnswer(500, "<html>")), LicenceFault::serviceTrouble);
    EXPECT_EQ(m_message, "The licence service is in trouble (HTTP 500). Try again later.");
    EXPECT_EQ(activateWith(httpAnswer(404, R"({"error": "surprise"})")), LicenceFault::serviceTrouble);
    EXPECT_EQ(activateWith(httpAnswer(404, R"({"error": 7})")), LicenceFault::serviceTrouble);
    EXPECT_EQ(activateWith(httpAnswer(409, R"({"error": "limit_reached", "machines": "x"})")),
              LicenceFault::serviceTrouble);
    EXPECT_EQ(activateWith(httpAnswer(201, "{}")), LicenceFault::serviceTrouble);
    for (const QByteArray& body :
         {QByteArray(), QByteArray("garbage\0\xff", 9), QByteArray("{}"), QByteArray(30'000, '[')})
        EXPECT_EQ(activateWith(httpAnswer(200, body)), LicenceFault::invalidLicence);
    EXPECT_EQ(activateWith(httpAnswer(200, QByteArray(200'000, 'x'))), LicenceFault::serviceTrouble);
    EXPECT_EQ(m_message, "The answer of the licence service could not be read: the answer is too long");
    EXPECT_EQ(activateWith("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n{"), LicenceFault::serviceTrouble);
    EXPECT_THAT(m_message, HasSubstr("could not be read: Connection closed"));
    for (const char* machines : {"-2147483648", "-1", "0"}) {
        EXPECT_EQ(activateWith(httpAnswer(409, R"({"error": "limit_reached", "machines": )" +
                                                   QByteArray(machines) + '}')),
                  LicenceFault::limitReached);
        EXPECT_THAT(m_message, HasSubstr("on as many machines as it was bought for")) << machines;
    }
    EXPECT_FALSE(start(m_laptop)->isLicensed());
}

TEST_F(LicenceClientTest, ARedirectIsNotFollowed) {
    LoopbackServer other([](const HttpRequest&) { return httpAnswer(200); });
    for (const int status : {301, 307}) {
        EXPECT_EQ(activateWith(httpAnswer(
                      status, {}, "Location: " + other.url(QStringLiteral("/")).toEncoded() + "\r\n")),
                  LicenceFault::serviceTrouble);
        EXPECT_EQ(activateWith(httpAnswer(status, {}, "Location: https://127.0.0.1:1/\r\n")),
                  LicenceFault::serviceTrouble);
    }
    EXPECT_TRUE(other.requests().empty());
}

TEST_F(LicenceClientTest, AnAnswerToAnotherRequestIsNoLicence) {
    const LicenceKey key = sell(5);
    QByteArray recorded;
    LoopbackServer recorder([&](const HttpRequest& request) {
        recorded = m_service.answer("/activate", request.body).body;
        return httpAnswer(200, recorded);
    });
    m_serviceURL = recorder.url(QString()).toString();
    start(m_laptop)->activate(key.text());
    m_laptop.kept.reset();

    // The very same answer again: signed, for this key and this machine, but not fresh.
    LoopbackServer replayer([&](const HttpRequest&) { return httpAnswer(200, recorded); });
    m_serviceURL = replayer.url(QString()).toString();
    EXPECT_EQ(faultOf([&] { start(m_laptop)->activate(key.text()); }), LicenceFault::invalidLicence);
    EXPECT_THAT(m_message, HasSubstr("another request"));
    EXPECT_EQ(faultOf([&] { start(m_desktop)->activate(key.text()); }), LicenceFault::invalidLicence);

    // Signature by another key under the right content.
    licenceserver::LicenceService forger(m_database, Ed25519::generateSecretKey(), [this] { return m_now; });
    LoopbackServer forgery([&](const HttpRequest& request) {
        return httpAnswer(200, forger.answer("/activate", request.body).body);
    });
    m_serviceURL = forgery.url(QString()).toString();
    EXPECT_EQ(faultOf([&] { start(m_laptop)->activate(key.text()); }), LicenceFault::invalidLicence);
    EXPECT_THAT(m_message, HasSubstr("signature"));
    EXPECT_FALSE(start(m_laptop)->isLicensed());
}

}
}
