#include "licensing/RecordStore.h"
#include "licensing/LicenceKey.h"

#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <vector>

namespace pointloom {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

class RecordStoreTest : public testing::Test {
protected:
    std::optional<LicenceFault> faultOf(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const LicenceError& error) {
            m_message = error.what();
            return error.fault();
        }
        return std::nullopt;
    }

    std::string m_message;
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(QStringLiteral("new/licence.json"));
    FileRecordStore m_store{m_path};
};

TEST_F(RecordStoreTest, TheFileIsItsOwnersAlone) {
    EXPECT_EQ(m_store.load(), std::nullopt);
    m_store.save("first");
    QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    m_store.save("second");
    EXPECT_EQ(m_store.load(), QByteArray("second"));
    struct stat facts {};
    ASSERT_EQ(stat(qPrintable(m_path), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
}

TEST_F(RecordStoreTest, WhatCannotBeReadIsNotTakenForNothing) {
    QDir().mkpath(m_path);
    EXPECT_EQ(faultOf([&] { m_store.load(); }), LicenceFault::file);
    EXPECT_EQ(faultOf([&] { m_store.save("x"); }), LicenceFault::file);
    QDir().rmdir(m_path);
    ASSERT_EQ(mkfifo(qPrintable(m_path), S_IRWXU), 0);
    EXPECT_EQ(faultOf([&] { m_store.load(); }), LicenceFault::file);
    QFile::remove(m_path);
    m_store.save(QByteArray(262'144, 'a'));
    EXPECT_EQ(m_store.load(), QByteArray(262'144, 'a'));
    m_store.save(QByteArray(262'145, 'a'));
    EXPECT_EQ(faultOf([&] { m_store.load(); }), LicenceFault::file);
    EXPECT_THAT(m_message, HasSubstr("licence.json cannot be read: it is too large"));
}

TEST_F(RecordStoreTest, AFolderThatCannotBeMadeIsNamed) {
    FileRecordStore store(QStringLiteral("/proc/nowhere/licence.json"));
    EXPECT_EQ(store.load(), std::nullopt);
    EXPECT_EQ(faultOf([&] { store.save("x"); }), LicenceFault::file);
    EXPECT_THAT(m_message, HasSubstr("/proc/nowhere/licence.json"));
}

// A keychain whose answers the test gives.
class KeychainRecordStoreTest : public RecordStoreTest {
protected:
    using Answer = Keychain::Answer;
    using Outcome = Keychain::Outcome;

    KeychainRecordStore storeWith(std::chrono::milliseconds patience = 0ms) {
        return KeychainRecordStore(m_store,
                                   {.read = [this] { return m_readings.emplace_back().get_future(); },
                                    .write =
                                        [this](const QByteArray& bytes) {
                                            m_written.push_back(bytes);
                                            std::promise<Answer> answer;
                                            answer.set_value(m_writing);
                                            return answer.get_future();
                                        }},
                                   patience);
    }

    // A load that the keychain answers.
    std::optional<QByteArray> loadAnswered(KeychainRecordStore& store, const Answer& answer) {
        EXPECT_EQ(faultOf([&] { store.load(); }), LicenceFault::keychainLocked);
        m_readings.back().set_value(answer);
        return store.load();
    }

    std::deque<std::promise<Answer>> m_readings;
    std::vector<QByteArray> m_written;
    Answer m_writing{Outcome::done, {}, {}};
};

TEST_F(KeychainRecordStoreTest, AnAnswerThatComesLateIsTakenAndTheUserIsAskedOnce) {
    KeychainRecordStore store = storeWith();
    for (int load = 0; load < 3; ++load)
        EXPECT_EQ(faultOf([&] { store.load(); }), LicenceFault::keychainLocked);
    ASSERT_EQ(m_readings.size(), 1U);
    m_readings[0].set_value({Outcome::gaveUp, {}, {}});
    EXPECT_EQ(faultOf([&] { store.load(); }), LicenceFault::keychainLocked);
    EXPECT_EQ(faultOf([&] { store.load(); }), LicenceFault::keychainLocked);
    ASSERT_EQ(m_readings.size(), 2U);
    m_readings[1].set_value({Outcome::done, "kept", {}});
    EXPECT_EQ(store.load(), QByteArray("kept"));
    EXPECT_EQ(loadAnswered(store, {Outcome::nothingThere, {}, {}}), std::nullopt);
    EXPECT_EQ(loadAnswered(store, {Outcome::notRunning, {}, {}}), std::nullopt);
    store.save("new");
    EXPECT_EQ(m_written, std::vector<QByteArray>{"new"});
    EXPECT_FALSE(QFile::exists(m_path));
}

TEST_F(KeychainRecordStoreTest, TheWaitForAKeychainEndsWhenTheProgramDoes) {
    KeychainRecordStore store = storeWith(24h);
    EXPECT_EQ(faultOf([&] { store.load([] { return true; }); }), LicenceFault::cancelled);
    m_readings[0].set_value({Outcome::done, "kept", {}});
    EXPECT_EQ(store.load(), QByteArray("kept"));
}

TEST_F(KeychainRecordStoreTest, WhatAKeychainRefusedToShowIsNotReplacedInIt) {
    KeychainRecordStore store = storeWith();
    EXPECT_EQ(faultOf([&] {
                  loadAnswered(store, {Outcome::refused, {}, QStringLiteral("Denied.")});
              }),
              LicenceFault::keychainRefused);
    EXPECT_THAT(m_message, HasSubstr("Denied."));
    store.save("new");
    EXPECT_TRUE(m_written.empty());
    KeychainRecordStore next = storeWith();
    EXPECT_EQ(next.load(), QByteArray("new"));
    next.save("newer");
    EXPECT_TRUE(m_written.empty());
    EXPECT_EQ(m_store.load(), QByteArray("newer"));
}

TEST_F(KeychainRecordStoreTest, WhereNoKeychainTakesItTheFileServes) {
    m_writing.outcome = Outcome::notRunning;
    KeychainRecordStore store = storeWith();
    EXPECT_EQ(loadAnswered(store, {Outcome::notRunning, {}, {}}), std::nullopt);
    store.save("kept");
    EXPECT_EQ(store.load(), QByteArray("kept"));
    EXPECT_EQ(m_store.load(), QByteArray("kept"));
}

}
}
