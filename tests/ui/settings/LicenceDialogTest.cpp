#include "ui/settings/LicenceDialog.h"

#include "licensing/LicenceFixture.h"
#include "ui/support/ScreenContext.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace pointloom::test {
namespace {

class LicenceDialogTest : public LicenceFixture {
protected:
    void open() {
        m_manager = start(m_laptop);
        m_dialog = std::make_unique<LicenceDialog>(m_screen.context, *m_manager, nullptr);
        m_dialog->show();
    }

    QPushButton* button(const QString& words) {
        for (QPushButton* candidate : m_dialog->findChildren<QPushButton*>()) {
            if (candidate->text() == words && candidate->isVisibleTo(m_dialog.get()))
                return candidate;
        }
        return nullptr;
    }
    void press(const QString& words) {
        ASSERT_TRUE(button(words)) << qPrintable(words);
        QTest::mouseClick(button(words), Qt::LeftButton);
    }
    QLineEdit& field() { return *m_dialog->findChild<QLineEdit*>(); }

    // Waits for a label with these words.
    bool says(const QString& words) {
        return QTest::qWaitFor(
            [&] {
                for (const QLabel* label : m_dialog->findChildren<QLabel*>()) {
                    if (label->isVisibleTo(m_dialog.get()) && label->text().contains(words))
                        return true;
                }
                return false;
            },
            10000);
    }

    ScreenContext m_screen;
    std::unique_ptr<LicenceManager> m_manager;
    std::unique_ptr<LicenceDialog> m_dialog;
};

TEST_F(LicenceDialogTest, APastedKeyActivatesAndIsGivenBack) {
    const auto key = sell();
    open();
    EXPECT_TRUE(says(QStringLiteral("This copy is not licensed.")));
    EXPECT_FALSE(button(QStringLiteral("Activate"))->isEnabled());
    QApplication::clipboard()->setText(u' ' + key.text().toLower().replace(u'-', u' ') + u'\n');
    QTest::keyClick(&field(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_TRUE(says(QStringLiteral("Thank you. This machine is now licensed.")));
    EXPECT_TRUE(says(QStringLiteral("Licensed to Ana Pérez.")));
    EXPECT_TRUE(says(key.masked()));
    EXPECT_TRUE(m_screen.state.isLicensed);
    EXPECT_FALSE(button(QStringLiteral("Activate")));

    m_screen.dialogs.confirms = false;
    press(QStringLiteral("Deactivate…"));
    EXPECT_TRUE(m_screen.state.isLicensed);
    m_screen.dialogs.confirms = true;
    press(QStringLiteral("Deactivate…"));
    EXPECT_TRUE(says(QStringLiteral("The licence was given back")));
    EXPECT_FALSE(m_screen.state.isLicensed);
}

TEST_F(LicenceDialogTest, FaultsAreToldInTheLanguageOfThePerson) {
    open();
    QTest::keyClicks(&field(), QStringLiteral("PL-ABC"));
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_TRUE(says(QStringLiteral("This is not a complete key yet.")));
    field().setText(QStringLiteral("PL-AAAAA-AAAAA-AAAAA-AAAAA")); // the last should be a Y
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_TRUE(says(QStringLiteral("There is a slip in this key.")));
    EXPECT_TRUE(m_dialog->isVisible());
    field().setText(LicenceKey::generate().text());
    m_screen.state.language = Language::german;
    press(QStringLiteral("Aktivieren"));
    EXPECT_TRUE(says(QStringLiteral("Der Lizenzdienst kennt diesen Schlüssel nicht.")));
    m_screen.state.language = Language::swedish;
    EXPECT_TRUE(says(QStringLiteral("Licenstjänsten känner inte till den här nyckeln.")));
    EXPECT_FALSE(m_screen.state.isLicensed);
}

TEST_F(LicenceDialogTest, AMachineWithoutANetworkGoesByFiles) {
    const auto key = sell();
    open();
    m_screen.dialogs.fileToSave = m_folder.filePath(QStringLiteral("request.json"));
    field().setText(key.text());
    press(QStringLiteral("Write Request…"));
    EXPECT_TRUE(says(QStringLiteral("The request was written.")));
    QFile request(*m_screen.dialogs.fileToSave);
    ASSERT_TRUE(request.open(QIODevice::ReadOnly));

    const auto answer = m_service.answer("/activate", request.readAll());
    QFile licence(m_folder.filePath(QStringLiteral("licence.json")));
    ASSERT_TRUE(licence.open(QIODevice::WriteOnly));
    licence.write(answer.body);
    licence.close();
    m_screen.dialogs.fileToOpen = licence.fileName();
    press(QStringLiteral("Import Licence File…"));
    EXPECT_TRUE(says(QStringLiteral("Licensed to Ana Pérez.")));
    EXPECT_TRUE(m_screen.state.isLicensed);
}

TEST_F(LicenceDialogTest, OpeningAsksAKeychainThatWasLockedOnceMore) {
    start(m_laptop)->activate(sell().text());
    m_laptop.readingFault = LicenceFault::keychainRefused;
    open();
    EXPECT_TRUE(says(QStringLiteral("The licence could not be read yet.")));
    EXPECT_FALSE(button(QStringLiteral("Deactivate…")));
    m_dialog.reset();
    m_laptop.readingFault.reset();
    m_laptop.lockedLoads = 1;
    open();
    EXPECT_TRUE(says(QStringLiteral("Licensed to Ana Pérez.")));
    EXPECT_TRUE(m_screen.state.isLicensed);
}

TEST_F(LicenceDialogTest, ClosingWhileTheServiceIsSilentCancelsFirst) {
    const auto key = sell();
    m_serviceURL = QStringLiteral("http://127.0.0.1:9"); // no service answers there
    open();
    field().setText(key.text());
    QTest::keyClick(&field(), Qt::Key_Return);
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_dialog->isVisible(); }, 10000));
    EXPECT_FALSE(m_screen.state.isLicensed);
}

}
}
