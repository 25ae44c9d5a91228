#include "l10n/L10nKey.h"
#include "session/AppState.h"
#include "session/UndoStack.h"
#include "support/Sessions.h"

#include <gtest/gtest.h>
#include <random>

namespace pointloom {
namespace {

using namespace test;

/// What undo must bring back.
struct Picture {
    std::vector<Marker> markers;
    std::optional<QUuid> selection;

    explicit Picture(const AppState& state)
        : markers(state.markers.value())
        , selection(state.selectedMarkerID.value()) {}

    bool operator==(const Picture&) const = default;
};

class MarkerUndo : public testing::Test {
protected:
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;
};

TEST_F(MarkerUndo, AddingSortsSelectsAndCanBeTakenBackAndMadeAgain) {
    state.addMarker(markerAt(20), &undo);
    const Marker early = markerAt(5);
    state.addMarker(early, &undo);
    EXPECT_EQ(timesOf(state), (std::vector<double>{5, 20}));
    EXPECT_EQ(state.selectedMarkerID.value(), early.id);

    undo.undo();
    EXPECT_EQ(timesOf(state), std::vector<double>{20});
    EXPECT_FALSE(state.selectedMarkerID.value());

    undo.redo();
    EXPECT_EQ(timesOf(state), (std::vector<double>{5, 20}));
    EXPECT_EQ(state.selectedMarkerID.value(), early.id);
    EXPECT_EQ(store.saves, 4) << "each edit saves, undone and redone ones too";
}

TEST_F(MarkerUndo, RemovingClearsTheSelectionOnlyOfTheRemoved) {
    const Marker first = markerAt(1);
    const Marker second = markerAt(2);
    state.markers = std::vector{first, second};
    state.selectedMarkerID = second.id;

    state.removeMarker(first.id, &undo);
    EXPECT_EQ(state.selectedMarkerID.value(), second.id);
    state.removeMarker(second.id, &undo);
    EXPECT_FALSE(state.selectedMarkerID.value());

    undo.undo();
    undo.undo();
    EXPECT_EQ(state.markers.value(), (std::vector{first, second}));
    EXPECT_EQ(state.selectedMarkerID.value(), first.id) << "a marker that comes back is selected";
}

TEST_F(MarkerUndo, MovingPastAnotherSortsAgainBothWays) {
    const Marker moved = markerAt(1);
    state.markers = std::vector{moved, markerAt(2), markerAt(3)};
    state.updateMarkerTime(moved.id, 2.5, &undo);
    EXPECT_EQ(timesOf(state), (std::vector<double>{2, 2.5, 3}));
    undo.undo();
    EXPECT_EQ(timesOf(state), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(state.markers.value().front(), moved);
}

TEST_F(MarkerUndo, MarkersOfOneTimeKeepTheOrderInWhichTheyCame) {
    const Marker first = markerAt(7);
    const Marker second = markerAt(7);
    const Marker third = markerAt(1);
    state.addMarker(first, &undo);
    state.addMarker(second, &undo);
    state.addMarker(third, &undo);
    EXPECT_EQ(state.markers.value(), (std::vector{third, first, second}));
}

TEST_F(MarkerUndo, AnUnknownMarkerChangesSavesAndRegistersNothing) {
    state.addMarker(markerAt(1), nullptr);
    const Picture before(state);
    const QUuid unknown = QUuid::createUuid();
    state.removeMarker(unknown, &undo);
    state.updateMarkerScore(unknown, tennisScore(1), &undo);
    state.updateMarkerTime(unknown, 3, &undo);
    state.updateMarkerLabel(unknown, QStringLiteral("x"), &undo);
    EXPECT_EQ(Picture(state), before);
    EXPECT_FALSE(undo.canUndo().value());
    EXPECT_EQ(store.saves, 1);
}

TEST_F(MarkerUndo, TheMenuNamesEachEditInBothDirections) {
    const Marker marker = markerAt(1);
    state.addMarker(marker, &undo);
    state.updateMarkerScore(marker.id, tennisScore(9), &undo);
    state.updateMarkerTime(marker.id, 4, &undo);
    state.updateMarkerLabel(marker.id, QStringLiteral("Break"), &undo);
    state.removeMarker(marker.id, &undo);

    std::vector<std::optional<L10nKey>> undone;
    std::vector<std::optional<L10nKey>> redone;
    for (; undo.canUndo().value(); undo.undo())
        undone.push_back(undo.undoActionName().value());
    EXPECT_EQ(undone, (std::vector<std::optional<L10nKey>>{L10nKey::undoDeleteMarker,
                                                           L10nKey::undoRenameMarker, L10nKey::undoMoveMarker,
                                                           L10nKey::undoEditScore, L10nKey::addMarker}));
    for (; undo.canRedo().value(); undo.redo())
        redone.push_back(undo.redoActionName().value());
    EXPECT_EQ(redone, std::vector(undone.rbegin(), undone.rend()));
    EXPECT_EQ(undo.redoActionName().value(), std::nullopt);
}

TEST_F(MarkerUndo, AMenuHearsOfEachChange) {
    QProperty<std::optional<L10nKey>> title;
    title.setBinding([&] { return undo.undoActionName().value(); });
    int changes = 0;
    const auto watch = undo.canRedo().addNotifier([&] { ++changes; });
    state.addMarker(markerAt(1), &undo);
    EXPECT_EQ(title.value(), L10nKey::addMarker);
    undo.undo();
    EXPECT_EQ(title.value(), std::nullopt);
    state.addMarker(markerAt(2), &undo);
    EXPECT_EQ(changes, 2) << "a new edit forgets what could be redone";
    undo.removeAllActions();
    EXPECT_FALSE(undo.canUndo().value());
}

TEST_F(MarkerUndo, AnEditOfAMarkerThatIsGoneIsDroppedWhenUndone) {
    const Marker marker = markerAt(1);
    state.addMarker(marker, nullptr);
    state.updateMarkerTime(marker.id, 2, &undo);
    state.markers = std::vector{markerAt(5)};
    undo.undo();
    EXPECT_EQ(timesOf(state), std::vector<double>{5});
    EXPECT_FALSE(undo.canUndo().value());
    EXPECT_FALSE(undo.canRedo().value());
}

TEST_F(MarkerUndo, AnImportIsOneStepAndEarlierStepsStillFit) {
    const Marker mine = markerAt(1);
    state.addMarker(mine, &undo);
    const std::vector imported{markerAt(10), markerAt(20)};
    state.replaceMarkers(imported, imported.front().id, &undo);
    undo.undo();
    EXPECT_EQ(state.markers.value(), std::vector{mine});
    EXPECT_EQ(state.selectedMarkerID.value(), mine.id);
    undo.redo();
    EXPECT_EQ(state.markers.value(), imported);
    EXPECT_EQ(state.selectedMarkerID.value(), imported.front().id);
    undo.undo();
    undo.undo();
    EXPECT_TRUE(state.markers.value().empty());
}

TEST_F(MarkerUndo, RandomWalksThroughTheHistoryMeetTheSameMarkers) {
    std::mt19937_64 random(7);
    const auto below = [&](std::size_t bound) { return random() % bound; };
    std::vector<std::vector<Marker>> history(1);
    std::size_t position = 0;
    for (int round = 0; round < 3000; ++round) {
        const auto& markers = state.markers.value();
        const std::size_t kind = below(10);
        if (kind < 3 && position > 0) {
            undo.undo();
            --position;
        } else if (kind < 6 && position + 1 < history.size()) {
            undo.redo();
            ++position;
        } else {
            // Every time differs, so that the order is the times' alone.
            const double time = static_cast<double>(below(1000)) + round * 1e-6;
            if (markers.empty() || kind == 6)
                state.addMarker(markerAt(time), &undo);
            else if (const QUuid id = markers[below(markers.size())].id; kind == 7)
                state.removeMarker(id, &undo);
            else if (kind == 8)
                state.updateMarkerTime(id, time, &undo);
            else
                state.updateMarkerLabel(id, QString::number(round), &undo);
            history.resize(++position);
            history.push_back(state.markers.value());
        }
        ASSERT_EQ(state.markers.value(), history[position]) << "in round " << round;
        ASSERT_EQ(undo.canUndo().value(), position > 0);
        ASSERT_EQ(undo.canRedo().value(), position + 1 < history.size());
    }
}

}
}
