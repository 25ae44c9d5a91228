#include "export/Chapters.h"
#include "export/ExportManager.h"
#include "model/ScoringEngine.h"
#include "support/TestClips.h"

#include <gtest/gtest.h>

namespace pointloom {

namespace {

using test::ClipFolder;

MatchConfig match() {
    MatchConfig config;
    config.team1.player1 = QStringLiteral("Ana");
    config.team2.player1 = QStringLiteral("Eva");
    return config;
}

Marker labelled(double time, const char* label) {
    return {QUuid::createUuid(), time, ScoringEngine::getInitialScore(match()),
            *label != '\0' ? std::optional(QString::fromUtf8(label)) : std::nullopt};
}

}

TEST(Chapters, RunFromLabelToLabelWithinTheRange) {
    const std::vector<Marker> markers{labelled(10, "Set 1"), labelled(15, "Tie-break 5–4"),
                                      labelled(20, "Break\n point, Server 2"), labelled(20, "Set 2"),
                                      labelled(90, "After the end")};
    const std::vector<media::Chapter> whole{{0, 10, QStringLiteral("Ana - Eva")},
                                            {10, 20, QStringLiteral("Set 1")},
                                            {20, 60, QStringLiteral("Break point")}};
    EXPECT_EQ(chaptersOf(markers, match(), TimeMap({{0, 60}})), whole);
    const std::vector<media::Chapter> trimmed{{0, 8, QStringLiteral("Set 1")},
                                              {8, 13, QStringLiteral("Break point")}};
    EXPECT_EQ(chaptersOf(markers, match(), TimeMap({{12, 25}})), trimmed);
    EXPECT_TRUE(chaptersOf({labelled(3, ""), labelled(4, "  ")}, match(), TimeMap({{0, 60}})).empty());
}

TEST(Chapters, AreInOrderWhateverTheListIsAndHoldWhenTheirScoreDoes) {
    const double frame = 56832 * (1.0 / 15360); // a hair below 3.7
    const std::vector<Marker> markers{labelled(20, "Late"), labelled(1, "First"), labelled(3.7, "Later"),
                                      labelled(frame, "Earlier"), labelled(20, "Second of two")};
    const std::vector<media::Chapter> expected{{0, 16.3, QStringLiteral("Later")},
                                               {16.3, 26.3, QStringLiteral("Late")}};
    const auto chapters = chaptersOf(markers, match(), TimeMap({{3.7, 30}}));
    ASSERT_EQ(chapters.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(chapters[i].title, expected[i].title);
        EXPECT_NEAR(chapters[i].start, expected[i].start, 1e-9);
        EXPECT_NEAR(chapters[i].end, expected[i].end, 1e-9);
    }
}

TEST(Chapters, AreListedAsVideoSitesReadThem) {
    EXPECT_EQ(chapterList({{0, 65, QStringLiteral("Ana - Eva")},
                           {65.9, 3723, QStringLiteral("Set 2")},
                           {3723, 4000, QStringLiteral("Set 3")}}),
              QStringLiteral("0:00 Ana - Eva\n1:05 Set 2\n1:02:03 Set 3\n"));
}

TEST(Chapters, StandInTheExportedFileUnlessUnwanted) {
    const ClipFolder folder;
    ExportJob job;
    job.videoPath =
        folder.make(QStringLiteral("clip.mp4"),
                    "-f lavfi -i color=gray:s=320x180:r=25:d=4 -f lavfi -i sine=d=4 -c:v libx264 -c:a aac");
    job.overlay.config = match();
    job.overlay.initialScore = ScoringEngine::getInitialScore(job.overlay.config);
    job.overlay.markers = {labelled(4 / 3.0, "Höhepunkt"), labelled(3, ""), labelled(50, "Nie gespielt")};
    job.trimEnd = 60; // as left by a longer clip
    job.settings.encoderPreset = QStringLiteral("ultrafast");
    const auto chaptersOfExport = [&](const char* name, ExportFormat format, bool wanted) {
        job.outputPath = folder.path(QString::fromLatin1(name));
        job.settings.format = format;
        job.settings.withChapters = wanted;
        ExportManager::exportVideo(job);
        return test::probe(job.outputPath)["chapters"];
    };
    for (const auto& [name, format] :
         {std::pair{"out.mp4", ExportFormat::h264}, {"out.mov", ExportFormat::prores}}) {
        const nlohmann::json chapters = chaptersOfExport(name, format, true);
        ASSERT_EQ(chapters.size(), 2U) << name;
        EXPECT_EQ(chapters[0]["tags"]["title"], "Ana - Eva");
        EXPECT_EQ(chapters[1]["tags"]["title"], "Höhepunkt");
        // The first whole millisecond that is not before the marker, whose frame the chapter is to show.
        EXPECT_NEAR(std::stod(chapters[1]["start_time"].get<std::string>()), 1.334, 1e-5);
        EXPECT_NEAR(std::stod(chapters[1]["end_time"].get<std::string>()), 4.0, 0.05);
    }
    EXPECT_TRUE(chaptersOfExport("plain.mp4", ExportFormat::h264, false).empty());
}

}
