#include "licensing/KeychainRecordStore.h"
#include "licensing/LicenceError.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <unistd.h>

namespace pointloom {
namespace {

class RecordStoreTest : public testing::Test {
protected:
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
    m_store.remove();
    m_store.remove();
    EXPECT_EQ(m_store.load(), std::nullopt);
}

TEST_F(RecordStoreTest, WhatIsNoPlainFileOfModestSizeReadsAsAbsent) {
    QDir().mkpath(m_path);
    EXPECT_EQ(m_store.load(), std::nullopt);
    EXPECT_THROW(m_store.save("x"), LicenceError);
    QDir().rmdir(m_path);
    ASSERT_EQ(mkfifo(qPrintable(m_path), S_IRWXU), 0);
    EXPECT_EQ(m_store.load(), std::nullopt);
    QFile::remove(m_path);
    m_store.save(QByteArray(100'000, 'a'));
    EXPECT_EQ(m_store.load(), std::nullopt);
}

TEST_F(RecordStoreTest, AFolderThatCannotBeMadeIsNamed) {
    try {
        FileRecordStore(QStringLiteral("/proc/nowhere/licence.json")).save("x");
        FAIL();
    } catch (const LicenceError& error) {
        EXPECT_EQ(error.fault(), LicenceFault::file);
        EXPECT_TRUE(error.message().contains(u"/proc/nowhere/licence.json")) << error.what();
    }
}

TEST_F(RecordStoreTest, WithoutAKeychainTheFileServes) {
    // Only where none can be reached: a test must not write to a person's own keychain.
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
        QFile::exists(QStringLiteral("/run/user/%1/bus").arg(getuid())))
        GTEST_SKIP() << "a session bus is running";
    KeychainRecordStore store(m_store);
    EXPECT_EQ(store.load(), std::nullopt);
    store.save("kept");
    EXPECT_EQ(store.load(), QByteArray("kept"));
    EXPECT_EQ(m_store.load(), QByteArray("kept"));
    store.remove();
    EXPECT_EQ(store.load(), std::nullopt);
}

}
}
