#include "ui/editor/EditorFixture.h"
#include "ui/editor/ValueStepper.h"
#include "ui/timeline/TimelineCanvas.h"

#include <QApplication>
#include <QPointer>

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

TEST_F(EditorKeysTest, KeysCountAWholeGameAndSayWhoseItIs) {
    const auto* said = find<QLabel>("countedPoint");
    const auto point = [&](double time, Qt::Key key) {
        state.currentTime = time;
        press(key);
    };
    press(Qt::Key_S);
    EXPECT_EQ(servingSide(*state.liveScore()), Side::second) << "serves first";
    for (double time = 10; time <= 40; time += 10)
        point(time, Qt::Key_1);
    EXPECT_EQ(setsOf(marker(3).score).front(), (SetScore{1, 0, {}}));
    EXPECT_EQ(gameOf(3), GameScore());
    EXPECT_EQ(servingSide(marker(3).score), Side::first);
    EXPECT_EQ(said->text(), QStringLiteral("Game: Dravnik"));

    point(25, Qt::Key_2); // missed before
    EXPECT_EQ(gameOf(3), (GameScore{forty, fifteen}));
    EXPECT_EQ(said->text(), QStringLiteral("Point: Solvane"));
    point(10, Qt::Key_2);
    EXPECT_EQ(gameOf(4), (GameScore{forty, thirty})) << "the other side's point";
    state.selectedMarkerID = marker(2).id;
    press(Qt::Key_Delete);
    EXPECT_EQ(gameOf(3), (GameScore{forty, fifteen}));
    EXPECT_FALSE(editor->sidebar().count().isVisible());
}

TEST_F(EditorKeysTest, DuringPlaybackNoPointIsLostWhereThePictureStalls) {
    state.isPlaying = true;
    state.currentTime = 5;
    press(Qt::Key_1);
    press(Qt::Key_1);
    press(Qt::Key_2);
    ASSERT_EQ(state.markers.value().size(), 3U);
    EXPECT_EQ(gameOf(2), (GameScore{thirty, fifteen}));
    EXPECT_NEAR(marker(2).startTime, 5.08, 1e-9);
}

TEST_F(EditorKeysTest, WhatWasTypedIsKeptAndToldFromWhereOn) {
    for (const double time : {10, 20, 30, 40}) {
        state.currentTime = time;
        press(Qt::Key_2);
    }
    const CountBar& bar = editor->sidebar().count();
    const auto isBreak = [&](int row) {
        const auto* model = editor->sidebar().markers().model();
        return model->data(model->index(row, 0), MarkerListModel::BreaksRole).toBool();
    };
    state.selectedMarkerID = marker(1).id;
    press(Qt::Key_S);
    EXPECT_TRUE(isBreak(1));
    EXPECT_FALSE(isBreak(0));
    EXPECT_TRUE(bar.isVisible()) << "offers to carry it on";
    Q_EMIT editor->sidebar().count().firstActionChosen();
    EXPECT_EQ(servingSide(marker(2).score), Side::second);
    EXPECT_FALSE(bar.isVisible());

    const SportScoreState typed = marker(1).score;
    state.currentTime = 10;
    press(Qt::Key_1);
    EXPECT_EQ(gameOf(0), (GameScore{fifteen, zero}));
    EXPECT_EQ(marker(1).score, typed);
    EXPECT_TRUE(bar.message().contains(QStringLiteral("0:20.00"))) << bar.message().toStdString();
    EXPECT_TRUE(bar.isVisible());
    undo.undo();
    EXPECT_EQ(gameOf(0), (GameScore{zero, fifteen}));
}

TEST_F(EditorKeysTest, AfterTheEndOfTheMatchKeysOnlySaySo) {
    state.initialScore = ScoreState{{{6, 0, {}}, {5, 0, {}}, {}}, {forty, zero}, 1};
    state.currentTime = 5;
    press(Qt::Key_1);
    EXPECT_EQ(find<QLabel>("countedPoint")->text(), QStringLiteral("Game, set, match: Dravnik"));
    state.currentTime = 6;
    press(Qt::Key_1);
    EXPECT_EQ(state.markers.value().size(), 1U);
    EXPECT_TRUE(editor->sidebar().count().isVisible());
}

TEST_F(EditorKeysTest, ByHandOneKeyStepsAValueAndASecondPressTheSameMarker) {
    state.rules = {std::string(byHand)};
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

TEST_F(EditorKeysTest, KeysThatAreChangedWhileTheEditorIsOpenHoldAtOnce) {
    const auto toolTip = [this] {
        for (const QToolButton* button : editor->findChildren<QToolButton*>()) {
            if (button->accessibleName() == QStringLiteral("Mark a Cut"))
                return button->toolTip();
        }
        return QString();
    };
    EXPECT_TRUE(toolTip().contains(QStringLiteral("(C)"))) << toolTip().toStdString();
    keysInUse.choose({{Command::addCut, {Qt::Key_X}}, {Command::pointFirst, {Qt::Key_F}}});
    EXPECT_TRUE(toolTip().contains(QStringLiteral("(X)"))) << toolTip().toStdString();
    state.currentTime = 20;
    press(Qt::Key_C);
    EXPECT_TRUE(state.cuts.value().empty());
    press(Qt::Key_X);
    EXPECT_EQ(state.cuts.value().size(), 1U);
    press(Qt::Key_1);
    EXPECT_TRUE(state.markers.value().empty());
    press(Qt::Key_F);
    EXPECT_EQ(gameOf(0), (GameScore{fifteen, zero}));
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

TEST_F(EditorKeysTest, ADigitIsAPointAfterEveryKindOfClick) {
    QList<QPointer<QWidget>> widgets; // a click may delete one
    for (QWidget* widget : editor->findChildren<QWidget*>())
        widgets << widget;
    for (const auto& widget : widgets) {
        const auto* button = qobject_cast<QToolButton*>(widget.data());
        if (!widget || qobject_cast<QLineEdit*>(widget.data()) || (button && button->menu()))
            continue;
        state.markers = std::vector<Marker>{test::markerAt(1)};
        state.selectedMarkerID = marker(0).id;
        state.currentTime = 1;
        if (!widget || !widget->isVisible())
            continue;
        const bool isStepper = qobject_cast<ValueStepper*>(widget.data());
        const QPoint place(isStepper ? widget->width() - 5 : widget->width() / 2, widget->height() / 2);
        QTest::mouseClick(widget, Qt::LeftButton, {}, place);
        if (QWidget* surface = QApplication::activePopupWidget())
            surface->close(); // keys are its own as long as it is open
        state.currentTime = 70;
        press(Qt::Key_1);
        const auto& markers = state.markers.value();
        EXPECT_TRUE(!markers.empty() && markers.back().startTime == 70)
            << (widget ? widget->metaObject()->className() : "what is gone") << " at " << place.x();
    }
}

TEST_F(EditorKeysTest, AFieldTakesDigitsUntilEnterEscapeOrPlayback) {
    press(Qt::Key_M);
    auto* field = find<ValueStepper>("set1team1");
    const auto games = [this] { return setsOf(marker(0).score)[0].team1; };
    double time = 10;
    const std::function<void()> ends[] = {[this] { press(Qt::Key_Return); },
                                          [this] { press(Qt::Key_Escape); },
                                          [this] { state.isPlaying = true; }};
    for (std::size_t i = 0; i < std::size(ends); ++i) {
        state.selectedMarkerID = marker(0).id;
        QTest::mouseClick(field, Qt::LeftButton, {}, field->rect().center());
        press(i % 2 == 0 ? Qt::Key_2 : Qt::Key_1);
        EXPECT_EQ(games(), i % 2 == 0 ? 2 : 1);
        EXPECT_EQ(state.markers.value().size(), 1 + i);
        ends[i]();
        state.currentTime = time++;
        press(Qt::Key_1);
        EXPECT_EQ(state.markers.value().size(), 2 + i);
        EXPECT_EQ(games(), i % 2 == 0 ? 2 : 1);
    }
}

TEST_F(EditorKeysTest, EscapeForgetsALabelThatIsBeingTyped) {
    press(Qt::Key_M);
    auto* label = find<QLineEdit>("markerLabel");
    label->setFocus();
    press(Qt::Key_S);
    press(Qt::Key_Escape);
    EXPECT_EQ(label->text(), QString());
    EXPECT_EQ(marker(0).label, std::nullopt);
    press(Qt::Key_1);
    EXPECT_EQ(gameOf(0), (GameScore{fifteen, zero}));
}

TEST_F(EditorKeysTest, AnyTimeIsOneEntryAway) {
    state.videoDuration = 7200.5;
    auto* time = find<QLineEdit>("timeCode");
    const auto enter = [&](const char* text) {
        press(Qt::Key_G);
        ASSERT_TRUE(time->hasFocus());
        QTest::keyClicks(time, QString::fromUtf8(text));
        press(Qt::Key_Return);
    };
    enter("1:10:23");
    EXPECT_EQ(state.currentTime.value(), 4223);
    EXPECT_EQ(time->text(), QStringLiteral("01:10:23.00"));
    press(Qt::Key_1);
    EXPECT_EQ(state.markers.value().size(), 1U) << "the keys are the editor's again";

    for (const auto& [text, answer] : {std::pair("halftime", "“halftime” is not a time."),
                                       std::pair("2:00:01", "The clip ends at 2:00:00.50.")}) {
        enter(text);
        EXPECT_EQ(state.currentTime.value(), 4223);
        EXPECT_TRUE(time->hasFocus()) << "to be corrected";
        EXPECT_TRUE(time->accessibleDescription().startsWith(QString::fromUtf8(answer)));
        press(Qt::Key_Escape);
        EXPECT_EQ(time->text(), QStringLiteral("01:10:23.00"));
    }
    QTest::mouseClick(time, Qt::LeftButton, {}, time->rect().center());
    state.currentTime = 5; // the clip plays on
    QTest::keyClicks(time, QStringLiteral("0:30"));
    press(Qt::Key_Return);
    EXPECT_EQ(state.currentTime.value(), 30);
}

TEST_F(EditorKeysTest, TheSpeedOfLEndsWithThePauseAndAnyWithTheVideo) {
    const EditorPlayback& playback = editor->playback();
    editor->playback().setSpeed(0.5);
    state.isPlaying = true;
    press(Qt::Key_L);
    EXPECT_EQ(playback.speed(), 1);
    press(Qt::Key_L);
    EXPECT_EQ(playback.speed(), 2);
    state.isPlaying = false;
    EXPECT_EQ(playback.speed(), 0.5) << "as it was chosen";
    state.videoURL = QUrl::fromLocalFile(folder.path(QStringLiteral("another.mp4")));
    EXPECT_EQ(playback.speed(), 1);
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
