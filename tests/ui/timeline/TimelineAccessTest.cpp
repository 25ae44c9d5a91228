// The timeline by keys alone, and as screen readers find it.
#include "support/Sessions.h"
#include "ui/support/ScreenContext.h"
#include "ui/timeline/TimelineCanvas.h"
#include "ui/timeline/TimelineView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QAccessible>
#include <QMenu>
#include <QTest>

namespace pointloom::test {

using testing::ElementsAre;
using testing::StartsWith;

namespace {

constexpr double frame = 1.0 / 30; // of a clip that cannot be read

// Playhead, start at 0, markers at 10 and 20 s, a cut from 12.5 to 15 s, end at 100 s.
struct TimelineAccess : testing::Test {
    TimelineAccess() {
        state.matchConfig = tennisMatch();
        state.videoDuration = 100;
        state.markers = std::vector{markerAt(10), markerAt(20)};
        state.addCut({QUuid::createUuid(), 12.5, 15}, nullptr);
        view.resize(1028, 300);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        QObject::connect(&view, &TimelineView::seekRequested,
                         [this](double seconds, bool) { state.currentTime = seconds; });
        QObject::connect(&view, &TimelineView::commandRequested, [this](Command command) {
            if (command == Command::deleteSelection)
                view.removeSelection();
        });
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        canvas().clearFocus();
        canvas().setFocus(Qt::TabFocusReason);
    }

    TimelineCanvas& canvas() { return view.canvas(); }
    QAccessibleInterface& group() { return *QAccessible::queryAccessibleInterface(&canvas()); }
    QAccessibleInterface& item(int index) { return *group().child(index); }
    std::string nameOf(int index) { return item(index).text(QAccessible::Name).toStdString(); }
    std::string focused() {
        QAccessibleInterface* child = group().focusChild();
        return child ? child->text(QAccessible::Name).toStdString() : std::string();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&canvas(), key, modifiers);
    }
    void pressTimes(int times, Qt::Key key) {
        for (int i = 0; i < times; ++i)
            press(key);
    }
    // As EditorKeys asks before it acts itself.
    bool keeps(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent question(QEvent::ShortcutOverride, key, modifiers);
        question.ignore();
        QApplication::sendEvent(&canvas(), &question);
        return question.isAccepted();
    }
    double timeOfMarker(std::size_t index) { return state.markers.value().at(index).startTime; }

    ScreenContext screen;
    AppState& state = screen.state;
    UndoStack& undo = screen.undo;
    TimelineView view{screen.context, nullptr, screen.folder.filePath(QStringLiteral("cache"))};
};

}

TEST_F(TimelineAccess, EachItemHasARoleANameAndAValue) {
    EXPECT_EQ(group().role(), QAccessible::Grouping);
    EXPECT_EQ(group().text(QAccessible::Name), QStringLiteral("Timeline"));
    std::vector<std::string> names;
    std::vector<std::string> times;
    std::vector<double> values;
    for (int i = 0; i < group().childCount(); ++i) {
        names.push_back(nameOf(i));
        times.push_back(item(i).text(QAccessible::Value).toStdString());
        ASSERT_NE(item(i).valueInterface(), nullptr) << names.back();
        values.push_back(item(i).valueInterface()->currentValue().toDouble());
        EXPECT_EQ(item(i).role(), QAccessible::Slider);
        EXPECT_TRUE(item(i).state().focusable);
        EXPECT_EQ(group().indexOfChild(&item(i)), i);
        EXPECT_EQ(item(i).parent(), &group());
        EXPECT_TRUE(canvas().rect().contains(
            QRect(canvas().mapFromGlobal(item(i).rect().topLeft()), item(i).rect().size())));
    }
    EXPECT_THAT(names,
                ElementsAre("Playhead: 0:00.00", "Export starts here: 0:00.00", StartsWith("Marker: 0:10.00"),
                            "Cut 0:12.50 – 0:15.00", "Start of the cut: 0:12.50", "End of the cut: 0:15.00",
                            StartsWith("Marker: 0:20.00"), "Export ends here: 1:40.00"));
    EXPECT_THAT(times, ElementsAre("0:00.00", "0:00.00", "0:10.00", "0:12.50", "0:12.50", "0:15.00",
                                   "0:20.00", "1:40.00"));
    EXPECT_THAT(values, ElementsAre(0, 0, 10, 12.5, 12.5, 15, 20, 100));
    EXPECT_THAT(nameOf(2), testing::HasSubstr("Game Score: "));
    EXPECT_THAT(item(0).text(QAccessible::Description).toStdString(), testing::HasSubstr("Game Score: "));
}

TEST_F(TimelineAccess, ArrowsGoFromItemToItemInTime) {
    EXPECT_EQ(focused(), "Playhead: 0:00.00");
    std::vector<std::string> way;
    for (int i = 0; i < 8; ++i) {
        press(Qt::Key_Down);
        way.push_back(focused().substr(0, 7));
    }
    EXPECT_THAT(way, ElementsAre("Export ", "Marker:", "Cut 0:1", "Start o", "End of ", "Marker:", "Export ",
                                 "Export "));
    EXPECT_EQ(state.currentTime.value(), 100) << "the picture follows";
    pressTimes(2, Qt::Key_Up);
    EXPECT_EQ(focused(), "End of the cut: 0:15.00");
    press(Qt::Key_Escape);
    EXPECT_EQ(focused(), "Playhead: 0:15.00");
    press(Qt::Key_Up);
    EXPECT_EQ(focused(), "Start of the cut: 0:12.50") << "from where the playhead is";
}

TEST_F(TimelineAccess, AnItemMovesByAFrameOrASecondAndOneKeyIsOneStepToUndo) {
    pressTimes(2, Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_NEAR(timeOfMarker(0), 10 + frame, 1e-9);
    EXPECT_NEAR(state.currentTime, 10 + frame, 1e-9);
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(timeOfMarker(0), 9 + frame, 1e-9);
    undo.undo();
    EXPECT_NEAR(timeOfMarker(0), 10 + frame, 1e-9);

    // Held down, it is a drag: it can be given up, and what it did is one step.
    for (int i = 0; i < 3; ++i)
        QTest::keyPress(&canvas(), Qt::Key_Right);
    EXPECT_NEAR(timeOfMarker(0), 10 + frame, 1e-9) << "until the key is released";
    EXPECT_EQ(item(2).text(QAccessible::Value), QStringLiteral("0:10.13"));
    press(Qt::Key_Escape);
    QTest::keyRelease(&canvas(), Qt::Key_Right);
    EXPECT_NEAR(timeOfMarker(0), 10 + frame, 1e-9);
    for (int i = 0; i < 3; ++i)
        QTest::keyPress(&canvas(), Qt::Key_Right);
    QTest::keyRelease(&canvas(), Qt::Key_Right);
    EXPECT_NEAR(timeOfMarker(0), 10 + 4 * frame, 1e-9);
    undo.undo();
    undo.undo();
    EXPECT_EQ(timeOfMarker(0), 10);

    pressTimes(3, Qt::Key_Down); // the end of the cut
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(state.cuts.value().front().end, 16);
    EXPECT_EQ(state.cuts.value().front().start, 12.5);
    pressTimes(2, Qt::Key_Down);
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(state.trimEnd.value(), 99);
}

TEST_F(TimelineAccess, AMarkerStepsOverAnotherOne) {
    state.markers = std::vector{markerAt(10), markerAt(10 + frame)};
    pressTimes(2, Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_NEAR(timeOfMarker(0), 10 + frame, 1e-9);
    EXPECT_NEAR(timeOfMarker(1), 10 + 2 * frame, 1e-9);
    EXPECT_EQ(state.markers.value().at(1).id, *state.selectedMarkerID.value());
}

TEST_F(TimelineAccess, KeepsNoKeyFromTheEditorUnlessAnItemIsGoneTo) {
    EXPECT_FALSE(keeps(Qt::Key_Left));
    EXPECT_FALSE(keeps(Qt::Key_Delete));
    EXPECT_FALSE(keeps(Qt::Key_Escape));
    EXPECT_TRUE(keeps(Qt::Key_Down));
    press(Qt::Key_Down);
    EXPECT_TRUE(keeps(Qt::Key_Left, Qt::ShiftModifier));
    EXPECT_FALSE(keeps(Qt::Key_Space));
    EXPECT_FALSE(keeps(Qt::Key_1));
    state.isPlaying = true; // the playhead moves
    EXPECT_FALSE(keeps(Qt::Key_Left));
    state.isPlaying = false;
    press(Qt::Key_Down);
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, {500, 5});
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Down, Qt::Key_Return})
        EXPECT_FALSE(keeps(key)) << "after a click its keys are the editor's";
}

TEST_F(TimelineAccess, DeleteMeansTheItemThatHasTheFocus) {
    const QUuid first = state.markers.value().front().id;
    pressTimes(2, Qt::Key_Down);
    EXPECT_EQ(state.selectedMarkerID.value(), first);
    pressTimes(1, Qt::Key_Up);
    view.removeSelection();
    EXPECT_EQ(state.markers.value().size(), 2U) << "a trim cannot be removed";
    pressTimes(3, Qt::Key_Down); // a cut's start
    view.removeSelection();
    EXPECT_TRUE(state.cuts.value().empty());
    EXPECT_EQ(focused(), "Playhead: 0:12.50");
    press(Qt::Key_Up);
    view.removeSelection();
    ASSERT_EQ(state.markers.value().size(), 1U);
    EXPECT_NE(state.markers.value().front().id, first);
    EXPECT_EQ(group().childCount(), 4);
}

TEST_F(TimelineAccess, EnterOpensTheMenuOfTheItem) {
    state.trimEnd = 50;
    pressTimes(7, Qt::Key_Down);
    press(Qt::Key_Return);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    menu->actions().back()->trigger(); // what a double click does
    menu->close();
    EXPECT_FALSE(state.trimEnd.value().has_value());
    EXPECT_THAT(focused(), StartsWith("Export ends here")) << "it keeps the focus";
}

TEST_F(TimelineAccess, ScreenReadersCanActOnItems) {
    item(6).valueInterface()->setCurrentValue(30.0);
    EXPECT_EQ(timeOfMarker(1), 30);
    item(0).valueInterface()->setCurrentValue(42.0);
    EXPECT_EQ(state.currentTime.value(), 42);
    QAccessibleActionInterface* start = item(1).actionInterface();
    ASSERT_NE(start, nullptr);
    start->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_NEAR(state.trimStart, frame, 1e-9);
    start->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_THAT(focused(), StartsWith("Export starts here"));
    EXPECT_TRUE(item(1).state().focused);
    undo.undo();
    undo.undo();
    EXPECT_EQ(timeOfMarker(1), 20);

    QAccessibleInterface& gone = item(2);
    state.markers = std::vector<Marker>();
    EXPECT_FALSE(gone.isValid());
    gone.actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(gone.text(QAccessible::Name), QString());
    state.videoDuration = 0;
    EXPECT_EQ(group().childCount(), 0);
}

}
