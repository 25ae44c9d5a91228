#include "persistence/CSVParser.h"

#include <gtest/gtest.h>

namespace pointloom {
namespace {

std::vector<Marker> parse(const char* text) {
    return CSVParser::parseMarkers(QString::fromUtf8(text));
}

ScoreState scoreOf(const Marker& marker) {
    return std::get<ScoreState>(marker.score);
}

std::vector<double> timesOf(const std::vector<Marker>& markers) {
    std::vector<double> times;
    for (const Marker& marker : markers)
        times.push_back(marker.startTime);
    return times;
}

TEST(CSVParser, TheSampleIsSixLinesAndFiveMarkers) {
    const QString sample = CSVParser::sampleText();
    EXPECT_EQ(sample.count(u'\n'), 5);
    EXPECT_TRUE(sample.endsWith(QStringLiteral("60,Match point,1,40,0,6,3,5,4,0,0")));

    const auto markers = CSVParser::parseMarkers(sample);
    ASSERT_EQ(timesOf(markers), (std::vector<double>{0, 15, 30, 45, 60}));
    EXPECT_EQ(markers[1].label, QStringLiteral("Game Dravnik"));
    EXPECT_EQ(scoreOf(markers[3]),
              (ScoreState{{{6, 3, {}}, {0, 0, {}}, {0, 0, {}}}, {GamePoint::fifteen, GamePoint::zero}, 1}));
    EXPECT_NE(markers[0].id, markers[1].id);
}

TEST(CSVParser, HeadersCommentsAndBlankLinesAreDroppedAnywhere) {
    const auto markers = parse("\xEF\xBB\xBFstartTime,label\n"
                               "# 1,,1,0,0,0,0\n"
                               " \t \r\n"
                               "2,,1,0,0,0,0\r\n"
                               "\tSTARTTIME again,,1,0,0,0,0\n"
                               "3,,1,0,0,0,0");
    EXPECT_EQ(timesOf(markers), (std::vector<double>{2, 3}));
}

TEST(CSVParser, EveryKindOfLineBreakEndsALine) {
    for (const char* lineBreak : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"}) {
        const std::string text = std::string("1,,1,0,0,0,0") + lineBreak + "2,,2,0,0,0,0" + lineBreak;
        EXPECT_EQ(timesOf(parse(text.c_str())), (std::vector<double>{1, 2}))
            << testing::PrintToString(lineBreak);
    }
}

TEST(CSVParser, RowsWithoutTimeServerOrSetAreSkipped) {
    EXPECT_TRUE(parse("12, Ace ,3,0,0,1,0").empty()) << "there is no third team";
    EXPECT_TRUE(parse("12,,1.0,0,0,1,0").empty());
    EXPECT_TRUE(parse("12,,1,0,0,1").empty()) << "six fields";
    EXPECT_TRUE(parse("12,Ace, second serve,1,0,0,1,0").empty()) << "a comma always separates";
    for (const char* time : {"", "x", "inf", "nan", "-inf", "0x10", "1,5", "1e999", "1 2", "+-1", "--1"})
        EXPECT_TRUE(parse((std::string(time) + ",,1,0,0,1,0").c_str()).empty()) << time;
}

TEST(CSVParser, TimesAreDecimalNumbersOfAnySign) {
    EXPECT_EQ(timesOf(parse("+1.5,,1,0,0,0,0\n-2,,+2,0,0,0,0\n.25,,1,0,0,0,0\n1e2,,1,0,0,0,0")),
              (std::vector<double>{-2, 0.25, 1.5, 100}));
}

TEST(CSVParser, PointWordsAreReadInAnyCaseAndUnknownOnesAreZero) {
    const auto point = [](const char* word) {
        const auto markers = parse((std::string("1,,1, ") + word + "\t,love,0,0").c_str());
        return markers.empty() ? GamePoint::zero : scoreOf(markers.front()).currentGame.team1;
    };
    EXPECT_EQ(point("15"), GamePoint::fifteen);
    EXPECT_EQ(point("30"), GamePoint::thirty);
    EXPECT_EQ(point("40"), GamePoint::forty);
    EXPECT_EQ(point("Deuce"), GamePoint::deuce);
    EXPECT_EQ(point("D"), GamePoint::deuce);
    for (const char* word : {"ad", "ADV", "Advantage"})
        EXPECT_EQ(point(word), GamePoint::advantage) << word;

    const auto unknown = parse("12,,1,adv,game,1,1");
    ASSERT_EQ(unknown.size(), 1U);
    EXPECT_EQ(scoreOf(unknown[0]).currentGame, (GameScore{GamePoint::advantage, GamePoint::zero}));
    EXPECT_FALSE(unknown[0].label);
}

TEST(CSVParser, SetsAreReadInPairsAsManyAsThereAre) {
    const auto sets = [](const char* columns) {
        return scoreOf(parse((std::string("1,,1,0,0,") + columns).c_str()).at(0)).sets;
    };
    EXPECT_EQ(sets("6,4,7"), (std::vector<SetScore>{{6, 4, {}}})) << "the eighth field has no partner";
    EXPECT_EQ(sets("6,x, -7 ,+8"), (std::vector<SetScore>{{6, 0, {}}, {-7, 8, {}}}));
    EXPECT_EQ(sets("9223372036854775807,9223372036854775808"),
              (std::vector<SetScore>{{std::numeric_limits<std::int64_t>::max(), 0, {}}}));
    EXPECT_EQ(sets("1,1,2,2,3,3,4,4,5,5,6,6").size(), 6U);
}

TEST(CSVParser, RowsAreSortedByTimeAndEqualTimesKeepTheirOrder) {
    const auto markers = parse("5,c,1,0,0,0,0\n1,a,1,0,0,0,0\n5,d,1,0,0,0,0\n3,b,1,0,0,0,0");
    QString labels;
    for (const Marker& marker : markers)
        labels += marker.label.value_or(QString());
    EXPECT_EQ(labels, QStringLiteral("abcd"));
}

TEST(CSVParser, OnlyLinesThatMeantToBeMarkersAreReported) {
    std::vector<QString> reports;
    const auto report = [&](const CSVParseError& error) { reports.push_back(error.description()); };
    CSVParser::parseMarkers(u"startTime,label\n# nothing\n\n", report);
    CSVParser::parseMarkers(u"1,,1,0,0,0,0\nnot a row", report);
    EXPECT_TRUE(reports.empty());
    CSVParser::parseMarkers(u"startTime\nnot a row\n1,,9,0,0,0,0", report);
    EXPECT_EQ(reports,
              std::vector{QStringLiteral("CSV contained 2 lines but no valid markers were parsed.")});
}

}
}
