#include "ui/common/CommandKeys.h"

#include "l10n/Format.h"
#include "l10n/L10nKey.h"
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
        EXPECT_TRUE(row.title.has_value() || row.fixedKeys.has_value())
            << rawValue(row.id) << " has no name in the list of keys";
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
    EXPECT_EQ(keyLabel(Qt::CTRL | Qt::ALT | Qt::Key_X, Language::german), QStringLiteral("Strg+Alt+X"));
}

TEST(Commands, EveryKeyIsListedWithAMeaningInEveryLanguage) {
    for (const Language language : allCases<Language>()) {
        int listed = 0;
        for (const auto group : {CommandGroup::editor, CommandGroup::menu}) {
            for (const auto& [keys, does] : keyList(group, CommandKeys(), language)) {
                EXPECT_FALSE(t(language, does).isEmpty());
                for (const QString& key : keys)
                    EXPECT_FALSE(key.isEmpty() || key.contains(u'⌘') || key.contains(u'⇧'))
                        << qPrintable(key);
                listed += static_cast<int>(keys.size());
            }
        }
        EXPECT_EQ(listed, 53) << "49 keys, and four lines for the arrows on the scoreboard and the timeline";
    }
}

const KeyListLine* lineFor(const std::vector<KeyListLine>& lines, const char* does) {
    const auto found = std::ranges::find_if(lines, [does](const KeyListLine& line) {
        return t(Language::english, line.does) == QLatin1String(does);
    });
    return found == lines.end() ? nullptr : &*found;
}

TEST(Commands, ChosenKeysReplaceThoseOfTheTable) {
    const CommandKeys keys(
        {{Command::addCut, {Qt::Key_X}}, {Command::deleteSelection, {}}, {Command::showAbout, {Qt::Key_F9}}});
    EXPECT_EQ(keys.commandOf(Qt::Key_X)->id, Command::addCut);
    EXPECT_EQ(keys.commandOf(Qt::Key_C), nullptr);
    EXPECT_EQ(keys.commandOf(Qt::Key_Backspace), nullptr) << "the other key of a command without keys";
    EXPECT_EQ(keys.commandOf(Qt::CTRL | Qt::Key_Equal)->id, Command::zoomIn);
    const auto lines = keyList(CommandGroup::editor, keys, Language::english);
    EXPECT_EQ(lineFor(lines, "Mark a cut from here on; inside the cut: up to here")->keys,
              QStringList(QStringLiteral("X")));
    EXPECT_EQ(lineFor(lines, "Remove the selected marker or cut"), nullptr);
    EXPECT_NE(lineFor(keyList(CommandGroup::menu, keys, Language::english), "About Pointloom"), nullptr)
        << "has no key usually";
}

TEST(Commands, AKeyHasOneMeaningWhereverItIsMovedTo) {
    CommandKeys keys;
    const auto give = [&](Command command, const CommandKeys::Keys& chosen) {
        keys.choose(keys.chosenWith(command, chosen));
    };
    give(Command::addCut, {Qt::Key_M});
    EXPECT_EQ(keys.shown(Command::addMarker), CommandKeys::Keys{Qt::Key_Plus}) << "the other of its two";
    EXPECT_EQ(keys.commandOf(Qt::SHIFT | Qt::Key_Plus)->id, Command::addMarker);
    give(Command::trimStart, {Qt::Key_M});
    EXPECT_EQ(keys.shown(Command::addCut), CommandKeys::Keys{Qt::Key_C}) << "its usual one is free";
    EXPECT_EQ(keys.commandOf(Qt::Key_M)->id, Command::trimStart);
    give(Command::addMarker, usualKeys(Command::addMarker));
    EXPECT_EQ(keys.commandOf(Qt::Key_M)->id, Command::addMarker);
    EXPECT_TRUE(keys.chosen().value().empty()) << "all are as usual";
}

TEST(Commands, KeysThatDialogsAndFieldsNeedAreNotGivenAway) {
    using enum CommandGroup;
    for (const QKeyCombination key :
         {QKeyCombination(Qt::Key_Tab), QKeyCombination(Qt::Key_Escape), QKeyCombination(Qt::Key_Return),
          Qt::CTRL | Qt::Key_C, Qt::ALT | Qt::Key_F, QKeyCombination(Qt::Key_Control)})
        EXPECT_EQ(faultOf(key, editor), KeyFault::reserved) << key.toCombined();
    for (const QKeyCombination key : {QKeyCombination(Qt::Key_E), Qt::SHIFT | Qt::Key_7,
                                      QKeyCombination(Qt::Key_Space), QKeyCombination(Qt::Key_Left)}) {
        EXPECT_EQ(faultOf(key, editor), std::nullopt) << key.toCombined();
        EXPECT_EQ(faultOf(key, menu), KeyFault::needControl) << key.toCombined();
        EXPECT_EQ(faultOf(QKeyCombination(key.keyboardModifiers() | Qt::ControlModifier, key.key()), menu),
                  std::nullopt)
            << key.toCombined();
    }
    for (const CommandRow& row : commandTable()) {
        for (const QKeyCombination key : usualKeys(row.id))
            EXPECT_EQ(faultOf(key, row.group), std::nullopt) << qPrintable(keyLabel(key, Language::english));
    }
}

TEST(Commands, SentencesNameTheKeysInUse) {
    const CommandKeys usual;
    const CommandKeys changed({{Command::addMarker, {Qt::Key_F6, Qt::Key_F7}},
                               {Command::playPause, {Qt::Key_F8}},
                               {Command::frameBack, {Qt::Key_F9}},
                               {Command::frameForward, {}},
                               {Command::exportVideo, {Qt::CTRL | Qt::Key_R}}});
    for (const Language language : allCases<Language>()) {
        const auto text = [&](L10nKey key) { return forThisDesktop(t(language, key), language); };
        for (const auto key : {L10nKey::noMarkers, L10nKey::helpStep4Detail, L10nKey::helpTipsDetail}) {
            EXPECT_EQ(withKeysInUse(text(key), usual, language), text(key));
            const QString shown = withKeysInUse(text(key), changed, language);
            EXPECT_TRUE(shown.contains(QStringLiteral("F6 "))) << shown.toStdString();
            EXPECT_TRUE(shown.contains(QStringLiteral(" F7"))) << shown.toStdString();
            EXPECT_EQ(shown.contains(u"+R"), key != L10nKey::noMarkers) << shown.toStdString();
        }
        const QString tips = withKeysInUse(text(L10nKey::helpTipsDetail), changed, language);
        EXPECT_TRUE(tips.contains(QStringLiteral("• F8 —"))) << tips.toStdString();
        EXPECT_FALSE(tips.contains(u'←')) << tips.toStdString();
    }
    EXPECT_TRUE(withKeysInUse(t(Language::english, L10nKey::helpTipsDetail), changed, Language::english)
                    .contains(QStringLiteral("• F9 “One Frame Forward” — ")))
        << "the name of a command without a key";
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
        for (const auto& [keys, does] : keyList(group, CommandKeys(), Language::english)) {
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
