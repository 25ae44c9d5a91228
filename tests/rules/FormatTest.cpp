#include "rules/Format.h"

#include <gtest/gtest.h>

namespace pointloom {
namespace {

std::string faultOf(SportID sport, const std::vector<std::string>& words) {
    try {
        formatOf(sport, words);
    } catch (const FormatError& error) {
        return error.what();
    }
    return {};
}

TEST(Format, WordsOfOneChoiceExcludeEachOther) {
    EXPECT_EQ(faultOf(SportID::tennis, {"fast4", "no-ad", "short-sets"}),
              "\"fast4\" and \"short-sets\" exclude each other");
    EXPECT_EQ(faultOf(SportID::padel, {"deciding=advantage", "deciding=tiebreak-at-12"}),
              "\"deciding=advantage\" and \"deciding=tiebreak-at-12\" exclude each other");
    EXPECT_EQ(faultOf(SportID::tennis, {"no-ad", "no-ad"}), "");
    EXPECT_EQ(faultOf(SportID::pickleball, {"rally", "to-21", "doubles"}), "");
}

TEST(Format, EachSportHasItsOwnWords) {
    EXPECT_EQ(faultOf(SportID::badminton, {"beach"}), "\"beach\" is no rule of badminton");
    EXPECT_EQ(faultOf(SportID::tennis, {"deciding"}), "\"deciding\" is no rule of tennis");
    EXPECT_EQ(formatWords(SportID::padel).size(), formatWords(SportID::tennis).size());
    EXPECT_TRUE(formatWords(SportID::tableTennis).empty());
    for (const SportID sport : allCases<SportID>()) {
        EXPECT_EQ(formatOf(sport).hasGames, usesTennisScoring(sport));
        for (const auto& [choice, word, meaning] : formatWords(sport))
            EXPECT_EQ(faultOf(sport, {std::string(word)}), "") << meaning;
    }
}

}
}
