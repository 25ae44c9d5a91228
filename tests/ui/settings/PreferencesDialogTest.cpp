#include "ui/settings/PreferencesDialog.h"

#include "persistence/KeptSegments.h"
#include "ui/common/Preferences.h"
#include "ui/support/ScreenContext.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

namespace pointloom::test {
namespace {

class PreferencesDialogTest : public testing::Test {
protected:
    void open() {
        m_dialog = std::make_unique<PreferencesDialog>(m_screen.context, nullptr);
        m_dialog->show();
    }
    QComboBox& list(int number) { return *m_dialog->findChildren<QComboBox*>().at(number); }
    QCheckBox& box(const char* name) { return *m_dialog->findChild<QCheckBox*>(QString::fromUtf8(name)); }

    ScreenContext m_screen;
    std::unique_ptr<PreferencesDialog> m_dialog;
};

TEST_F(PreferencesDialogTest, ChoicesHoldAtOnceAndAtTheNextStart) {
    open();
    QTest::keyClick(&list(0), Qt::Key_Down); // French
    EXPECT_EQ(m_screen.state.language.value(), Language::french);
    EXPECT_EQ(m_screen.store.saves, 1);
    EXPECT_EQ(m_dialog->windowTitle(), QStringLiteral("Préférences"));
    QTest::keyClick(&list(1), Qt::Key_Down);
    EXPECT_EQ(Theme::shared().choice(), ThemeChoice::light);
    QTest::keyClick(&box("hardwareDecoding"), Qt::Key_Space);
    EXPECT_TRUE(box("quickPictures").isChecked()) << "at first";
    QTest::keyClick(&box("quickPictures"), Qt::Key_Space);
    QTest::keyClick(&box("crashReportingEnabled"), Qt::Key_Space);

    open();
    EXPECT_EQ(Preferences::theme(m_screen.defaults), ThemeChoice::light);
    EXPECT_EQ(list(0).currentIndex(), 1);
    EXPECT_EQ(list(1).currentIndex(), 1);
    EXPECT_TRUE(box("hardwareDecoding").isChecked());
    EXPECT_FALSE(box("quickPictures").isChecked());
    EXPECT_TRUE(m_screen.defaults.boolean("crashReportingEnabled"));
    QTest::keyClick(&box("crashReportingEnabled"), Qt::Key_Space);
    EXPECT_FALSE(m_screen.defaults.boolean("crashReportingEnabled"));
}

TEST_F(PreferencesDialogTest, TheSpaceForExportingAgainIsLimitedShownAndEmptied) {
    const SegmentCache cache = KeptSegments::cache(m_screen.defaults);
    cache.clear();
    const QTemporaryDir folder;
    for (const char* key : {"a", "b"}) {
        QFile part(folder.filePath(QString::fromUtf8(key)));
        ASSERT_TRUE(part.open(QIODevice::WriteOnly));
        part.write(QByteArray(1'500'000, 'x'));
        part.close();
        cache.keep(QString::fromUtf8(key), part.fileName(), {});
    }
    open();
    const auto shows = [&](const char* text) {
        const auto labels = m_dialog->findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* label) { return label->text() == QString::fromUtf8(text); });
    };
    auto& empty = *m_dialog->findChild<QPushButton*>(QStringLiteral("emptyKept"));
    auto& limit = *m_dialog->findChild<QComboBox*>(QStringLiteral("keptLimit"));
    EXPECT_EQ(limit.currentText(), QStringLiteral("20 GB"));
    EXPECT_TRUE(shows("3.0 MB in use"));
    QTest::keyClick(&limit, Qt::Key_Down);
    EXPECT_EQ(KeptSegments::limit(m_screen.defaults), 50);
    QTest::keyClick(&empty, Qt::Key_Space);
    EXPECT_TRUE(shows("0 bytes in use"));
    EXPECT_FALSE(empty.isEnabled());
    EXPECT_EQ(cache.bytes(), 0);

    m_screen.defaults.setData("keptSegmentsLimit", "7");
    open();
    EXPECT_EQ(m_dialog->findChild<QComboBox*>(QStringLiteral("keptLimit"))->currentText(),
              QStringLiteral("7 GB"));
}

TEST_F(PreferencesDialogTest, WhatCannotBeKeptIsTold) {
    m_screen.defaults = UserDefaults(QStringLiteral("/proc/nowhere/settings.conf"));
    open();
    QTest::keyClick(&box("hardwareDecoding"), Qt::Key_Space);
    QStringList visible;
    for (const QLabel* label : m_dialog->findChildren<QLabel*>()) {
        if (label->isVisible())
            visible << label->text();
    }
    EXPECT_TRUE(visible.join(u'\n').contains(QStringLiteral("This could not be kept: /proc/nowhere")));
}

TEST(PreferencesTest, SettingsOfAnotherVersionReadAsAtFirst) {
    ScreenContext screen;
    screen.defaults.setData(Preferences::themeKey, "sepia");
    EXPECT_EQ(Preferences::theme(screen.defaults), ThemeChoice::dark);
}

}
}
