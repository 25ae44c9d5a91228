#include "ui/settings/HelpDialog.h"

#include "ui/settings/ShortcutTable.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTest>

namespace pointloom::test {
namespace {

QStringList textsOf(const QWidget& widget) {
    QStringList texts;
    for (const QLabel* label : widget.findChildren<QLabel*>())
        texts << label->text();
    return texts;
}

// As Help writes keys in English.
QString labelOf(const EditorKey& key) {
    QString label = QKeySequence(key.modifiers | Qt::Key(key.key)).toString(QKeySequence::PortableText);
    for (const auto& [name, shown] :
         {std::pair("Left", u"←"), std::pair("Right", u"→"), std::pair("Up", u"↑"), std::pair("Down", u"↓"),
          std::pair("Del", u"Delete")})
        label.replace(QLatin1String(name), QString::fromUtf16(shown));
    return label;
}

TEST(HelpDialogTest, FollowsTheLanguageAndNamesThisDesktopsKeys) {
    ScreenContext screen;
    HelpDialog help(screen.context, nullptr);
    help.show();
    EXPECT_TRUE(textsOf(help).contains(QStringLiteral("Step 1 — Choose a Sport")));
    EXPECT_TRUE(textsOf(help).contains(QStringLiteral("Ctrl+Shift+E")));
    screen.state.language = Language::german;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QStringList german = textsOf(help);
    EXPECT_EQ(help.windowTitle(), QStringLiteral("Pointloom Hilfe"));
    EXPECT_TRUE(german.contains(QStringLiteral("Strg+Umschalt+E")));
    EXPECT_TRUE(german.contains(QStringLiteral("Leertaste")));
    EXPECT_FALSE(german.contains(QStringLiteral("Ctrl+Shift+E")));
    EXPECT_FALSE(german.join(u' ').contains(u'⌘'));
}

TEST(HelpDialogTest, NamesAKeyForEverythingThatKeysDoInTheEditor) {
    QSet<QString> listed;
    for (const ShortcutRow& row : editorShortcuts()) {
        for (const QString& label : keyLabels(row, Language::english))
            listed.insert(label);
    }
    QMap<EditorAction, QStringList> keysOf;
    for (const EditorKey& key : editorKeys())
        keysOf[key.action] << labelOf(key);
    for (const QStringList& keys : keysOf)
        EXPECT_TRUE(std::ranges::any_of(keys, [&](const QString& key) { return listed.contains(key); }))
            << qPrintable(keys.join(u' '));
}

TEST(HelpDialogTest, EveryShortcutHasKeysAndAMeaningInEveryLanguage) {
    for (const Language language : allCases<Language>()) {
        for (const auto& [title, rows] : shortcutGroups()) {
            EXPECT_FALSE(t(language, title).isEmpty());
            for (const ShortcutRow& row : rows) {
                EXPECT_FALSE(t(language, row.does).isEmpty());
                for (const QString& label : keyLabels(row, language))
                    EXPECT_FALSE(label.isEmpty() || label.contains(u'⌘') || label.contains(u'⇧'))
                        << qPrintable(label);
            }
        }
    }
}

}
}
