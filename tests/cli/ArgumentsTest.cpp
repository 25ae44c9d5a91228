#include "cli/Arguments.h"
#include "cli/Messages.h"

#include <gtest/gtest.h>

namespace pointloom::cli {
namespace {

TeamConfig team(const char* names, const char* flags) {
    return parseTeam(QString::fromUtf8(names), QString::fromUtf8(flags), 1);
}

TEST(TeamArguments, OneOrTwoNamesWithTheirFlags) {
    EXPECT_EQ(team("Ana", ""), (TeamConfig{QStringLiteral("Ana"), {}, {}, {}}));
    EXPECT_EQ(team(" Ana B. / Bea ", "fr, GB"), (TeamConfig{QStringLiteral("Ana B."), QStringLiteral("Bea"),
                                                            QStringLiteral("FR"), QStringLiteral("GB")}));
    EXPECT_EQ(team("Ana/Bea", ",GB"),
              (TeamConfig{QStringLiteral("Ana"), QStringLiteral("Bea"), {}, QStringLiteral("GB")}));
}

TEST(TeamArguments, WhatIsNotATeamIsWrongUsage) {
    for (const auto& [names, flags] : {std::pair{"", ""},
                                       {"Ana/", ""},
                                       {"/Bea", ""},
                                       {"A/B/C", ""},
                                       {"Ana", "FR,GB"},
                                       {"Ana", "FRA"},
                                       {"Ana", "1F"},
                                       {"Ana", "\u00df\u00df"},
                                       {"A/B", "FR,GB,US"}})
        EXPECT_THROW(team(names, flags), UsageError) << names << " " << flags;
}

TEST(TeamArguments, PositionsAreTwoFractions) {
    EXPECT_EQ(parsePosition("0,1"), QPointF(0, 1));
    EXPECT_EQ(parsePosition("0.15,.5"), QPointF(0.15, 0.5));
    for (const char* text :
         {"", ",", "0.5", "0.5,", ",0.5", "0.5,1.01", "-0.1,0", "0.5,0.5,0.5", "nan,0", "0x1,0", "a,b"})
        EXPECT_THROW(parsePosition(text), UsageError) << text;
}

}
}
