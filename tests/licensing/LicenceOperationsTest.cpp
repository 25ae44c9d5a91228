#include "licensing/LicenceOperations.h"
#include "licensing/LicenceFixture.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace pointloom {
namespace {

using testing::HasSubstr;

class LicenceOperationsTest : public test::LicenceFixture {
protected:
    void open() {
        m_manager = start(m_laptop);
        m_operations = std::make_unique<LicenceOperations>(*m_manager, [this] { ++m_changes; });
    }

    void waitForOutcome() {
        constexpr int patience = 10'000; // ms
        for (const QDeadlineTimer deadline(patience); m_operations->isWorking() && !deadline.hasExpired();) {
            QCoreApplication::processEvents();
            QThread::msleep(2);
        }
        EXPECT_FALSE(m_operations->isWorking());
    }

    int m_changes = 0;
    std::unique_ptr<LicenceManager> m_manager;
    std::unique_ptr<LicenceOperations> m_operations;
};

TEST_F(LicenceOperationsTest, ActivatesAndGivesBackWhileTheScreenStaysAlive) {
    const auto key = sell();
    open();
    EXPECT_FALSE(m_operations->canDeactivate());
    m_operations->activate(key.text());
    EXPECT_TRUE(m_operations->isWorking());
    EXPECT_EQ(m_changes, 1);
    m_operations->activate(key.text()); // one at a time
    waitForOutcome();
    EXPECT_EQ(m_changes, 2);
    EXPECT_TRUE(m_operations->hasOutcome());
    EXPECT_FALSE(m_operations->error()) << m_operations->error()->what();
    EXPECT_EQ(m_operations->status().record->holder, QStringLiteral("Ana Pérez"));
    EXPECT_EQ(m_operations->maskedKey(), key.masked());
    EXPECT_TRUE(m_operations->canDeactivate());
    EXPECT_TRUE(m_manager->isLicensed());

    m_operations->deactivate();
    waitForOutcome();
    EXPECT_FALSE(m_operations->error());
    EXPECT_TRUE(m_operations->maskedKey().isEmpty());
    EXPECT_THAT(m_operations->status().inWords().toStdString(), HasSubstr("not licensed"));
}

TEST_F(LicenceOperationsTest, FailuresAndSlipsAreInWords) {
    open();
    EXPECT_FALSE(LicenceKey::isValid(QStringLiteral("PL-123")));
    EXPECT_TRUE(LicenceKey::isValid(LicenceKey::generate().text()));
    m_operations->activate(LicenceKey::generate().text());
    waitForOutcome();
    EXPECT_EQ(m_operations->error().value().fault(), LicenceFault::unknownKey);
    EXPECT_THAT(m_operations->error().value().what(), HasSubstr("does not know this key"));
    m_operations->importFile(QStringLiteral("/nowhere/licence.json"));
    waitForOutcome();
    EXPECT_EQ(m_operations->error().value().message(), QStringLiteral("licence.json is not a file."));
    m_operations->writeRequest(LicenceKey::generate().text(),
                               m_folder.filePath(QStringLiteral("request.json")));
    waitForOutcome();
    EXPECT_FALSE(m_operations->error()) << m_operations->error()->what();
}

TEST_F(LicenceOperationsTest, CancellingAndClosingDoNotWaitForAServiceThatHangs) {
    test::LoopbackServer silent([](const test::HttpRequest&) { return QByteArray(); });
    m_serviceURL = silent.url(QString()).toString();
    open();
    m_operations->activate(LicenceKey::generate().text());
    m_operations->cancel();
    waitForOutcome();
    EXPECT_EQ(m_operations->error().value().fault(), LicenceFault::cancelled);
    m_operations->activate(LicenceKey::generate().text());
    m_operations.reset();
    const int changes = m_changes;
    QCoreApplication::processEvents();
    EXPECT_EQ(m_changes, changes) << "an outcome arrived after the sheet was gone";
}

}
}
