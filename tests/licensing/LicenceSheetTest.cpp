#include "licensing/LicenceSheet.h"
#include "licensing/LicenceFixture.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace pointloom {
namespace {

using testing::HasSubstr;

class LicenceSheetTest : public test::LicenceFixture {
protected:
    void open() {
        m_manager = start(m_laptop);
        m_sheet = std::make_unique<LicenceSheet>(*m_manager, [this] { ++m_changes; });
    }

    void waitForOutcome() {
        constexpr int patience = 10'000; // ms
        for (const QDeadlineTimer deadline(patience); m_sheet->isWorking() && !deadline.hasExpired();) {
            QCoreApplication::processEvents();
            QThread::msleep(2);
        }
        EXPECT_FALSE(m_sheet->isWorking());
    }

    int m_changes = 0;
    std::unique_ptr<LicenceManager> m_manager;
    std::unique_ptr<LicenceSheet> m_sheet;
};

TEST_F(LicenceSheetTest, ActivatesAndGivesBackWhileTheScreenStaysAlive) {
    const auto key = sell();
    open();
    EXPECT_FALSE(m_sheet->canDeactivate());
    m_sheet->activate(key.text());
    EXPECT_TRUE(m_sheet->isWorking());
    EXPECT_FALSE(m_sheet->progress().isEmpty());
    EXPECT_EQ(m_changes, 1);
    m_sheet->activate(key.text()); // one at a time
    waitForOutcome();
    EXPECT_EQ(m_changes, 2);
    EXPECT_FALSE(m_sheet->fault().has_value()) << qPrintable(m_sheet->message());
    EXPECT_EQ(m_sheet->holder(), QStringLiteral("Ana Pérez"));
    EXPECT_EQ(m_sheet->maskedKey(), key.masked());
    EXPECT_TRUE(m_sheet->canDeactivate());
    EXPECT_TRUE(m_manager->isLicensed());

    m_sheet->deactivate();
    waitForOutcome();
    EXPECT_FALSE(m_sheet->fault().has_value());
    EXPECT_TRUE(m_sheet->holder().isEmpty());
    EXPECT_THAT(m_sheet->status().inWords().toStdString(), HasSubstr("not licensed"));
}

TEST_F(LicenceSheetTest, FailuresAndSlipsAreInWords) {
    open();
    EXPECT_TRUE(LicenceSheet::problemWithKey(QStringLiteral("PL-123")));
    EXPECT_FALSE(LicenceSheet::problemWithKey(LicenceKey::generate().text()));
    m_sheet->activate(LicenceKey::generate().text());
    waitForOutcome();
    EXPECT_EQ(m_sheet->fault(), LicenceFault::unknownKey);
    EXPECT_THAT(m_sheet->message().toStdString(), HasSubstr("does not know this key"));
    m_sheet->importFile(QStringLiteral("/nowhere/licence.json"));
    waitForOutcome();
    EXPECT_EQ(m_sheet->message(), QStringLiteral("licence.json is not a file."));
    m_sheet->writeRequest(LicenceKey::generate().text(), m_folder.filePath(QStringLiteral("request.json")));
    waitForOutcome();
    EXPECT_FALSE(m_sheet->fault().has_value()) << qPrintable(m_sheet->message());
}

TEST_F(LicenceSheetTest, CancellingAndClosingDoNotWaitForAServiceThatHangs) {
    test::LoopbackServer silent([](const test::HttpRequest&) { return QByteArray(); });
    m_serviceURL = silent.url(QString()).toString();
    open();
    m_sheet->activate(LicenceKey::generate().text());
    m_sheet->cancel();
    waitForOutcome();
    EXPECT_EQ(m_sheet->fault(), LicenceFault::cancelled);
    m_sheet->activate(LicenceKey::generate().text());
    m_sheet.reset();
    const int changes = m_changes;
    QCoreApplication::processEvents();
    EXPECT_EQ(m_changes, changes) << "an outcome arrived after the sheet was gone";
}

}
}
