#include "licensing/LicenceFixture.h"
#include "licensing/LicenceStatus.h"
#include "support/LoopbackServer.h"
#include "json/JsonDocument.h"

#include <atomic>
#include <gmock/gmock.h>
#include <QCryptographicHash>
#include <thread>

namespace pointloom {
namespace {

using testing::HasSubstr;

class LicenceManagerTest : public test::LicenceFixture {
protected:
    void loseNetwork() { m_serviceURL = QStringLiteral("http://127.0.0.1:1/"); }
    void passDays(int days) { m_now = m_now.addDays(days); }
    static QString text(const LicenceKey& key) { return key.text(); }
};

TEST_F(LicenceManagerTest, AnActivatedMachineNeedsNoNetworkAgain) {
    const auto key = sell();
    const auto manager = start(m_laptop);
    EXPECT_FALSE(manager->isLicensed());
    EXPECT_THAT(manager->status().inWords().toStdString(), HasSubstr("not licensed"));
    manager->activate(u' ' + key.text().toLower() + u'\n');
    EXPECT_TRUE(manager->isLicensed());

    loseNetwork();
    passDays(3650);
    const auto later = start(m_laptop);
    EXPECT_TRUE(later->isLicensed());
    EXPECT_EQ(later->status().record->holder, QStringLiteral("Ana Pérez"));
    EXPECT_EQ(later->status().inWords(), QStringLiteral("Licensed to Ana Pérez."));
    EXPECT_FALSE(later->renewIfDue()) << "what never expires is never renewed";
}

TEST_F(LicenceManagerTest, AKeyIsForSoManyMachinesAndEachCountsOnce) {
    const auto key = sell(1);
    start(m_laptop)->activate(text(key));
    m_laptop.kept.reset(); // a system installed anew
    start(m_laptop)->activate(text(key));
    EXPECT_EQ(faultOf([&] { start(m_desktop)->activate(text(key)); }), LicenceFault::limitReached);
    EXPECT_EQ(m_message, "This key is already used on another machine. Deactivate it there first.");

    const auto manager = start(m_laptop);
    manager->deactivate();
    EXPECT_FALSE(manager->isLicensed());
    EXPECT_FALSE(start(m_laptop)->isLicensed());
    start(m_desktop)->activate(text(key));
    EXPECT_TRUE(start(m_desktop)->isLicensed());

    const auto pair = sell(2);
    test::Machine others[] = {{"a", {}}, {"b", {}}, {"c", {}}};
    start(others[0])->activate(text(pair));
    start(others[1])->activate(text(pair));
    EXPECT_EQ(faultOf([&] { start(others[2])->activate(text(pair)); }), LicenceFault::limitReached);
    EXPECT_THAT(m_message, HasSubstr("on 2 machines"));
}

TEST_F(LicenceManagerTest, RefusalsAreToldInWords) {
    const auto manager = start(m_laptop);
    EXPECT_EQ(faultOf([&] { manager->activate(QStringLiteral("PL-1")); }), LicenceFault::malformedKey);
    EXPECT_EQ(faultOf([&] { manager->activate(text(LicenceKey::generate())); }), LicenceFault::unknownKey);
    EXPECT_THAT(m_message, HasSubstr("does not know this key"));
    EXPECT_EQ(faultOf([&] { manager->activate(text(sell(1, QStringLiteral("2024-04-01T00:00:00Z")))); }),
              LicenceFault::ended);
    const auto key = sell();
    m_database.revoke(key.text());
    EXPECT_EQ(faultOf([&] { manager->activate(text(key)); }), LicenceFault::revoked);
    EXPECT_EQ(faultOf([&] { manager->deactivate(); }), LicenceFault::notActivated);
    test::Machine nameless;
    EXPECT_EQ(faultOf([&] { start(nameless)->activate(text(sell())); }), LicenceFault::noMachineIdentity);
}

TEST_F(LicenceManagerTest, AFailedActivationLeavesTheLicenceInUse) {
    const auto manager = start(m_laptop);
    manager->activate(text(sell()));
    EXPECT_EQ(faultOf([&] { manager->activate(text(LicenceKey::generate())); }), LicenceFault::unknownKey);
    EXPECT_TRUE(manager->isLicensed());
    EXPECT_TRUE(start(m_laptop)->isLicensed());
}

TEST_F(LicenceManagerTest, DeactivatingWithoutAnAnswerKeepsTheLicence) {
    const auto key = sell();
    start(m_laptop)->activate(text(key));
    const QString url = m_serviceURL;
    loseNetwork();
    EXPECT_EQ(faultOf([&] { start(m_laptop)->deactivate(); }), LicenceFault::noConnection);
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    m_serviceURL = url;
    // The seller freed the machine already: giving it back succeeds.
    m_database.deactivate(key.text(), machineFingerprint(m_laptop.id));
    start(m_laptop)->deactivate();
    EXPECT_FALSE(start(m_laptop)->isLicensed());
}

TEST_F(LicenceManagerTest, ALicenceIsRenewedFromFourteenDaysBeforeItsEnd) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->activate(text(key));
    passDays(15);
    auto manager = start(m_laptop);
    EXPECT_FALSE(manager->status().isRenewalDue);
    passDays(1);
    manager = start(m_laptop);
    EXPECT_TRUE(manager->status().isRenewalDue);
    EXPECT_FALSE(manager->renewIfDue());
    EXPECT_EQ(manager->status().record->expires, m_now.addDays(30));
    EXPECT_FALSE(manager->status().isRenewalDue);
}

TEST_F(LicenceManagerTest, AFailedRenewalTakesNothingAwayBeforeTheEnd) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->activate(text(key));
    passDays(20);
    const QString url = m_serviceURL;
    loseNetwork();
    auto manager = start(m_laptop);
    const auto problem = manager->renewIfDue();
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->fault(), LicenceFault::noConnection);
    EXPECT_TRUE(manager->isLicensed());

    m_serviceURL = url;
    m_database.revoke(key.text());
    EXPECT_EQ(start(m_laptop)->renewIfDue()->fault(), LicenceFault::revoked);
    EXPECT_TRUE(start(m_laptop)->isLicensed());

    passDays(10);
    manager = start(m_laptop);
    EXPECT_FALSE(manager->isLicensed());
    EXPECT_EQ(manager->status().state, LicenceState::expired);
    EXPECT_THAT(manager->status().inWords().toStdString(), HasSubstr("ran out on"));
}

TEST_F(LicenceManagerTest, ALicenceThatRanOutIsRenewedWhenTheServiceAgrees) {
    start(m_laptop)->activate(text(sell(1, {}, 30)));
    passDays(100);
    const auto manager = start(m_laptop);
    EXPECT_FALSE(manager->isLicensed());
    EXPECT_FALSE(manager->renewIfDue());
    EXPECT_TRUE(manager->isLicensed());
}

TEST_F(LicenceManagerTest, RenewingTakesNoMachineThatWasFreed) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->activate(text(key));
    m_database.deactivate(key.text(), machineFingerprint(m_laptop.id));
    passDays(20);
    EXPECT_EQ(start(m_laptop)->renewIfDue()->fault(), LicenceFault::notActivated);
    EXPECT_EQ(m_database.machineCount(key.text()), 0);
}

TEST_F(LicenceManagerTest, AClockTurnedBackIsNoticedAndExtendsNothing) {
    start(m_laptop)->activate(text(sell(1, QStringLiteral("2024-06-01T00:00:00Z"))));
    passDays(40);
    EXPECT_EQ(start(m_laptop)->status().state, LicenceState::expired);
    passDays(-35);
    auto manager = start(m_laptop);
    EXPECT_EQ(manager->status().state, LicenceState::expired);
    EXPECT_TRUE(manager->status().isClockBehind);
    EXPECT_THAT(manager->status().inWords().toStdString(), HasSubstr("clock"));

    // A licence that has not run out by any clock stays, whatever the clock says.
    start(m_desktop)->activate(text(sell()));
    passDays(-1000);
    manager = start(m_desktop);
    EXPECT_TRUE(manager->isLicensed());
    EXPECT_TRUE(manager->status().isClockBehind);
}

TEST_F(LicenceManagerTest, ASmallCorrectionOfTheClockIsNothingToTell) {
    start(m_laptop)->activate(text(sell()));
    m_now = m_now.addSecs(-12 * 60 * 60);
    EXPECT_FALSE(start(m_laptop)->status().isClockBehind);
    EXPECT_TRUE(start(m_laptop)->isLicensed());
}

TEST_F(LicenceManagerTest, AClockThatRanAheadIsForgivenByAFreshAnswer) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->activate(text(key));
    passDays(10'000);
    EXPECT_FALSE(start(m_laptop)->isLicensed());
    passDays(-9'995);
    EXPECT_FALSE(start(m_laptop)->isLicensed());
    EXPECT_FALSE(start(m_laptop)->renewIfDue());
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    EXPECT_FALSE(start(m_laptop)->status().isClockBehind);
}

TEST_F(LicenceManagerTest, WhatIsKeptForAnotherMachineOrChangedLicensesNothing) {
    const auto key = sell(1);
    start(m_laptop)->activate(text(key));
    m_desktop.kept = m_laptop.kept;
    auto manager = start(m_desktop);
    EXPECT_EQ(manager->status().state, LicenceState::otherMachine);
    EXPECT_FALSE(manager->isLicensed());
    manager->deactivate(); // forgets the copy, and frees no other machine
    EXPECT_EQ(m_database.machineCount(key.text()), 1);
    EXPECT_EQ(start(m_desktop)->status().state, LicenceState::unlicensed);

    const QByteArray good = *m_laptop.kept;
    for (qsizetype at = 0; at < good.size(); at += 3) {
        m_laptop.kept = good;
        (*m_laptop.kept)[at] = static_cast<char>(good[at] ^ 4);
        start(m_laptop); // no change of a byte may do harm; those in what is signed end the licence
    }
    for (const QByteArray& bytes :
         {QByteArray(), good.left(good.size() / 2), QByteArray("[]"), QByteArray(100'000, '[')}) {
        m_laptop.kept = bytes;
        EXPECT_FALSE(start(m_laptop)->isLicensed());
    }
    m_laptop.kept = QByteArray(good).replace("\"signature\":\"", "\"signature\":\"AA");
    manager = start(m_laptop);
    EXPECT_EQ(manager->status().state, LicenceState::invalid);
    EXPECT_FALSE(manager->status().inWords().isEmpty());
    manager->activate(text(key));
    EXPECT_TRUE(manager->isLicensed());
}

TEST_F(LicenceManagerTest, ALicenceThatCannotBeKeptHoldsForThisRunAndIsTold) {
    m_laptop.isStoreBroken = true;
    const auto key = sell();
    const auto manager = start(m_laptop);
    EXPECT_EQ(faultOf([&] { manager->activate(text(key)); }), LicenceFault::file);
    EXPECT_TRUE(manager->isLicensed());
}

TEST_F(LicenceManagerTest, ALockedKeychainIsNotAnEmptyOne) {
    const auto key = sell(2);
    start(m_laptop)->activate(text(key));
    const auto kept = m_laptop.kept;
    m_laptop.readingFault = LicenceFault::keychainLocked;
    const auto manager = start(m_laptop);
    EXPECT_FALSE(manager->isLicensed());
    EXPECT_EQ(manager->status().state, LicenceState::unread);
    EXPECT_TRUE(manager->status().isAwaited);
    EXPECT_THAT(manager->status().inWords().toStdString(), HasSubstr("Unlock it."));
    const auto another = sell();
    EXPECT_EQ(faultOf([&] { manager->activate(text(another)); }), LicenceFault::keychainLocked);
    EXPECT_EQ(m_database.machineCount(another.text()), 0);
    EXPECT_EQ(faultOf([&] { manager->deactivate(); }), LicenceFault::keychainLocked);
    EXPECT_EQ(m_laptop.kept, kept);

    m_laptop.readingFault.reset();
    manager->load();
    EXPECT_TRUE(manager->isLicensed());
    // What is known stays known.
    m_laptop.readingFault = LicenceFault::keychainLocked;
    manager->load();
    EXPECT_TRUE(manager->isLicensed());

    m_laptop.readingFault = LicenceFault::keychainRefused;
    const auto refused = start(m_laptop);
    EXPECT_EQ(refused->status().state, LicenceState::unread);
    EXPECT_FALSE(refused->status().isAwaited);
    refused->writeRequest(text(key), m_folder.filePath(QStringLiteral("request.json")));
    EXPECT_EQ(m_laptop.kept, kept) << "a request alone must not hide the licence";
    refused->activate(text(key));
    EXPECT_TRUE(refused->isLicensed());
}

TEST_F(LicenceManagerTest, NobodyWaitsForASilentKeychainAfterCancelling) {
    m_laptop.isSilent = true;
    std::atomic<bool> isStopping = false;
    const auto manager = startWithoutLoading(m_laptop);
    std::thread worker([&] { manager->load([&] { return isStopping.load(); }); });
    // Whether this one waits for the store or for the other operation.
    EXPECT_EQ(faultOf([&] { manager->activate(text(sell()), [] { return true; }); }),
              LicenceFault::cancelled);
    isStopping = true;
    worker.join();
    EXPECT_EQ(manager->status().state, LicenceState::unlicensed);
}

TEST_F(LicenceManagerTest, WhereNothingCanBeWrittenNothingIsGivenBack) {
    const auto key = sell();
    start(m_laptop)->activate(text(key));
    m_laptop.isStoreBroken = true;
    const auto manager = start(m_laptop);
    EXPECT_EQ(faultOf([&] { manager->deactivate(); }), LicenceFault::file);
    EXPECT_EQ(m_message, "The licence was not given back. no room");
    EXPECT_EQ(m_database.machineCount(key.text()), 1);
    EXPECT_TRUE(manager->isLicensed());
}

TEST_F(LicenceManagerTest, OnlyTheDocumentedAnswerGivesALicenceBack) {
    start(m_laptop)->activate(text(sell()));
    QByteArray answer;
    test::LoopbackServer odd([&](const test::HttpRequest&) { return test::httpAnswer(200, answer); });
    m_serviceURL = odd.url(QString()).toString();
    const auto manager = start(m_laptop);
    answer = R"({"error": "revoked"})";
    EXPECT_EQ(faultOf([&] { manager->deactivate(); }), LicenceFault::revoked);
    for (const char* body :
         {"", "[]", "null", "{}{}", R"({"ok": true})", "<html>Signed in to the hotel</html>"}) {
        answer = body;
        EXPECT_EQ(faultOf([&] { manager->deactivate(); }), LicenceFault::serviceTrouble) << body;
    }
    EXPECT_TRUE(manager->isLicensed());
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    answer = " { }\n";
    manager->deactivate();
    EXPECT_FALSE(start(m_laptop)->isLicensed());
}

TEST_F(LicenceManagerTest, AnExpiredAnswerDoesNotReplaceALicenceThatHolds) {
    const auto key = sell(1, {}, 30);
    start(m_laptop)->activate(text(key));
    passDays(20);
    licenceserver::LicenceService late(m_database, m_secret, [this] { return m_now.addDays(-60); });
    test::LoopbackServer server([&](const test::HttpRequest& request) {
        return test::httpAnswer(200, late.answer(request.target, request.body).body);
    });
    m_serviceURL = server.url(QString()).toString();
    const auto manager = start(m_laptop);
    const auto problem = manager->renewIfDue();
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->fault(), LicenceFault::ended);
    EXPECT_TRUE(manager->isLicensed());
    EXPECT_TRUE(start(m_laptop)->isLicensed());
    EXPECT_EQ(faultOf([&] { start(m_desktop)->activate(text(sell(1, {}, 30))); }), LicenceFault::ended)
        << "a machine without a licence must not be told that it has one now";
}

TEST_F(LicenceManagerTest, ALongListOfLicencesGivenBackIsReadAndStaysReadable) {
    const auto key = sell();
    start(m_laptop)->activate(text(key));
    json::Value kept = json::Value::parse(m_laptop.kept->toStdString());
    constexpr std::size_t limit = 262'144; // bytes
    constexpr std::size_t entry = 39;      // bytes of an id in quotes with its comma
    const std::size_t count = (limit - kept.dump().size()) / entry - 1;
    for (std::size_t id = 100'000; id < 100'000 + count;
         ++id) // as earlier versions noted them, without bound
        kept["ended"].push_back("00000000-0000-4000-8000-000000" + std::to_string(id));
    m_laptop.kept = QByteArray::fromStdString(kept.dump());
    auto manager = start(m_laptop);
    EXPECT_TRUE(manager->isLicensed());
    manager->deactivate();
    manager->activate(text(key));
    EXPECT_LE(m_laptop.kept->size(), limit);
    EXPECT_TRUE(m_laptop.kept->contains(std::to_string(100'000 + count - 1).c_str())) << "the newest stay";
    EXPECT_TRUE(start(m_laptop)->isLicensed());
}

TEST(MachineFingerprint, TellsMachinesApartWithoutNamingThem) {
    const QByteArray id = "3d1219c7c4c5404aaa1f6d2a48adfda4";
    EXPECT_EQ(machineFingerprint(id), machineFingerprint(id));
    EXPECT_NE(machineFingerprint(id), machineFingerprint("3d1219c7c4c5404aaa1f6d2a48adfda5"));
    EXPECT_NE(machineFingerprint(id).toUtf8(),
              QCryptographicHash::hash(id, QCryptographicHash::Sha256).toHex());
    EXPECT_EQ(machineFingerprint(id).size(), 64);
}

}
}
