// Metadata of HDR files: what still holds for the exported frames is kept, the rest is dropped.
#include "compatibility/DecodedClip.h"
#include "compatibility/HdrClips.h"
#include "compatibility/OverlayReference.h"
#include "export/ExportManager.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pointloom::test {

namespace {

using nlohmann::json;
using testing::AnyOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

/// The entry of that type among the side data of a stream or frame; null when there is none.
json sideData(const json& owner, const std::string& type) {
    for (const json& entry : owner.value("side_data_list", json::array()))
        if (entry["side_data_type"] == type)
            return entry;
    return {};
}

std::vector<std::string> sideDataTypes(const DecodedClip& clip) {
    std::vector<std::string> types;
    for (const json* owner : {&clip.video(), &clip.firstFrame()})
        for (const json& entry : owner->value("side_data_list", json::array()))
            types.push_back(entry["side_data_type"]);
    return types;
}

const std::string display = "Mastering display metadata";
const std::string light = "Content light level metadata";

DecodedClip exported(const ClipFolder& folder, const QString& clip, ExportFormat format) {
    const ExportJob job = OverlayReference::job(folder, clip, format);
    ExportManager::exportVideo(job);
    return DecodedClip(job.outputPath);
}

void expectMastering(const json& owner) {
    const json mastering = sideData(owner, display);
    ASSERT_FALSE(mastering.is_null());
    const std::pair<const char*, const char*> expected[] = {
        {"red_x", "34000/50000"},           {"red_y", "16000/50000"},         {"green_x", "13250/50000"},
        {"green_y", "34500/50000"},         {"blue_x", "7500/50000"},         {"blue_y", "3000/50000"},
        {"white_point_x", "15635/50000"},   {"white_point_y", "16450/50000"}, {"min_luminance", "50/10000"},
        {"max_luminance", "10000000/10000"}};
    for (const auto& [name, value] : expected)
        EXPECT_EQ(mastering[name], value) << name;
    const json levels = sideData(owner, light);
    ASSERT_FALSE(levels.is_null());
    EXPECT_EQ(levels["max_content"], 1000);
    EXPECT_EQ(levels["max_average"], 400);
}

}

TEST(Hdr, MasteringDisplayAndLightLevelsStayInHevcAndProRes) {
    const ClipFolder folder;
    const QString clip = make(sourceNamed("Pq"), folder);
    const DecodedClip hevc = exported(folder, clip, ExportFormat::hevc);
    expectMastering(hevc.video());      // by the container's boxes
    expectMastering(hevc.firstFrame()); // by the pictures' messages
    EXPECT_EQ(hevc.video()["pix_fmt"], "yuv420p10le");

    const DecodedClip prores = exported(folder, clip, ExportFormat::prores);
    expectMastering(prores.video());
    EXPECT_EQ(prores.video()["pix_fmt"], "yuv422p10le");

    const DecodedClip again = exported(folder, folder.path(QStringLiteral("out.mov")), ExportFormat::hevc);
    expectMastering(again.firstFrame()); // of a source in which the container alone says it
}

TEST(Hdr, ToneMappedPicturesSayNothingOfIt) {
    const ClipFolder folder;
    const DecodedClip h264 = exported(folder, make(sourceNamed("Pq"), folder), ExportFormat::h264);
    EXPECT_THAT(sideDataTypes(h264), Each(Not(AnyOf(display, light))));
    EXPECT_EQ(h264.video()["pix_fmt"], "yuv420p");
}

TEST(Hdr, DolbyVisionAndHdr10PlusAreNotLeftLying) {
    const ClipFolder folder;
    const QString dolbyVision = withDolbyVision(folder, make(sourceNamed("Hlg"), folder));
    ASSERT_THAT(sideDataTypes(DecodedClip(dolbyVision)), Contains(HasSubstr("DOVI")));
    const QString hdr10Plus = withHdr10Plus(folder, make(sourceNamed("Pq"), folder));
    ASSERT_THAT(sideDataTypes(DecodedClip(hdr10Plus)), Contains(HasSubstr("HDR10+")));
    for (const QString& clip : {dolbyVision, hdr10Plus})
        for (const ExportFormat format : {ExportFormat::h264, ExportFormat::hevc, ExportFormat::prores})
            EXPECT_THAT(sideDataTypes(exported(folder, clip, format)),
                        Each(Not(AnyOf(HasSubstr("DOVI"), HasSubstr("HDR10+"), HasSubstr("Dolby")))))
                << clip.toStdString();
}

TEST(Stills, ShowTheColoursOfTheExport) {
    for (const char* name :
         {"Plain", "Bt601Full", "Bt709Full", "Mirrored", "WidePixels", "TopFieldFirst", "Hlg", "Pq"}) {
        const ClipFolder folder;
        const Source source = sourceNamed(name);
        const ExportJob job = OverlayReference::job(folder, make(source, folder), ExportFormat::h264);
        ExportManager::exportVideo(job);
        const DecodedClip clip(job.outputPath);
        const OverlayReference overlay(job, clip.shownSize(), clip.shownSize());
        const int frame = static_cast<int>(clip.times().size()) / 2;
        const double time = clip.times()[static_cast<std::size_t>(frame)] + 0.01;
        ExportJob hevc = job;
        hevc.settings.format = ExportFormat::hevc;
        for (const QImage& still :
             {ExportManager::renderStill(job, time), ExportManager::renderStill(hevc, time)}) {
            ASSERT_EQ(still.size(), clip.shownSize().toSize());
            for (int patch = 0; patch < Pattern::patches; ++patch) {
                const QPointF point = clip.shownPoint(Pattern::areaOf(patch).center());
                if (overlay.covers(point))
                    continue;
                const QColor shown = still.pixelColor(static_cast<int>(point.x() * still.width()),
                                                      static_cast<int>(point.y() * still.height()));
                Rgb expected = clip.colorAt(frame, point, clip.color());
                for (double& level : expected)
                    level = std::clamp(level, 0.0, 255.0); // as screens do with light above white
                constexpr double tolerance = 4;            // levels of 255
                EXPECT_NEAR(shown.red(), expected[0], tolerance) << name << ", patch " << patch;
                EXPECT_NEAR(shown.green(), expected[1], tolerance) << name << ", patch " << patch;
                EXPECT_NEAR(shown.blue(), expected[2], tolerance) << name << ", patch " << patch;
            }
        }
    }
}

}
