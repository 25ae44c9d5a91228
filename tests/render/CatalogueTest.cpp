#include "render/RowTemplate.h"
#include "render/ScoreboardTemplate.h"
#include "RenderSupport.h"

#include <gmock/gmock.h>

using namespace pointloom;

namespace {

QStringList namesFor(SportID sport) {
    QStringList names;
    for (const TemplateID id : filteredTemplates(sport))
        names += displayName(id);
    return names;
}

}

TEST(TemplateCatalogue, OnlyExactRawValuesNameATemplate) {
    EXPECT_EQ(fromRawValue<TemplateID>("rolandgarros"), TemplateID::rolandgarros);
    EXPECT_EQ(fromRawValue<TemplateID>("ttClassic"), TemplateID::ttClassic);
    EXPECT_FALSE(fromRawValue<TemplateID>("Classic"));
    EXPECT_FALSE(fromRawValue<TemplateID>("rolandGarros"));
    EXPECT_FALSE(fromRawValue<TemplateID>(""));
}

TEST(TemplateCatalogue, CardsShowNameAndDescription) {
    EXPECT_EQ(displayName(TemplateID::dark), QStringLiteral("Dark Pro"));
    const auto shown = [](TemplateID id) { return t(Language::english, description(id)).toStdString(); };
    EXPECT_EQ(shown(TemplateID::dark), "Pure black, gold game — ATP/WTA broadcast");
    EXPECT_EQ(shown(TemplateID::gradient), "Blue→purple frosted glass — modern/esports");
    EXPECT_EQ(displayName(TemplateID::pickleballRetro), QStringLiteral("Retro"));
    EXPECT_EQ(shown(TemplateID::pickleballRetro), "Dark, retro orange — vintage feel");
    EXPECT_EQ(sportOf(TemplateID::ttNeon), SportID::tableTennis);
}

TEST(TemplateCatalogue, PadelIsServedByTheTennisTemplatesInOrder) {
    const QStringList tennis{QStringLiteral("Classic"),   QStringLiteral("Dark Pro"),
                             QStringLiteral("Broadcast"), QStringLiteral("Minimal"),
                             QStringLiteral("Gradient"),  QStringLiteral("Retro"),
                             QStringLiteral("Stacked"),   QStringLiteral("Roland Garros"),
                             QStringLiteral("Wimbledon"), QStringLiteral("Night Session")};
    EXPECT_EQ(namesFor(SportID::padel), tennis);
    EXPECT_EQ(namesFor(SportID::tennis), tennis);
    EXPECT_EQ(namesFor(SportID::squash), (QStringList{QStringLiteral("Court"), QStringLiteral("Dark Pro"),
                                                      QStringLiteral("Neon"), QStringLiteral("Minimal")}));
}

TEST(TemplateRegistry, HoldsEveryTemplateInCatalogueOrder) {
    std::vector<TemplateID> registered;
    for (const auto& scoreboard : TemplateRegistry::all())
        registered.push_back(scoreboard->id());
    EXPECT_THAT(registered, testing::ElementsAreArray(allCases<TemplateID>()));
}

TEST(TemplateRegistry, OnlySquashDarkHasANameOfItsOwn) {
    for (const TemplateID id : allCases<TemplateID>()) {
        const QString expected = id == TemplateID::squashDark ? QStringLiteral("Dark") : displayName(id);
        EXPECT_EQ(TemplateRegistry::templateFor(id).displayName(), expected);
    }
}

TEST(ScoreboardLayout, NameColumnGrowsWithTheLongerName) {
    const auto widthFor = [](const QString& name1, const QString& name2) {
        return ScoreboardLayout(38, 28, 46, matchBetween(name1, name2)).nameW;
    };
    EXPECT_DOUBLE_EQ(widthFor(QStringLiteral("Nadal"), QStringLiteral("Federe")), 120);
    EXPECT_DOUBLE_EQ(widthFor(QStringLiteral("A"), QStringLiteral("Wawrinka12")), 152.8);
    EXPECT_DOUBLE_EQ(widthFor({}, {}), 120);
}

TEST(ScoreboardLayout, FlagsAndAccentedLettersAreOneCharacterEach) {
    EXPECT_EQ(characterCount(QString::fromUtf8("🇫🇷 e\u0301a")), 4);
    EXPECT_EQ(characterCount(QString::fromUtf8("🇫🇷🇩🇪")), 2);

    MatchConfig flagged = matchBetween(QStringLiteral("Gasquet1"), QStringLiteral("B"));
    flagged.team1.flag1 = QStringLiteral("fr"); // the flag and the space after it make ten
    EXPECT_DOUBLE_EQ(ScoreboardLayout(38, 28, 46, flagged).nameW, 152.8);
}

TEST(ScoreboardLayout, TotalsAddUpTheColumns) {
    const ScoreboardLayout layout(38, 28, 46, shortMatch());
    EXPECT_DOUBLE_EQ(layout.totalW(), 120 + 84 + 46);
    EXPECT_DOUBLE_EQ(layout.totalW(0), 120 + 46);
    EXPECT_DOUBLE_EQ(layout.totalH(), 77);
}

TEST(ScoreboardTemplate, RowTemplatesShareOneCanvasAndKnowTheirOwnSize) {
    for (const TemplateID id : {TemplateID::classic, TemplateID::broadcast, TemplateID::minimal})
        EXPECT_EQ(TemplateRegistry::templateFor(id).canvasSize(3, shortMatch()), QSizeF(270, 97));
    EXPECT_EQ(TemplateRegistry::templateFor(TemplateID::classic).boardSize(3, shortMatch()), QSizeF(250, 77));
    EXPECT_EQ(TemplateRegistry::templateFor(TemplateID::broadcast).boardSize(3, shortMatch()),
              QSizeF(258, 81));
    EXPECT_EQ(TemplateRegistry::templateFor(TemplateID::minimal).boardSize(3, shortMatch()), QSizeF(240, 73));
}
