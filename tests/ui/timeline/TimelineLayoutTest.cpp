// Positions on the timeline: arithmetic without a window.
#include "support/Sessions.h"
#include "ui/common/MarkerText.h"
#include "ui/timeline/CutStep.h"
#include "ui/timeline/FlagRow.h"
#include "ui/timeline/Gestures.h"
#include "ui/timeline/MarkerDrop.h"
#include "ui/timeline/ThumbnailStrip.h"
#include "ui/timeline/WaveformStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <QString>
#include <set>

namespace pointloom::test {

using testing::ElementsAre;

namespace {

TimeScale scaleOf(double duration, double width) {
    TimeScale scale;
    scale.setClip(duration, 25);
    scale.setWidth(width);
    return scale;
}

std::vector<std::string> labelsOf(const RulerRange& range) {
    std::vector<std::string> labels;
    for (const RulerTick& tick : rulerTicks(range)) {
        if (!tick.label.isEmpty())
            labels.push_back(tick.label.toStdString());
    }
    return labels;
}

}

TEST(TimeScale, TheWholeClipFitsAndGoesOnFitting) {
    TimeScale scale = scaleOf(100, 1028);
    EXPECT_DOUBLE_EQ(scale.x(0), 14);
    EXPECT_DOUBLE_EQ(scale.x(100), 1014);
    EXPECT_DOUBLE_EQ(scale.time(514), 50);
    EXPECT_EQ(scale.largestOffset(), 0);
    scale.setWidth(528);
    EXPECT_DOUBLE_EQ(scale.x(100), 514);
    scale.setClip(50, 25);
    EXPECT_DOUBLE_EQ(scale.x(50), 514);
}

TEST(TimeScale, ZoomKeepsTheTimeUnderThePointer) {
    TimeScale scale = scaleOf(100, 1028);
    const double time = scale.time(700);
    for (int i = 0; i < 12; ++i) {
        scale.zoomBy(1.3, 700);
        EXPECT_NEAR(scale.x(time), 700, 0.5) << "offsets are whole points";
    }
    EXPECT_FALSE(scale.isFitted());
    scale.zoomBy(1e9, 700);
    EXPECT_NEAR(scale.pointsPerSecond(), 64 * 25, 1e-6) << "a frame takes 64 points at most";
    scale.zoomBy(1e-9, 700);
    EXPECT_TRUE(scale.isFitted());
    EXPECT_EQ(scale.offset(), 0);
}

TEST(TimeScale, HostileLengthsLeaveItUsable) {
    for (const double duration : {0.0, -5.0, 1e-9, 1e12, std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN()}) {
        TimeScale scale = scaleOf(duration, 800);
        scale.zoomBy(1e6, 400);
        EXPECT_GT(scale.pointsPerSecond(), 0) << duration;
        EXPECT_LE(scale.largestOffset(), 2e9) << "scroll bars count in whole numbers; " << duration;
    }
}

TEST(Ruler, LabelsStandOnRoundTimesAtEveryZoom) {
    EXPECT_THAT(labelsOf({0, 120, 2, 25, 64}), ElementsAre("0:00", "1:00", "2:00"));
    EXPECT_THAT(labelsOf({3590, 3620, 10, 25, 64}), ElementsAre("59:50", "1:00:00", "1:00:10", "1:00:20"));
    EXPECT_THAT(labelsOf({4, 5.5, 64, 25, 60}), ElementsAre("0:04", "0:05"));
    EXPECT_THAT(labelsOf({4, 5.2, 300, 25, 60}),
                ElementsAre("0:04", "5f", "10f", "15f", "20f", "0:05", "5f", "10f", "15f", "20f"));
}

TEST(Ruler, TicksNeverCrowdAndAlwaysRise) {
    for (double pointsPerSecond = 0.001; pointsPerSecond < 4000; pointsPerSecond *= 1.37) {
        for (const double frameRate : {10.0, 23.976, 25.0, 29.97, 60.0, 240.0}) {
            double lastTick = -1;
            double lastLabel = -1e9;
            const RulerRange range{1000, 1000 + 1200 / pointsPerSecond, pointsPerSecond, frameRate, 64};
            for (const RulerTick& tick : rulerTicks(range)) {
                ASSERT_GT(tick.time, lastTick) << pointsPerSecond << " " << frameRate;
                ASSERT_TRUE(lastTick < 0 || (tick.time - lastTick) * pointsPerSecond > 3)
                    << pointsPerSecond << " " << frameRate;
                lastTick = tick.time;
                if (tick.label.isEmpty())
                    continue;
                ASSERT_GE((tick.time - lastLabel) * pointsPerSecond, 55)
                    << pointsPerSecond << " " << frameRate;
                lastLabel = tick.time;
            }
        }
    }
}

TEST(Snapping, TargetsWinWithinReachAndFramesElsewhere) {
    const std::vector<double> targets = {1.003, 5};
    EXPECT_DOUBLE_EQ(snap(1.05, 25, targets, 0.1).time, 1.003);
    EXPECT_TRUE(snap(1.05, 25, targets, 0.1).isOnTarget);
    EXPECT_DOUBLE_EQ(snap(1.15, 25, targets, 0.1).time, 1.16);
    EXPECT_FALSE(snap(1.15, 25, targets, 0.1).isOnTarget);
    EXPECT_DOUBLE_EQ(snap(-0.3, 25, targets, 0.1).time, 0);
    for (const double frameRate : {23.976, 25.0, 29.97, 59.94})
        for (int frame = 0; frame < 5000; frame += 7)
            EXPECT_NEAR(frameStart(frame / frameRate, frameRate), frame / frameRate, 1e-9)
                << "a frame's own time is its start";
}

TEST(Cuts, ANewOneTakesTheSpaceThatIsThere) {
    const auto rangeAt = [](const std::vector<CutZone>& cuts, double playhead) {
        const CutStep step = cutStepAt(cuts, playhead, 10, 0.04, 100);
        EXPECT_EQ(step.kind, CutStep::Kind::added);
        return std::pair(step.cut.start, step.cut.end);
    };
    const CutZone backward{QUuid::createUuid(), 30, 24};
    EXPECT_EQ(rangeAt({}, 50), std::pair(50.0, 60.0));
    EXPECT_EQ(rangeAt({}, 95), std::pair(95.0, 100.0));
    EXPECT_EQ(rangeAt({}, 100), std::pair(99.96, 100.0)) << "one frame at least";
    EXPECT_EQ(rangeAt({backward}, 20), std::pair(20.0, 24.0));
    EXPECT_EQ(rangeAt({backward}, 30), std::pair(30.0, 40.0)) << "beside the one that ends there";
}

TEST(Cuts, TheOneAroundThePlayheadIsEnded) {
    const CutZone outer{QUuid::createUuid(), 20, 60};
    const CutZone inner{QUuid::createUuid(), 30, 50};
    const CutStep step = cutStepAt(std::vector{outer, inner}, 41.5, 10, 0.04, 100);
    EXPECT_EQ(step.kind, CutStep::Kind::ended);
    EXPECT_EQ(step.cut, (CutZone{inner.id, 30, 41.5}));
    EXPECT_EQ(cutStepAt(std::vector{outer, inner}, 30.01, 10, 0.04, 100).kind, CutStep::Kind::chosen);
}

TEST(Markers, FindTheFreeFrameBesideOthers) {
    const std::vector markers{markerAt(0), markerAt(3.7), markerAt(3.74), markerAt(9)};
    const ClipFrames clip{0.04, 9.04};
    const auto beside = [&](std::size_t other, bool isBefore) {
        return frameBeside(markers, markers[3].id, markers[other], isBefore, clip);
    };
    EXPECT_DOUBLE_EQ(beside(1, true), 3.66);
    EXPECT_DOUBLE_EQ(beside(1, false), 3.78) << "past the next one too";
    EXPECT_DOUBLE_EQ(beside(0, true), 0.04) << "there is nothing before the first frame";
    EXPECT_EQ(markerAtFrame(markers, markers[1].id, 3.705, clip), nullptr) << "the moved one is no obstacle";
}

TEST(Flags, SayLessAsTheyComeCloserAndNeverOverlap) {
    const std::vector<FlagWidths> widths(3, {30, 80});
    const auto details = [&](const std::vector<double>& positions, int lanes, double end = 1000) {
        std::vector<FlagDetail> result;
        for (const FlagPlace& place : layOutFlags(positions, widths, lanes, end))
            result.push_back(place.detail);
        return result;
    };
    using enum FlagDetail;
    EXPECT_THAT(details({0, 100, 200}, 1), ElementsAre(full, full, full));
    EXPECT_THAT(details({0, 40, 200}, 1), ElementsAre(brief, full, full));
    EXPECT_THAT(details({0, 10, 200}, 1), ElementsAre(tick, full, full));
    EXPECT_THAT(details({0, 40, 100}, 2), ElementsAre(full, full, full))
        << "the second lane takes the one between";
    EXPECT_THAT(details({5, 5, 5}, 2), ElementsAre(tick, full, full)) << "at one time";
    EXPECT_THAT(details({0, 20, 200}, 1), ElementsAre(brief, tick, full))
        << "some words are better than none";
    EXPECT_THAT(details({0, 50, 200}, 1, 260), ElementsAre(brief, full, brief)) << "before the end";
    EXPECT_THAT(details({0, 50, std::numeric_limits<double>::quiet_NaN()}, 1),
                ElementsAre(brief, full, tick));
}

TEST(Flags, LeanLeftAtTheEndOfTheClipWhereThereIsRoom) {
    using enum FlagDetail;
    struct Case {
        const char* what;
        std::vector<double> positions;
        int lanes;
        std::vector<FlagPlace> expected;
    };
    const std::vector<Case> cases = {
        {"alone", {495}, 1, {{0, full, true}}},
        {"two that both lean", {460, 495}, 1, {{0, full, true}, {0, brief, true}}},
        {"one before leaves it room", {400, 495}, 1, {{0, brief, false}, {0, brief, true}}},
        {"far enough before", {370, 495}, 1, {{0, full, false}, {0, brief, true}}},
        {"a lane each", {490, 495}, 2, {{0, full, true}, {1, full, true}}},
        {"crowded: the last one speaks", {490, 495}, 1, {{0, tick, false}, {0, full, true}}},
    };
    for (const Case& given : cases) {
        const std::vector<FlagWidths> widths(given.positions.size(), {30, 80});
        const auto places = layOutFlags(given.positions, widths, given.lanes, 500);
        ASSERT_EQ(places.size(), given.expected.size());
        for (std::size_t i = 0; i < places.size(); ++i) {
            EXPECT_EQ(places[i].lane, given.expected[i].lane) << given.what << ", flag " << i;
            EXPECT_EQ(places[i].detail, given.expected[i].detail) << given.what << ", flag " << i;
            EXPECT_EQ(places[i].leansLeft, given.expected[i].leansLeft) << given.what << ", flag " << i;
        }
    }
}

TEST(Flags, ManyCloseTogetherBecomeTicks) {
    std::vector<double> positions;
    for (int i = 0; i < 2000; ++i)
        positions.push_back(i * 0.75);
    const auto places = layOutFlags(positions, std::vector<FlagWidths>(2000, {40, 90}), 3, 1600);
    const auto labelled = std::ranges::count_if(
        places, [](const FlagPlace& place) { return place.detail != FlagDetail::tick; });
    EXPECT_LE(labelled, 3) << "the last ones have room";
}

TEST(Flags, SayWhatTheirMarkersSayAfterEveryEdit) {
    std::vector<Marker> markers;
    for (const double time : {1.0, 2.0, 3.0, 4.0, 5.0})
        markers.push_back(markerAt(time)); // whose score has as many games
    FlagRow row;
    const auto shows = [&] {
        row.setMarkers(markers);
        std::vector<std::string> words;
        for (const Flag& flag : row.flags())
            words.push_back(QStringLiteral("%1: %2").arg(flag.time).arg(flag.words.full).toStdString());
        return words;
    };
    shows();
    markers[1].score = tennisScore(9);
    markers.erase(markers.begin() + 3);
    EXPECT_THAT(shows(), ElementsAre("1: 1-0", "2: 9-0", "3: 3-0", "5: 5-0"));
    markers[0].startTime = 6;
    std::ranges::rotate(markers, markers.begin() + 1);
    EXPECT_THAT(shows(), ElementsAre("2: 9-0", "3: 3-0", "5: 5-0", "6: 1-0"));
    markers.insert(markers.begin(), markerAt(1));
    std::swap(markers[1], markers[3]);
    EXPECT_THAT(shows(), ElementsAre("1: 1-0", "5: 5-0", "3: 3-0", "2: 9-0", "6: 1-0"));
}

TEST(Rows, FoldFromSoundToPicturesAndNeverOverlap) {
    constexpr double line = 14;
    const double smallest = smallestTimelineHeight(line);
    EXPECT_LT(smallest, 130) << "of a window of 480 points";
    const RowLayout least = layOutRows(800, smallest, line, true);
    EXPECT_GE(least.thumbnails.height(), 36);
    EXPECT_TRUE(least.waveform.isEmpty());
    EXPECT_TRUE(layOutRows(800, smallest - 1, line, true).thumbnails.isEmpty()) << "no strip too low to see";
    EXPECT_FALSE(layOutRows(800, smallest + 40, line, true).waveform.isEmpty());
    for (double height = smallest; height < 600; height += 3) {
        for (const bool hasSound : {true, false}) {
            const RowLayout rows = layOutRows(800, height, line, hasSound);
            EXPECT_LE(rows.ruler.bottom(), rows.flags.top());
            EXPECT_LE(rows.flags.bottom(), rows.thumbnails.top());
            EXPECT_LE(rows.thumbnails.bottom(), rows.waveform.top());
            EXPECT_LE(rows.waveform.bottom(), rows.trim.top());
            EXPECT_LE(rows.trim.bottom(), height + 1e-9) << height;
            EXPECT_TRUE(hasSound || rows.waveform.isEmpty());
        }
    }
}

TEST(ThumbnailStrip, AWholeClipHasAPictureEveryEightSecondsFirstFarApart) {
    const auto slots = thumbnailsOfClip(7203);
    const std::set<std::int64_t> different(slots.begin(), slots.end());
    EXPECT_EQ(slots.size(), 901U);
    EXPECT_EQ(different.size(), slots.size());
    EXPECT_EQ(*different.rbegin(), 7200 * 16);
    std::vector<std::int64_t> first(slots.begin(), slots.begin() + 8);
    std::ranges::sort(first);
    for (std::size_t i = 1; i < first.size(); ++i)
        EXPECT_LE(first[i] - first[i - 1], 1100 * 16) << "eight pictures are spread over the clip";
    EXPECT_THAT(thumbnailsOfClip(3), ElementsAre(0));
    EXPECT_TRUE(thumbnailsOfClip(0).empty());
    EXPECT_TRUE(thumbnailsOfClip(std::numeric_limits<double>::quiet_NaN()).empty());
    EXPECT_LE(thumbnailsOfClip(1e300).size(), 10'800U) << "of a day";
}

TEST(ThumbnailStrip, TilesMeetAndZoomLevelsShareTheirPictures) {
    TimeScale scale = scaleOf(600, 1000);
    std::int64_t lastStep = std::numeric_limits<std::int64_t>::max();
    for (int i = 0; i < 30; ++i, scale.zoomBy(1.4, 500)) {
        const std::int64_t step = thumbnailStep(scale, 100);
        EXPECT_LE(step, lastStep);
        EXPECT_TRUE(lastStep == std::numeric_limits<std::int64_t>::max() || lastStep % step == 0);
        lastStep = step;
        const auto tiles = thumbnailTiles(scale, 100, 0, 1000);
        ASSERT_FALSE(tiles.empty());
        for (std::size_t tile = 1; tile < tiles.size(); ++tile)
            EXPECT_NEAR(tiles[tile].left, tiles[tile - 1].left + tiles[tile - 1].width, 1e-6);
        EXPECT_LE(tiles.size(), 22U);
    }
}

TEST(WaveformPyramid, EveryRangeHasTheLoudestOfItsPeaks) {
    std::vector<std::uint8_t> peaks(5000);
    std::uint32_t random = 7;
    for (auto& peak : peaks)
        peak = static_cast<std::uint8_t>((random = random * 1664525 + 1013904223) >> 24);
    WaveformPyramid pyramid;
    for (std::size_t at = 0; at < peaks.size(); at += 333)
        pyramid.append(std::span(peaks).subspan(at, std::min<std::size_t>(333, peaks.size() - at)));
    ASSERT_EQ(pyramid.size(), peaks.size());
    constexpr double second = WaveformPyramid::peaksPerSecond;
    for (std::size_t from = 0; from < peaks.size(); from += 97) {
        for (std::size_t to = from + 1; to <= peaks.size(); to = to * 2 + 1) {
            const auto expected = *std::max_element(peaks.begin() + static_cast<std::ptrdiff_t>(from),
                                                    peaks.begin() + static_cast<std::ptrdiff_t>(to));
            const auto found = pyramid.loudest((static_cast<double>(from) + 0.01) / second,
                                               (static_cast<double>(to) - 0.01) / second);
            ASSERT_EQ(found, expected) << from << " to " << to;
        }
    }
    EXPECT_EQ(pyramid.loudest(1e6, 2e6), 0);
}

TEST(ShortScore, LeaveOutWhatHasNotBegun) {
    const auto tennis = [](std::vector<SetScore> sets, GameScore game) {
        return shortScore(ScoreState{std::move(sets), game, 1});
    };
    EXPECT_EQ(tennis({{0, 0, {}}, {0, 0, {}}}, {}).full, QStringLiteral("0-0"));
    EXPECT_EQ(tennis({{0, 0, {}}}, {GamePoint::thirty, GamePoint::zero}).full, QStringLiteral("30-0"));
    const ShortScore second = tennis({{6, 4, {}}, {2, 1, {}}, {0, 0, {}}}, {});
    EXPECT_EQ(second.full, QStringLiteral("6-4 2-1"));
    EXPECT_EQ(second.brief, QStringLiteral("2-1"));
    const ShortScore tieBreak = tennis({{7, 6, 4}, {0, 0, {}}}, {GamePoint::advantage, GamePoint::forty});
    EXPECT_EQ(tieBreak.full, QStringLiteral("7-6(4) Ad-40"));
    EXPECT_EQ(tieBreak.brief, QStringLiteral("Ad-40"));
    EXPECT_EQ(shortScore(PointScoreState{{{25, 21, {}}}, {14, 9}, 2}).full, QStringLiteral("25-21 14-9"));
}

}
