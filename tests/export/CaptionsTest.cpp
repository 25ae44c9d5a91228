#include "export/Captions.h"

#include <gtest/gtest.h>

namespace pointloom {

namespace {

Marker tennisAt(double time, std::vector<SetScore> sets, GameScore game, const char* label = nullptr) {
    return {QUuid::createUuid(), time, ScoreState{std::move(sets), game, 1},
            label ? std::optional(QString::fromUtf8(label)) : std::nullopt};
}

OverlayDescription tennisMatch() {
    using enum GamePoint;
    OverlayDescription overlay;
    overlay.config.team1.player1 = QStringLiteral("Ana <A>");
    overlay.config.team2.player1 = QStringLiteral("Eva");
    overlay.initialScore = ScoreState{{{0, 0, {}}, {0, 0, {}}}, {}, 1};
    overlay.markers = {tennisAt(4, {{0, 0, {}}, {0, 0, {}}}, {fifteen, zero}),
                       tennisAt(10.5, {{6, 7, 5}, {0, 0, {}}}, {}, "Set 2"),
                       tennisAt(12, {{6, 7, 5}, {0, 1, {}}}, {zero, advantage})};
    return overlay;
}

std::vector<std::string> texts(const std::vector<Caption>& captions) {
    std::vector<std::string> found;
    for (const Caption& caption : captions)
        found.push_back(caption.text.toStdString());
    return found;
}

}

TEST(Captions, SayTheScoreForAsLongAsItHolds) {
    const auto captions = captionsOf(tennisMatch(), TimeMap({{2, 30}}));
    EXPECT_EQ(texts(captions),
              (std::vector<std::string>{"Ana <A> – Eva  0–0", "Ana <A> – Eva  0–0 · 15–0",
                                        "Ana <A> – Eva  6(5)–7\nSet 2", "Ana <A> – Eva  6(5)–7 0–1 · 0–Ad"}));
    const double starts[] = {0, 2, 8.5, 10, 28};
    for (std::size_t i = 0; i < captions.size(); ++i) {
        EXPECT_DOUBLE_EQ(captions[i].start, starts[i]);
        EXPECT_DOUBLE_EQ(captions[i].end, starts[i + 1]);
    }
}

TEST(Captions, FollowTheTimesOfTheNewFileWhereSomethingIsLeftOut) {
    // The marker at 10.5 s is left out together with its moment; its score still holds when the file goes on.
    const auto captions = captionsOf(tennisMatch(), TimeMap({{3, 5}, {11, 13}}));
    EXPECT_EQ(texts(captions),
              (std::vector<std::string>{"Ana <A> – Eva  0–0", "Ana <A> – Eva  0–0 · 15–0",
                                        "Ana <A> – Eva  6(5)–7\nSet 2", "Ana <A> – Eva  6(5)–7 0–1 · 0–Ad"}));
    EXPECT_DOUBLE_EQ(captions[2].start, 2);
    EXPECT_DOUBLE_EQ(captions[3].start, 3);
    EXPECT_DOUBLE_EQ(captions[3].end, 4);
}

TEST(Captions, PointSportsShowThePointsOfTheRunningSetAlone) {
    OverlayDescription overlay = tennisMatch();
    overlay.initialScore = PointScoreState{{{25, 21, {}}, {0, 0, {}}, {0, 0, {}}}, {}, 1};
    overlay.markers = {
        {QUuid::createUuid(), 1, PointScoreState{{{25, 21, {}}, {0, 0, {}}, {0, 0, {}}}, {3, 0}, 1}, {}},
        {QUuid::createUuid(), 1, PointScoreState{{}, {9, 9}, 1}, {}},
        {QUuid::createUuid(), 2, PointScoreState{{{0, 0, {}}}, {1, 0}, 1}, {}}};
    EXPECT_EQ(texts(captionsOf(overlay, TimeMap({{0, 3}}))),
              (std::vector<std::string>{"Ana <A> – Eva  25–21", "Ana <A> – Eva  25–21 · 3–0",
                                        "Ana <A> – Eva  1–0"}))
        << "of two markers at one time the first counts";
}

TEST(Captions, AreWrittenAsPlayersReadThem) {
    const std::vector<Caption> captions{{0, 61.25, QStringLiteral("A & <B>\nSet 1")},
                                        {3725.5, 3726, QStringLiteral("1–0")}};
    EXPECT_EQ(asSubRip(captions).toStdString(), "1\n00:00:00,000 --> 00:01:01,250\nA & <B>\nSet 1\n\n"
                                                "2\n01:02:05,500 --> 01:02:06,000\n1–0\n\n");
    EXPECT_EQ(asWebVtt(captions).toStdString(),
              "WEBVTT\n\n00:00:00.000 --> 00:01:01.250\nA &amp; &lt;B&gt;\nSet 1\n\n"
              "01:02:05.500 --> 01:02:06.000\n1–0\n\n");
}

}
