#include "ui/export/ExportWords.h"

#include <gtest/gtest.h>

namespace pointloom {

namespace {

TEST(ExportWords, ProgressIsToldInThePersonsLanguageWithGroupedDigits) {
    const ExportProgress progress{1204.0 / 5400, 1204, 5400};
    EXPECT_EQ(ExportWords::progress(progress, 19.8, Language::english).toStdString(),
              "1,204 of 5,400 frames, 61 fps, 1 min 10 s left");
    EXPECT_EQ(ExportWords::progress(progress, 19.8, Language::german).toStdString(),
              "1.204 von 5.400 Bildern, 61 Bilder/s, noch 1 min 10 s");
    EXPECT_EQ(ExportWords::progress(progress, 0.1, Language::english).toStdString(), "1,204 of 5,400 frames")
        << "too early for a pace";
}

TEST(ExportWords, DamageIsALineForEachKind) {
    EXPECT_TRUE(ExportWords::damage({}, Language::english).isEmpty());
    EXPECT_EQ(ExportWords::flaws(
                  {.damage = {}, .outputPath = {}, .captionsFault = QStringLiteral("a.srt: Is a directory")},
                  Language::english),
              QStringList(QStringLiteral(
                  "The video is finished, but its captions are missing: a.srt: Is a directory")));
    EXPECT_EQ(ExportWords::damage({10, 2, 3.24}, Language::english),
              (QStringList{QStringLiteral("Damaged pictures in the video: 12"),
                           QStringLiteral("Missing at the end of the video: 3.2 s")}));
    EXPECT_EQ(ExportWords::damage({0, 0, 3.24}, Language::german),
              QStringList{QStringLiteral("Am Ende des Videos fehlen: 3,2 s")});
}

TEST(ExportWords, SpansRoundUpAndGrowWithTheirUnit) {
    EXPECT_EQ(ExportWords::span(0.2).toStdString(), "1 s");
    EXPECT_EQ(ExportWords::span(69).toStdString(), "1 min 9 s");
    EXPECT_EQ(ExportWords::span(4320).toStdString(), "1 h 12 min");
    EXPECT_EQ(ExportWords::span(-1).toStdString(), "0 s");
}

TEST(ExportWords, PlacesCarryHundredthsAndHoursOnlyWhenNeeded) {
    EXPECT_EQ(ExportWords::place(65.2).toStdString(), "1:05.20");
    EXPECT_EQ(ExportWords::place(3725.999).toStdString(), "1:02:06.00");
}

}

}
