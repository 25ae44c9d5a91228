#include "export/SizeEstimate.h"

#include <gtest/gtest.h>

namespace pointloom {

namespace {

constexpr SourceRate phoneClip{{1920, 1080}, 29.97, 2e6};

TEST(SizeEstimate, ProresGoesByItsNominalRateWhateverTheSource) {
    EXPECT_NEAR(
        static_cast<double>(estimatedBytes(phoneClip, ExportFormat::prores, ExportPreset::original, 8)),
        147e6, 1e4);
}

TEST(SizeEstimate, AnOriginalH264KeepsTheSourcesRateAndHevcIsSmaller) {
    EXPECT_EQ(estimatedBytes(phoneClip, ExportFormat::h264, ExportPreset::original, 10), 20'000'000);
    EXPECT_LT(estimatedBytes(phoneClip, ExportFormat::hevc, ExportPreset::original, 10), 20'000'000);
    EXPECT_GT(estimatedBytes(phoneClip, ExportFormat::h264, ExportPreset::youtube4k, 10), 40'000'000);
}

TEST(SizeEstimate, NothingIsSaidOfAnUnknownSource) {
    EXPECT_EQ(estimatedBytes({}, ExportFormat::prores, ExportPreset::youtube4k, 10), 0);
    EXPECT_EQ(estimatedBytes(phoneClip, ExportFormat::h264, ExportPreset::original, -1), 0);
}

}

}
