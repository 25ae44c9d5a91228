#include "export/ExportSettings.h"

#include <gtest/gtest.h>

namespace pointloom {

namespace {

using Quality = media::EncodingQuality;

constexpr SourceRate phoneClip{{1920, 1080}, 29.97, 2e6};

std::int64_t bytesFor(ExportFormat format, ExportPreset preset, Quality quality = Quality::standard) {
    return estimatedBytes(phoneClip, {preset, format, quality}, 10);
}

TEST(SizeEstimate, ProresGoesByItsNominalRateWhateverTheSource) {
    const auto bits = [](Quality quality) {
        return static_cast<double>(bytesFor(ExportFormat::prores, ExportPreset::original, quality)) * 8 / 10;
    };
    EXPECT_NEAR(bits(Quality::smaller), 102e6, 1e4);
    EXPECT_NEAR(bits(Quality::standard), 147e6, 1e4);
    EXPECT_NEAR(bits(Quality::better), 220e6, 1e4);
}

TEST(SizeEstimate, AnOriginalH264KeepsTheSourcesRateAndHevcIsSmaller) {
    EXPECT_EQ(bytesFor(ExportFormat::h264, ExportPreset::original), 20'000'000);
    EXPECT_LT(bytesFor(ExportFormat::hevc, ExportPreset::original), 20'000'000);
    EXPECT_GT(bytesFor(ExportFormat::h264, ExportPreset::youtube4k), 40'000'000);
}

TEST(SizeEstimate, FollowsTheQuality) {
    for (const ExportFormat format : {ExportFormat::h264, ExportFormat::hevc}) {
        const std::int64_t standard = bytesFor(format, ExportPreset::original);
        EXPECT_LT(bytesFor(format, ExportPreset::original, Quality::smaller), standard * 3 / 4);
        EXPECT_GT(bytesFor(format, ExportPreset::original, Quality::better), standard * 3 / 2);
    }
}

TEST(SizeEstimate, NothingIsSaidOfAnUnknownSource) {
    EXPECT_EQ(estimatedBytes({}, {ExportPreset::youtube4k, ExportFormat::prores}, 10), 0);
    EXPECT_EQ(estimatedBytes(phoneClip, {}, -1), 0);
}

}

}
