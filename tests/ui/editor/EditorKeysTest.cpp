#include "ui/editor/EditorFixture.h"
#include "ui/timeline/TimelineCanvas.h"

#include <QApplication>

namespace pointloom {

namespace {

using enum GamePoint;

class EditorKeysTest : public test::EditorFixture {
protected:
    void SetUp() override {
        openEditor();
        state.videoDuration = 100;
    }
};

}

TEST_F(EditorKeysTest, OneKeyMakesTheNextPointAndASecondPressStepsTheSameMarker) {
    state.currentTime = 5;
    press(Qt::Key_1);
    ASSERT_EQ(state.markers.value().size(), 1U);
    EXPECT_EQ(marker(0).startTime, 5);
    EXPECT_EQ(gameOf(0), (GameScore{fifteen, zero}));
    EXPECT_EQ(state.selectedMarkerID.value(), marker(0).id);

    press(Qt::Key_1);
    press(Qt::Key_2);
    ASSERT_EQ(state.markers.value().size(), 1U);
    EXPECT_EQ(gameOf(0), (GameScore{thirty, fifteen}));

    state.currentTime = 9;
    press(Qt::Key_2);
    EXPECT_EQ(gameOf(1), (GameScore{thirty, thirty})) << "from the score that held there";
    press(Qt::Key_2, Qt::ShiftModifier);
    EXPECT_EQ(gameOf(1), (GameScore{thirty, fifteen}));

    for (int step = 0; step < 5; ++step)
        undo.undo();
    EXPECT_TRUE(state.markers.value().empty());
}

TEST_F(EditorKeysTest, AMarkerBetweenTwoFramesBelongsToTheFrameItTakesEffectWith) {
    state.markers = std::vector<Marker>{test::markerAt(15)};
    state.currentTime = 15.03; // frames of 40 ms: this one is the first after the marker
    press(Qt::Key_1);
    EXPECT_EQ(state.markers.value().size(), 1U);
    state.currentTime = 15.07;
    press(Qt::Key_1);
    EXPECT_EQ(state.markers.value().size(), 2U);
}

TEST_F(EditorKeysTest, MAndPlusKeepTheScoreAndNeverDoubleAMarker) {
    state.currentTime = 3;
    press(Qt::Key_1);
    state.currentTime = 4;
    press(Qt::Key_M);
    press(Qt::Key_M);
    state.currentTime = 6;
    press(Qt::Key_Plus, Qt::ShiftModifier);
    ASSERT_EQ(state.markers.value().size(), 3U);
    EXPECT_EQ(marker(1).score, marker(0).score);
    EXPECT_EQ(marker(2).score, marker(0).score);
}

TEST_F(EditorKeysTest, ServeDeletionAndWalkingConcernTheSelectedMarker) {
    state.markers = std::vector<Marker>{test::markerAt(1), test::markerAt(2), test::markerAt(3)};
    state.currentTime = 2.5;
    press(Qt::Key_S);
    EXPECT_FALSE(undo.canUndo().value()) << "nothing is selected";
    press(Qt::Key_Up);
    EXPECT_EQ(state.selectedMarkerID.value(), marker(1).id);
    EXPECT_EQ(state.currentTime.value(), 2);
    press(Qt::Key_Up);
    EXPECT_EQ(state.currentTime.value(), 1);
    press(Qt::Key_S);
    EXPECT_EQ(servingSide(marker(0).score), Side::second);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    ASSERT_EQ(state.markers.value().size(), 2U);
    EXPECT_EQ(marker(1).startTime, 3);
    undo.undo();
    EXPECT_EQ(state.markers.value().size(), 3U);
}

TEST_F(EditorKeysTest, SeekingKeysMoveThePlayheadWithinTheVideo) {
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(state.currentTime.value(), 1);
    press(Qt::Key_Right);
    EXPECT_NEAR(state.currentTime.value(), 1.04, 1e-9);
    press(Qt::Key_J);
    EXPECT_EQ(state.currentTime.value(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(state.currentTime.value(), 100);
    press(Qt::Key_Home);
    EXPECT_EQ(state.currentTime.value(), 0);
}

TEST_F(EditorKeysTest, ATextFieldKeepsItsKeysAndAButtonItsSpace) {
    press(Qt::Key_M);
    auto* label = find<QLineEdit>("markerLabel");
    label->setFocus();
    for (const auto key : {Qt::Key_M, Qt::Key_1, Qt::Key_Space, Qt::Key_S, Qt::Key_Delete, Qt::Key_Up})
        press(key);
    EXPECT_EQ(state.markers.value().size(), 1U);
    EXPECT_EQ(gameOf(0), GameScore());
    EXPECT_EQ(label->text(), QStringLiteral("m1 s"));
    press(Qt::Key_Return);
    EXPECT_EQ(marker(0).label, QStringLiteral("m1 s"));
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoRenameMarker);

    state.currentTime = 8;
    find<QPushButton>("addMarker")->setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(state.markers.value().size(), 2U);
    press(Qt::Key_2);
    EXPECT_EQ(gameOf(1), (GameScore{zero, fifteen})) << "other keys still belong to the editor";
}

TEST_F(EditorKeysTest, KeysOfTheTimelineWorkWhereverTheFocusIs) {
    for (QWidget* focus : {static_cast<QWidget*>(&editor->timeline().canvas()),
                           static_cast<QWidget*>(find<QPushButton>("addMarker"))}) {
        focus->setFocus();
        state.currentTime = 20;
        press(Qt::Key_I);
        press(Qt::Key_C);
        EXPECT_EQ(state.trimStart, 20);
        EXPECT_EQ(state.cuts.value().size(), 1U);
        press(Qt::Key_Delete);
        EXPECT_TRUE(state.cuts.value().empty()) << "the selected one";
        press(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_FALSE(editor->timeline().canvas().scene().scale.isFitted());
        press(Qt::Key_0, Qt::ControlModifier);
        EXPECT_TRUE(editor->timeline().canvas().scene().scale.isFitted());
        state.trimStart = 0;
    }
}

}
