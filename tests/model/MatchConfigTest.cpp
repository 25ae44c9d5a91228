#include "model/MatchConfig.h"
#include "JsonSupport.h"

namespace pointloom {
namespace {

TeamConfig pair() {
    return {QStringLiteral("Ana"), QStringLiteral("Bea"), QStringLiteral("fr"), QStringLiteral("GB")};
}

const QString french = QStringLiteral("\U0001F1EB\U0001F1F7 ");
const QString british = QStringLiteral("\U0001F1EC\U0001F1E7 ");

TEST(SportID, OnlyExactRawValuesAreSports) {
    EXPECT_EQ(fromRawValue<SportID>("tableTennis"), SportID::tableTennis);
    for (const char* text : {"Table Tennis", "tabletennis", "Tennis", "tennis ", ""})
        EXPECT_FALSE(fromRawValue<SportID>(text)) << text;
}

TEST(SportID, SetCountsStartWithTheDefault) {
    for (const SportID sport : allCases<SportID>()) {
        ASSERT_FALSE(numberOfSetsOptions(sport).empty());
        EXPECT_EQ(numberOfSetsOptions(sport).front(), defaultNumberOfSets(sport));
        EXPECT_EQ(supportsDoubles(sport), usesTennisScoring(sport)) << rawValue(sport);
    }
    EXPECT_EQ(defaultNumberOfSets(SportID::padel), 1);
    EXPECT_EQ(std::ssize(numberOfSetsOptions(SportID::tableTennis)), 2);
    EXPECT_EQ(imageName(SportID::tableTennis), QStringLiteral("sport_tabletennis"));
    EXPECT_EQ(emoji(SportID::squash), QStringLiteral("\U0001F535"));
}

TEST(TeamConfig, SecondNameShowsOnlyWhenItIsFilled) {
    TeamConfig team = pair();
    EXPECT_EQ(team.displayName(), QStringLiteral("Ana / Bea"));
    team.player2 = QString();
    EXPECT_EQ(team.displayName(), QStringLiteral("Ana"));
    EXPECT_EQ(team.flagDisplayName(MatchFormat::doubles), french + QStringLiteral("Ana"));
}

TEST(TeamConfig, SinglesShowOneFlagAndOneName) {
    EXPECT_EQ(pair().flagDisplayName(MatchFormat::singles), french + QStringLiteral("Ana"));
    EXPECT_EQ(pair().flagDisplayName(MatchFormat::doubles),
              french + QStringLiteral("Ana / ") + british + QStringLiteral("Bea"));
}

TEST(TeamConfig, CodesThatAreNotTwoLettersGiveNoFlag) {
    for (const char* code : {"", "f", "fra", "1f", "f ",
                             "\u00df"
                             "a",
                             "\U0001F1EB", "@["}) {
        const TeamConfig team{QStringLiteral("Ana"), {}, QString::fromUtf8(code), {}};
        EXPECT_EQ(team.flagDisplayName(MatchFormat::singles), QStringLiteral("Ana")) << code;
    }
}

TEST(TeamConfig, CodesBeyondTheLettersGiveTheCharactersBeyondTheFlags) {
    const TeamConfig team{QStringLiteral("Ana"), {}, QStringLiteral("[{"), {}};
    EXPECT_EQ(team.flagDisplayName(MatchFormat::singles), QStringLiteral("\U0001F200\U0001F220 Ana"));
    const TeamConfig tooFar{QStringLiteral("Ana"), {}, QStringLiteral("\U00100000A"), {}};
    EXPECT_EQ(tooFar.flagDisplayName(MatchFormat::singles), QStringLiteral("Ana"));
}

TEST(MatchConfig, RoundTripsAndLeavesOutWhatIsAbsent) {
    MatchConfig config{
        SportID::padel, MatchFormat::doubles, pair(), {QStringLiteral("Cleo"), {}, {}, {}}, 3, {}};
    EXPECT_EQ(compactText(config),
              R"({"sport":"padel","format":"doubles","team1":{"player1":"Ana","player2":"Bea","flag1":"fr",)"
              R"("flag2":"GB"},"team2":{"player1":"Cleo"},"numberOfSets":3})");
    config.logoURL = QUrl::fromLocalFile(QStringLiteral("/club/our logo.png"));
    const std::string text = compactText(config);
    EXPECT_NE(text.find(R"("logoURL":"file:///club/our%20logo.png")"), std::string::npos) << text;
    EXPECT_EQ(decodeText<MatchConfig>(text.c_str()), config);
}

TEST(MatchConfig, FaultsNameTheirPlace) {
    EXPECT_EQ(decodingFault<MatchConfig>("[]"), "expected an object");
    EXPECT_EQ(decodingFault<MatchConfig>(R"({"sport":"golf"})"), R"(sport: unknown value "golf")");
    EXPECT_EQ(decodingFault<MatchConfig>(R"({"sport":"tennis","format":"singles","team1":{}})"),
              "team1.player1: missing");
    EXPECT_EQ(decodingFault<MatchConfig>(
                  R"({"sport":"tennis","format":"singles","team1":{"player1":"A","flag1":7}})"),
              "team1.flag1: expected a text");
}

}
}
