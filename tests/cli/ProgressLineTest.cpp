#include "cli/ProgressDisplay.h"

#include <gtest/gtest.h>

namespace pointloom::cli {
namespace {

TEST(ProgressLine, ShowsSpeedAndTimeLeft) {
    const ExportProgress quarter{0.25, 250, 1000};
    EXPECT_EQ(progressLine(quarter, 10, 50), "[======                 ] 25 %  25 fps  0:30 left");
    EXPECT_EQ(progressLine({0.5, 10, 20}, 4000, 36), "50 %  0 fps  1:06:40 left") << "no room for a bar";
}

TEST(ProgressLine, JudgesByTheFramesThatWereEncoded) {
    // 100 frames in 10 s, after 800 that were kept: the last 100 take as long.
    EXPECT_EQ(progressLine({0.9, 900, 1000, 800}, 10, 30), "90 %  10 fps  0:10 left");
}

TEST(ProgressLine, StaysWithinTheTerminal) {
    for (int columns = 0; columns < 200; ++columns) {
        const auto length = std::ssize(progressLine({0.95, 123456, 130000}, 1234.5, columns));
        EXPECT_LE(length, std::max(columns - 1, 0));
        EXPECT_LE(length, 90) << "a bar that is easy to read";
    }
    EXPECT_EQ(progressLine({0.95, 1, 2}, 10, 10), "95 %");
}

TEST(ProgressLine, BeginsAndEndsWithoutNonsense) {
    EXPECT_EQ(progressLine({0, 0, 1}, 0, 20), "[             ] 0 %");
    EXPECT_EQ(progressLine({0, 0, 1}, 5, 20), "[             ] 0 %");
    EXPECT_NE(progressLine({1, 100, 100}, 5, 80).find("] 100 %  20 fps  0:00 left"), std::string::npos);
    EXPECT_NE(progressLine({1e-9, 1, 100}, 1e9, 80).find("99:59:59 left"), std::string::npos);
}

}
}
