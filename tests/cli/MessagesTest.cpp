#include "cli/Messages.h"

#include <gtest/gtest.h>

namespace pointloom::cli {
namespace {

TEST(DamageWarning, NamesEachKindOfDamageOnce) {
    const auto warning = [](const media::Damage& damage) {
        return damageWarning(damage).value_or(QStringLiteral("none")).toStdString();
    };
    EXPECT_EQ(warning({}), "none");
    EXPECT_EQ(warning({12, 0, 3.24}),
              "12 damaged pictures were left out, and the last 3.2 s of the video are missing");
    EXPECT_EQ(warning({1, 2, 0}), "1 damaged picture was left out, and 2 pictures show damage");
    EXPECT_EQ(warning({0, 1, 0}), "1 picture shows damage");
    EXPECT_EQ(warning({0, 0, 0.04}), "the very end of the video is missing");
    EXPECT_EQ(warning({3, 1, 60}), "3 damaged pictures were left out, 1 picture shows damage, and the last "
                                   "60.0 s of the video are missing");
}

}
}
