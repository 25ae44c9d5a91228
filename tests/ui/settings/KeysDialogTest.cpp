#include "ui/settings/KeysDialog.h"

#include "ui/common/KeyFile.h"
#include "ui/common/Preferences.h"
#include "ui/settings/HelpDialog.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>

namespace pointloom::test {
namespace {

class KeysDialogTest : public testing::Test {
protected:
    KeysDialogTest()
        : m_dialog(new KeysDialog(m_screen.context, nullptr)) {
        m_dialog->show();
        m_dialog->activateWindow();
    }
    ~KeysDialogTest() override { delete m_dialog; }

    KeyField& field(const char* command) {
        return *m_dialog->findChild<KeyField*>(QString::fromUtf8(command));
    }
    QPushButton& button(const char* name) {
        return *m_dialog->findChild<QPushButton*>(QString::fromUtf8(name));
    }
    std::string message() {
        return m_dialog->findChild<QLabel*>(QStringLiteral("message"))->text().toStdString();
    }
    /// Clicks a command's key and presses another.
    void change(const char* command, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(&field(command), Qt::LeftButton);
        QTest::keyClick(&field(command), key, modifiers);
    }
    QStringList found() {
        QStringList commands;
        for (const KeyField* field : m_dialog->findChildren<KeyField*>()) {
            if (field->isVisible())
                commands << field->objectName();
        }
        return commands;
    }
    CommandKeys::Keys keysOf(Command command) { return m_screen.keys.shown(command); }

    ScreenContext m_screen;
    QPointer<KeysDialog> m_dialog;
};

TEST_F(KeysDialogTest, EveryCommandIsFoundByNameMeaningOrKey) {
    EXPECT_EQ(found().size(), static_cast<qsizetype>(commandTable().size()) - 4)
        << "all but the four whose keys are fixed";
    auto& search = *m_dialog->findChild<QLineEdit*>();
    search.setText(QStringLiteral("CUT inside"));
    EXPECT_EQ(found(), QStringList(QStringLiteral("addCut")));
    search.setText(QStringLiteral("ctrl+shift+e"));
    EXPECT_EQ(found(), QStringList(QStringLiteral("exportVideo")));
    search.setText(QStringLiteral("makes no sense"));
    EXPECT_TRUE(found().isEmpty());
    m_screen.state.language = Language::german;
    search.setText(QStringLiteral("leertaste"));
    EXPECT_EQ(found(), QStringList(QStringLiteral("playPause")));
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_TRUE(field("playPause").isAsking());
    EXPECT_TRUE(m_dialog->isVisible());
}

TEST_F(KeysDialogTest, APressedKeyHoldsAtOnceEverywhereAndAtTheNextStart) {
    HelpDialog help(m_screen.context, nullptr);
    change("addCut", Qt::Key_X);
    EXPECT_EQ(keysOf(Command::addCut), CommandKeys::Keys{Qt::Key_X});
    EXPECT_EQ(field("addCut").text(), QStringLiteral("X"));
    EXPECT_EQ(message(), "“Mark a Cut” is X now.");
    EXPECT_EQ(Preferences::keys(m_screen.defaults), m_screen.keys.chosen().value());
    change("addMarker", Qt::Key_F6);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QStringList texts;
    for (const QLabel* label : help.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_TRUE(texts.contains(QStringLiteral("X")));
    EXPECT_FALSE(texts.contains(QStringLiteral("C")));
    EXPECT_TRUE(texts.join(u'\n').contains(QStringLiteral("Press F6 to add a marker")));

    QTest::mouseClick(&button("answer0"), Qt::LeftButton); // Undo
    EXPECT_EQ(keysOf(Command::addMarker), usualKeys(Command::addMarker));
    EXPECT_EQ(keysOf(Command::addCut), CommandKeys::Keys{Qt::Key_X});
}

TEST_F(KeysDialogTest, AKeyOfAnotherCommandIsNamedBeforeItIsTaken) {
    change("addCut", Qt::Key_Space);
    EXPECT_EQ(message(), "Space is already “Play/Pause”.");
    EXPECT_EQ(keysOf(Command::playPause), CommandKeys::Keys{Qt::Key_Space});
    QTest::keyClick(&field("addCut"), Qt::Key_Escape);
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_FALSE(field("addCut").isAsking());
    EXPECT_TRUE(m_screen.keys.chosen().value().empty());

    change("addCut", Qt::Key_Space);
    QTest::keyClick(&field("addCut"), Qt::Key_Tab);
    QTest::keyClick(&button("answer0"), Qt::Key_Space); // Take Over
    EXPECT_EQ(keysOf(Command::addCut), CommandKeys::Keys{Qt::Key_Space});
    EXPECT_TRUE(keysOf(Command::playPause).isEmpty());
    EXPECT_EQ(message(), "“Mark a Cut” is Space now. “Play/Pause” has no key now.");

    QTest::mouseClick(&field("playPause"), Qt::LeftButton);
    QTest::mouseClick(&button("answer0"), Qt::LeftButton); // Usual Key
    EXPECT_EQ(message(), "Space is already “Mark a Cut”.");
    QTest::mouseClick(&button("answer0"), Qt::LeftButton);
    EXPECT_EQ(keysOf(Command::playPause), CommandKeys::Keys{Qt::Key_Space});
    EXPECT_EQ(keysOf(Command::addCut), CommandKeys::Keys{Qt::Key_C});
}

TEST_F(KeysDialogTest, KeysThatMustStayAreRefusedAndTheNextOneCounts) {
    change("exportVideo", Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(message(), "Ctrl+V keeps its own meaning. Press another key.");
    QTest::keyClick(&field("exportVideo"), Qt::Key_E);
    EXPECT_TRUE(message().starts_with("E is used in fields and lists.")) << message();
    QTest::keyClick(&field("exportVideo"), Qt::Key_Return);
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_TRUE(m_screen.keys.chosen().value().empty());
    QTest::keyClick(&field("exportVideo"), Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(keysOf(Command::exportVideo), CommandKeys::Keys{Qt::CTRL | Qt::Key_R});
}

TEST_F(KeysDialogTest, AFileCarriesTheKeysToAnotherMachine) {
    change("addCut", Qt::Key_X);
    const QString path = m_screen.folder.filePath(QStringLiteral("mine"));
    m_screen.dialogs.fileToSave = path;
    QTest::mouseClick(&button("keysExport"), Qt::LeftButton);
    QTest::mouseClick(&button("keysAllUsual"), Qt::LeftButton);
    EXPECT_TRUE(m_screen.keys.chosen().value().empty());
    EXPECT_FALSE(button("keysAllUsual").isEnabled());
    m_screen.dialogs.fileToOpen = path + QStringLiteral(".json");
    QTest::mouseClick(&button("keysImport"), Qt::LeftButton);
    EXPECT_EQ(keysOf(Command::addCut), CommandKeys::Keys{Qt::Key_X});

    QFile file(*m_screen.dialogs.fileToOpen);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"version": 1, "keys": {"trimEnd": ["X"], "trimStart": ["X"]}})");
    file.close();
    QTest::mouseClick(&button("keysImport"), Qt::LeftButton);
    EXPECT_EQ(m_screen.dialogs.shown.last().toStdString(),
              "mine.json: keys.trimStart[0]: \"X\" is already the key of trimEnd");
    EXPECT_EQ(keysOf(Command::addCut), CommandKeys::Keys{Qt::Key_X}) << "nothing has changed";
}

}
}
