#include "ui/common/TimeCode.h"

#include <gtest/gtest.h>

namespace pointloom {
namespace {

TEST(TypedTime, IsReadInTheWaysPeopleWriteTimes) {
    const std::pair<const char*, double> times[] = {
        {"1:10:23", 4223}, {"70:23", 4223},         {"4223.5", 4223.5},    {"4223,5", 4223.5}, {"0:00", 0},
        {" 1:05 ", 65},    {"2:03:04.75", 7384.75}, {"00:01:05.20", 65.2}, {"7.", 7},          {"1:5", 65},
    };
    for (const auto& [text, seconds] : times) {
        const auto read = typedTime(QString::fromUtf8(text));
        ASSERT_TRUE(read) << text;
        EXPECT_DOUBLE_EQ(*read, seconds) << text;
    }
}

TEST(TypedTime, NothingElseIsTakenForATime) {
    for (const char* text : {"", " ", "abc", "-5", "1:60", "1:60:00", "1:00:75", "1:2:3:4", "1:10:", ":30",
                             "1.5:30", "1e3", "inf", "12 30", "１２", "99999999999"})
        EXPECT_FALSE(typedTime(QString::fromUtf8(text))) << text;
}

TEST(TypedTime, ReadsBackWhatIsShown) {
    for (const double seconds : {0.0, 59.99, 3599.04, 4223.5, 36'000.25}) {
        EXPECT_DOUBLE_EQ(typedTime(timeCode(seconds)).value_or(-1), seconds);
        EXPECT_DOUBLE_EQ(typedTime(shortTime(seconds, true)).value_or(-1), seconds);
    }
}

}
}
