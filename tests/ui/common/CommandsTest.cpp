#include "ui/common/Commands.h"

#include "support/TestClips.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace pointloom::test {
namespace {

TEST(Commands, EveryOneHasOneRowAndNoKeyHasTwoMeanings) {
    const CommandKeys keys;
    QSet<Command> commands;
    QSet<int> menuKeys;
    QSet<int> editorKeys;
    for (const CommandRow& row : commandTable()) {
        EXPECT_FALSE(commands.contains(row.id)) << static_cast<int>(row.id);
        commands.insert(row.id);
        for (const QKeyCombination key : keys.of(row.id)) {
            auto& taken = row.group == CommandGroup::menu ? menuKeys : editorKeys;
            EXPECT_FALSE(taken.contains(key.toCombined())) << qPrintable(keyLabel(key, Language::english));
            taken.insert(key.toCombined());
        }
    }
    EXPECT_FALSE(menuKeys.intersects(editorKeys));
    EXPECT_EQ(commands.size(), static_cast<int>(Command::showNews) + 1);
}

TEST(Commands, KeysAreLabelledAsOnKeyboardsOfTheLanguage) {
    EXPECT_EQ(keyLabel(Qt::CTRL | Qt::SHIFT | Qt::Key_E, Language::english), QStringLiteral("Ctrl+Shift+E"));
    EXPECT_EQ(keyLabel(Qt::CTRL | Qt::SHIFT | Qt::Key_E, Language::german),
              QStringLiteral("Strg+Umschalt+E"));
    EXPECT_EQ(keyLabel(Qt::SHIFT | Qt::Key_Left, Language::french), QStringLiteral("Maj+←"));
    EXPECT_EQ(keyLabel(Qt::Key_Space, Language::swedish), QStringLiteral("Blanksteg"));
    EXPECT_EQ(keyLabel(Qt::CTRL | Qt::Key_Question, Language::italian), QStringLiteral("Ctrl+?"));
}

TEST(Commands, EveryKeyIsListedWithAMeaningInEveryLanguage) {
    for (const Language language : allCases<Language>()) {
        int listed = 0;
        for (const auto group : {CommandGroup::editor, CommandGroup::menu}) {
            for (const auto& [keys, does] : keyList(group, CommandKeys::standard(), language)) {
                EXPECT_FALSE(t(language, does).isEmpty());
                for (const QString& key : keys)
                    EXPECT_FALSE(key.isEmpty() || key.contains(u'⌘') || key.contains(u'⇧'))
                        << qPrintable(key);
                listed += static_cast<int>(keys.size());
            }
        }
        EXPECT_EQ(listed, 51) << "49 keys, and two lines for the arrows on the scoreboard";
    }
}

TEST(Commands, ChosenKeysReplaceThoseOfTheTable) {
    const CommandKeys keys({{Command::addCut, {Qt::Key_X}}, {Command::deleteSelection, {}}});
    EXPECT_EQ(keys.editorCommand(Qt::Key_X)->id, Command::addCut);
    EXPECT_EQ(keys.editorCommand(Qt::Key_C), nullptr);
    EXPECT_EQ(keys.editorCommand(Qt::Key_Backspace), nullptr) << "the other key of a command without keys";
    EXPECT_EQ(keys.editorCommand(Qt::CTRL | Qt::Key_Equal)->id, Command::zoomIn);
    const auto lines = keyList(CommandGroup::editor, keys, Language::english);
    const auto isFor = [](const char* text) {
        return [text](const KeyListLine& line) {
            return t(Language::english, line.does) == QLatin1String(text);
        };
    };
    EXPECT_EQ(std::ranges::find_if(lines, isFor("Mark a cut from here on; inside the cut: up to here"))->keys,
              QStringList(QStringLiteral("X")));
    EXPECT_EQ(std::ranges::find_if(lines, isFor("Remove the selected marker or cut")), lines.end());
}

// The tables between these lines of docs/guide/keyboard.md are written by
// POINTLOOM_WRITE_GUIDE=1 build/debug/tests/test_ui_common --gtest_filter='KeyboardPage.*'
const QRegularExpression keyTables(QStringLiteral("(?<=<!-- keys -->\n).*(?=<!-- end of keys -->)"),
                                   QRegularExpression::DotMatchesEverythingOption);

QString markdownOfKeys() {
    QString tables;
    for (const auto& [group, title] : {std::pair(CommandGroup::editor, "In the editor"),
                                       std::pair(CommandGroup::menu, "Project and window")}) {
        tables += QStringLiteral("\n## %1\n\n| Key | What it does |\n|---|---|\n").arg(QLatin1String(title));
        for (const auto& [keys, does] : keyList(group, CommandKeys::standard(), Language::english)) {
            tables += QStringLiteral("| <kbd>%1</kbd> | %2 |\n")
                          .arg(keys.join(QStringLiteral("</kbd> <kbd>")), t(Language::english, does));
        }
    }
    return tables + u'\n';
}

TEST(KeyboardPage, ListsTheKeysOfTheTable) {
    QFile page(QStringLiteral(POINTLOOM_SOURCE_DIR "/docs/guide/keyboard.md"));
    ASSERT_TRUE(page.open(QFile::ReadWrite));
    QString text = QString::fromUtf8(page.readAll());
    ASSERT_TRUE(text.contains(keyTables));
    if (qEnvironmentVariableIsSet("POINTLOOM_WRITE_GUIDE")) {
        page.resize(0);
        page.write(text.replace(keyTables, markdownOfKeys()).toUtf8());
    }
    EXPECT_EQ(keyTables.match(text).captured().toStdString(), markdownOfKeys().toStdString());
}

}
}
