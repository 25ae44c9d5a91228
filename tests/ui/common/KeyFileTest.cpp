#include "ui/common/KeyFile.h"

#include "persistence/DocumentFile.h"
#include "ui/common/Preferences.h"
#include "ui/support/ScreenContext.h"
#include "json/JsonDocument.h"

#include <gtest/gtest.h>
#include <QFile>

namespace pointloom::test {
namespace {

TEST(KeyFile, HoldsTheChosenKeysAsTheFormatSays) {
    const CommandKeys::Chosen chosen{{Command::exportVideo, {Qt::CTRL | Qt::SHIFT | Qt::Key_R, Qt::Key_F5}},
                                     {Command::addCut, {Qt::Key_Left}},
                                     {Command::playPause, {}}};
    const QByteArray text = keysAsJson(chosen);
    EXPECT_EQ(json::parse(text), json::parse(R"({"version": 1, "keys": {
        "addCut": ["Left"], "exportVideo": ["Ctrl+Shift+R", "F5"], "playPause": []}})"));
    EXPECT_EQ(keysFromJson(text).chosen, chosen);
}

TEST(KeyFile, CommandsOfOtherVersionsAreLeftOutAndNamed) {
    const KeyFile file = keysFromJson(R"({"version": 1, "keys": {
        "addCut": ["X"], "makeCoffee": ["X"], "moveScoreboard": ["W"]}, "name": "Anna"})");
    EXPECT_EQ(file.chosen, (CommandKeys::Chosen{{Command::addCut, {Qt::Key_X}}}));
    EXPECT_EQ(file.unknown, QStringList({QStringLiteral("makeCoffee"), QStringLiteral("moveScoreboard")}));
}

TEST(KeyFile, FaultsAreToldByPlace) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("keys.json"));
    const std::pair<const char*, const char*> faults[] = {
        {"[", "keys.json: "},
        {R"({"keys": {}})", "keys.json: version: missing"},
        {R"({"version": 2, "keys": {}})", "keys.json: version: 2 is not known, expected 1"},
        {R"({"version": 1, "keys": []})", "keys.json: keys: expected an object"},
        {R"({"version": 1, "keys": {"addCut": "X"}})", "keys.json: keys.addCut: expected a list"},
        {R"({"version": 1, "keys": {"addCut": ["X", "Foo"]}})",
         "keys.json: keys.addCut[1]: \"Foo\" is not a key"},
        {R"({"version": 1, "keys": {"addCut": ["Ctrl+K, B"]}})",
         "keys.json: keys.addCut[0]: \"Ctrl+K, B\" is not"},
        {R"({"version": 1, "keys": {"addCut": ["Esc"]}})",
         "keys.json: keys.addCut[0]: \"Esc\" cannot be given to a command"},
        {R"({"version": 1, "keys": {"exportVideo": ["E"]}})",
         "keys.json: keys.exportVideo[0]: \"E\" needs Ctrl"},
        {R"({"version": 1, "keys": {"addCut": ["X"], "trimEnd": ["X"]}})",
         "keys.json: keys.trimEnd[0]: \"X\" is already the key of addCut"}};
    for (const auto& [text, fault] : faults) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        try {
            readKeyFile(path);
            ADD_FAILURE() << text;
        } catch (const DocumentError& error) {
            EXPECT_TRUE(std::string_view(error.what()).starts_with(fault)) << error.what();
        }
    }
}

TEST(KeyFile, SettingsKeepWhatIsNotUsualAndForgiveTheRest) {
    ScreenContext screen;
    const CommandKeys::Chosen chosen{{Command::addCut, {Qt::Key_X}}};
    Preferences::chooseKeys(screen.context, chosen);
    EXPECT_EQ(screen.keys.chosen().value(), chosen);
    EXPECT_EQ(Preferences::keys(screen.defaults), chosen);
    Preferences::chooseKeys(screen.context, {});
    EXPECT_FALSE(screen.defaults.data(Preferences::keysKey).has_value());
    screen.defaults.setData(Preferences::keysKey, R"({"version": 1, "keys": {"addCut": ["Esc"]}})");
    EXPECT_TRUE(Preferences::keys(screen.defaults).empty());
}

}
}
