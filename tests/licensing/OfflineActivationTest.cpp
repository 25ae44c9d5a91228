#include "licensing/LicenceFixture.h"
#include "json/JsonDocument.h"

#include <gmock/gmock.h>
#include <QFile>
#include <sys/stat.h>

namespace pointloom {
namespace {

using testing::HasSubstr;

class OfflineActivationTest : public test::LicenceFixture {
protected:
    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    QByteArray contents(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // The user hands the request in on a machine with a network and takes the answer home.
    QString answerTo(const QString& requestPath) {
        const auto answer = m_service.answer("/activate", contents(requestPath));
        EXPECT_EQ(answer.status, 200);
        return written(answer.body);
    }

    QString written(const QByteArray& bytes) {
        const QString licence = path("licence.json");
        QFile file(licence);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return licence;
    }

    void SetUp() override { m_serviceURL.clear(); } // this machine has no network

    std::optional<LicenceFault> importFault(const QString& file) {
        return faultOf([&] { start(m_laptop)->importFile(file); });
    }
};

TEST_F(OfflineActivationTest, ARequestOutAndALicenceInActivateTheMachine) {
    const auto key = sell();
    start(m_laptop)->writeRequest(key.text(), path("request.json"));
    const QString licence = answerTo(path("request.json"));
    const auto manager = start(m_laptop);
    manager->importFile(licence);
    EXPECT_TRUE(manager->isLicensed());
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    manager->importFile(licence); // again does no harm
    EXPECT_TRUE(manager->isLicensed());
    EXPECT_EQ(faultOf([&] { start(m_desktop)->importFile(licence); }), LicenceFault::otherMachine);
}

TEST_F(OfflineActivationTest, AnExpiredOlderOrReturnedLicenceDoesNotComeBack) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->writeRequest(key.text(), path("request.json"));
    const QByteArray old = contents(answerTo(path("request.json")));
    m_now = m_now.addDays(10);
    start(m_laptop)->importFile(answerTo(path("request.json")));
    EXPECT_EQ(importFault(written(old)), LicenceFault::ended);
    EXPECT_THAT(m_message, HasSubstr("older"));

    m_serviceURL = QStringLiteral("http://127.0.0.1:%1").arg(m_listener.port());
    const QByteArray inUse = contents(answerTo(path("request.json")));
    start(m_laptop)->importFile(written(inUse));
    start(m_laptop)->deactivate();
    EXPECT_EQ(importFault(written(inUse)), LicenceFault::notActivated);
    EXPECT_THAT(m_message, HasSubstr("given back"));

    m_now = m_now.addDays(100);
    EXPECT_EQ(importFault(written(old)), LicenceFault::ended);
    EXPECT_THAT(m_message, HasSubstr("ran out"));
}

TEST_F(OfflineActivationTest, ALicenceGivenBackDoesNotComeBackByAnotherFileOfItsKey) {
    const auto key = sell();
    start(m_laptop)->writeRequest(key.text(), path("request.json"));
    const QByteArray first = contents(answerTo(path("request.json")));
    const QByteArray second = contents(answerTo(path("request.json")));
    start(m_laptop)->writeRequest(key.text(), path("request.json")); // another, handed in before giving back
    const QByteArray third = contents(answerTo(path("request.json")));
    start(m_laptop)->importFile(written(first));
    m_now = m_now.addSecs(3600);
    m_serviceURL = QStringLiteral("http://127.0.0.1:%1").arg(m_listener.port());
    start(m_laptop)->deactivate();
    m_serviceURL.clear();
    for (const QByteArray& file : {first, second, third}) {
        EXPECT_EQ(importFault(written(file)), LicenceFault::notActivated);
        EXPECT_THAT(m_message, HasSubstr("given back"));
    }
    // A machine activated anew: by a request written here, and by one that this machine does not know of.
    m_now = m_now.addSecs(1);
    const auto returned = m_laptop.kept;
    start(m_laptop)->writeRequest(key.text(), path("request.json"));
    const QByteArray anew = contents(answerTo(path("request.json")));
    start(m_laptop)->importFile(written(anew));
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    m_laptop.kept = returned;
    start(m_laptop)->importFile(written(anew));
    EXPECT_TRUE(start(m_laptop)->isLicensed());
}

TEST_F(OfflineActivationTest, WhatEarlierVersionsNotedAsGivenBackStaysGivenBack) {
    start(m_laptop)->writeRequest(sell().text(), path("request.json"));
    const QByteArray answer = contents(answerTo(path("request.json")));
    const auto signedBytes = QByteArray::fromBase64(
        QByteArray::fromStdString(json::Value::parse(answer.toStdString()).at("licence")));
    const std::string id = json::Value::parse(signedBytes.toStdString()).at("id");
    m_laptop.kept =
        R"({"latestTime":"2024-05-01T09:00:00Z","ended":["x",")" + QByteArray::fromStdString(id) + "\"]}";
    EXPECT_EQ(importFault(written(answer)), LicenceFault::notActivated);
    m_laptop.kept = R"({"latestTime":"2024-05-01T09:00:00Z","ended":["x"]})";
    EXPECT_EQ(importFault(written(answer)), std::nullopt);
}

TEST_F(OfflineActivationTest, AClockThatRanAheadIsForgivenByTheAnswerToARequestOfThisMachine) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->writeRequest(key.text(), path("request.json"));
    start(m_laptop)->importFile(answerTo(path("request.json")));
    m_now = m_now.addDays(3650);
    start(m_laptop); // sees the wrong year
    m_now = m_now.addDays(-3630);
    // A new lease, asked for elsewhere: nothing tells that it is not an old one and the clock turned back.
    EXPECT_EQ(importFault(answerTo(path("request.json"))), LicenceFault::ended);
    EXPECT_THAT(m_message, HasSubstr("write a new request file"));
    start(m_laptop)->writeRequest(key.text(), path("request.json"));
    const QByteArray answer = contents(answerTo(path("request.json")));
    start(m_laptop)->importFile(written(answer));
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    EXPECT_FALSE(start(m_laptop)->status().isClockBehind);

    // Once only: it is no way back to a time before its end.
    m_now = m_now.addDays(40);
    EXPECT_FALSE(start(m_laptop)->isLicensed());
    m_now = m_now.addDays(-39);
    EXPECT_EQ(importFault(written(answer)), LicenceFault::ended);
    EXPECT_FALSE(start(m_laptop)->isLicensed());
}

TEST_F(OfflineActivationTest, GivingBackWhileTheClockRunsAheadDoesNotBarTheKey) {
    const auto key = sell(1);
    m_serviceURL = QStringLiteral("http://127.0.0.1:%1").arg(m_listener.port());
    start(m_laptop)->activate(key.text());
    m_now = m_now.addDays(3650);
    start(m_laptop)->deactivate();
    m_now = m_now.addDays(-3640);
    start(m_laptop)->activate(key.text()); // the service's time is of now
    m_now = m_now.addDays(1);
    test::Machine scribe{m_laptop.id, {}};
    start(scribe)->writeRequest(key.text(), path("request.json"));
    EXPECT_EQ(importFault(answerTo(path("request.json"))), std::nullopt);
}

TEST_F(OfflineActivationTest, FilesThatAreNoLicenceAreNamedAndRefused) {
    EXPECT_EQ(importFault(path("none.json")), LicenceFault::file);
    EXPECT_EQ(m_message, "none.json is not a file.");
    EXPECT_EQ(importFault(m_folder.path()), LicenceFault::file);
    const QString pipe = path("pipe");
    ASSERT_EQ(mkfifo(qPrintable(pipe), S_IRWXU), 0);
    EXPECT_EQ(importFault(pipe), LicenceFault::file);
    EXPECT_EQ(importFault(QStringLiteral("/dev/zero")), LicenceFault::file);
    EXPECT_EQ(importFault(written(QByteArray(1'000'000, 'a'))), LicenceFault::file);
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("\x89PNG\r\n"), QByteArray("{\"licence\":\"\"}")})
        EXPECT_EQ(importFault(written(bytes)), LicenceFault::invalidLicence);
    // The request itself, brought back unanswered.
    start(m_laptop)->writeRequest(sell().text(), path("request.json"));
    EXPECT_EQ(importFault(path("request.json")), LicenceFault::invalidLicence);
    EXPECT_THAT(m_message, HasSubstr("not a licence"));

    EXPECT_EQ(faultOf([&] {
                  start(m_laptop)->writeRequest(sell().text(), QStringLiteral("/proc/nowhere/r.json"));
              }),
              LicenceFault::file);
    EXPECT_EQ(faultOf([&] { start(m_laptop)->writeRequest(QStringLiteral("PL"), path("r.json")); }),
              LicenceFault::malformedKey);
    EXPECT_FALSE(QFile::exists(path("r.json")));
}

}
}
