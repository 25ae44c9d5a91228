// The timeline under the mouse, and what the editor's keys do to it.
#include "ui/timeline/TimelineView.h"

#include "persistence/UserDefaults.h"
#include "support/Sessions.h"
#include "support/TestClips.h"
#include "ui/timeline/TimelineCanvas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>

namespace pointloom::test {

using testing::DoubleEq;
using testing::ElementsAre;

namespace {

constexpr double frameRate = 30; // of a clip that cannot be read
constexpr double duration = 100; // seconds

struct Timeline : testing::Test {
    Timeline() {
        state.videoDuration = duration;
        view.resize(1028, 300); // ten points a second
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    TimelineCanvas& canvas() { return view.canvas(); }
    const TimelineScene& scene() { return canvas().scene(); }
    QPoint onRuler(double time) { return at(time, scene().rows.ruler); }
    QPoint onTrim(double time) { return at(time, scene().rows.trim); }
    QPoint at(double time, const QRectF& row) {
        return QPointF(scene().scale.x(time), row.center().y()).toPoint();
    }
    QPoint onFlag(std::size_t index) {
        return (scene().boxOf(scene().flags.flags()[index]).topLeft() + QPointF(5, 8)).toPoint();
    }

    void press(QPoint place) { QTest::mousePress(&canvas(), Qt::LeftButton, {}, place); }
    void release(QPoint place) { QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, place); }
    void move(QPoint place, Qt::KeyboardModifiers modifiers = {}) {
        QMouseEvent event(QEvent::MouseMove, place, canvas().mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                          modifiers);
        QApplication::sendEvent(&canvas(), &event);
    }
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {}) {
        press(from);
        move((from + to) / 2, modifiers);
        move(to, modifiers);
        release(to);
    }
    // The player's part: the playhead goes where it is asked to.
    void follow() {
        QObject::connect(&view, &TimelineView::seekRequested,
                         [this](double seconds, bool) { state.currentTime = seconds; });
    }
    // Chooses an entry of the menu that opens next, or closes it when there is no such entry.
    void choose(const QString& beginning) {
        QTimer::singleShot(0, &view, [beginning] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (QAction* action : menu->actions()) {
                if (action->text().startsWith(beginning))
                    menu->setActiveAction(action);
            }
            QTest::keyClick(menu, menu->activeAction() ? Qt::Key_Return : Qt::Key_Escape);
        });
    }
    QMenu* openMenu(QPoint place, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse) {
        QContextMenuEvent event(reason, place, canvas().mapToGlobal(place));
        QApplication::sendEvent(&canvas(), &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static std::string entriesOf(const QMenu* menu) {
        QStringList entries;
        for (const QAction* action : menu ? menu->actions() : QList<QAction*>()) {
            if (!action->isSeparator())
                entries << (action->isEnabled() ? action->text() : QStringLiteral("-"));
        }
        return entries.join(u'|').replace(u'\t', u' ').toStdString();
    }
    static void run(QMenu* menu, int entry) {
        QAction* action = menu->actions().at(entry);
        menu->close();
        action->trigger();
    }
    void turnWheel(QPoint place, int notches, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(place, canvas().mapToGlobal(place), {}, {0, 120 * notches}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&canvas(), &event);
    }

    QTemporaryDir folder;
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;
    UserDefaults defaults{folder.filePath(QStringLiteral("Pointloom.ini"))};
    DesktopDialogs dialogs{state, defaults};
    CommandKeys keys;
    TimelineView view{UiContext{state, undo, defaults, dialogs, keys}, nullptr,
                      folder.filePath(QStringLiteral("cache"))};
};

}

TEST_F(Timeline, AClickSeeksAndADragScrubsToFrames) {
    QSignalSpy seeks(&view, &TimelineView::seekRequested);
    QSignalSpy scrubbing(&view, &TimelineView::scrubbingChanged);
    press(onRuler(20));
    move(onRuler(30));
    move(onRuler(40));
    EXPECT_EQ(scrubbing.count(), 1);
    release(onRuler(40));
    ASSERT_EQ(seeks.count(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(seeks[i][1].toBool(), i == 3) << "exact at the end alone";
    const double last = seeks[3][0].toDouble();
    EXPECT_NEAR(last, 40, 0.1);
    EXPECT_NEAR(last * frameRate, std::round(last * frameRate), 1e-6);
    EXPECT_FALSE(scrubbing.last()[0].toBool());

    press(onRuler(50));
    move(QPoint(5000, 5));
    QTest::keyClick(&canvas(), Qt::Key_Escape);
    EXPECT_EQ(seeks.last()[0].toDouble(), state.currentTime.value()) << "escape goes back to the playhead";
    EXPECT_LT(seeks[seeks.count() - 2][0].toDouble(), duration);
}

TEST_F(Timeline, AClickedMarkerIsSelectedAndSought) {
    state.markers = std::vector{markerAt(10), markerAt(50)};
    QSignalSpy seeks(&view, &TimelineView::seekRequested);
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, onFlag(1));
    EXPECT_EQ(state.selectedMarkerID.value(), state.markers.value()[1].id);
    ASSERT_EQ(seeks.count(), 1);
    EXPECT_EQ(seeks[0][0].toDouble(), 50);
    EXPECT_EQ(store.saves, 0) << "looking is no edit";
}

TEST_F(Timeline, AMarkerBehindTheFlagOfAnotherIsReachedByItsTick) {
    view.resize(1028, 140);
    state.markers = std::vector{markerAt(10), markerAt(12)};
    ASSERT_EQ(scene().rows.flagLanes, 1);
    const QPoint place = at(12, scene().rows.flags);
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, place);
    EXPECT_EQ(state.selectedMarkerID.value(), state.markers.value()[0].id);
    state.selectedMarkerID = std::nullopt;
    QTest::mouseClick(&canvas(), Qt::LeftButton, {},
                      QPoint(place.x(), static_cast<int>(scene().rows.flags.bottom()) - 2));
    EXPECT_EQ(state.selectedMarkerID.value(), state.markers.value()[1].id);
}

TEST_F(Timeline, ADraggedMarkerSnapsToFramesAndIsOneStep) {
    state.markers = std::vector{markerAt(10), markerAt(50)};
    const QPoint grip = onFlag(1);
    press(grip);
    move(grip + QPoint(100, 0));
    move(grip + QPoint(203, 0));
    EXPECT_THAT(timesOf(state), ElementsAre(10, 50)) << "nothing is edited while dragging";
    release(grip + QPoint(203, 0));
    const double moved = timesOf(state)[1];
    EXPECT_NEAR(moved, 70.3, 0.02);
    EXPECT_NEAR(moved * frameRate, std::round(moved * frameRate), 1e-6);
    EXPECT_EQ(store.saves, 1);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveMarker);
    undo.undo();
    EXPECT_THAT(timesOf(state), ElementsAre(10, 50));
}

TEST_F(Timeline, ADraggedMarkerHoldsOnToPlayheadAndMarkersUnlessAltIsDown) {
    state.markers = std::vector{markerAt(10), markerAt(50)};
    state.currentTime = 70.017;
    drag(onFlag(1), onFlag(1) + QPoint(204, 0));
    EXPECT_EQ(timesOf(state)[1], 70.017);
    undo.undo();
    drag(onFlag(1), onFlag(1) + QPoint(-395, 0));
    EXPECT_THAT(timesOf(state), ElementsAre(10, DoubleEq(10 + 1 / frameRate))) << "both can be seen";
    undo.undo();
    drag(onFlag(1), onFlag(1) + QPoint(-395, 0), Qt::AltModifier);
    EXPECT_NEAR(timesOf(state)[1], 10.5, 1e-6);
}

TEST_F(Timeline, TheFilmFollowsWhatIsDragged) {
    follow();
    state.markers = std::vector{markerAt(50)};
    state.cuts = std::vector{CutZone{QUuid::createUuid(), 60, 70}};
    state.currentTime = 20;
    QSignalSpy seeks(&view, &TimelineView::seekRequested);
    QSignalSpy scrubbing(&view, &TimelineView::scrubbingChanged);
    const QPoint grip = onFlag(0);
    press(grip);
    move(grip + QPoint(30, 0));
    EXPECT_NEAR(state.currentTime, 53, 0.02);
    EXPECT_FALSE(seeks.last()[1].toBool()) << "a long way is shown by key frames";
    move(grip + QPoint(32, 0));
    EXPECT_NEAR(state.currentTime, 53.2, 0.02);
    EXPECT_TRUE(seeks.last()[1].toBool()) << "a short one frame by frame";
    move(grip + QPoint(62, 0));
    EXPECT_TRUE(QTest::qWaitFor([&] { return seeks.last()[1].toBool(); })) << "a rest shows the frame";
    EXPECT_NEAR(state.currentTime, 56.2, 0.02);
    EXPECT_EQ(scrubbing.count(), 1);
    QTest::keyClick(&canvas(), Qt::Key_Escape);
    EXPECT_EQ(state.currentTime, 20) << "as before";
    EXPECT_FALSE(scrubbing.last()[0].toBool());

    drag(onFlag(0), onFlag(0) + QPoint(33, 0));
    EXPECT_EQ(state.currentTime, timesOf(state)[0]);
    EXPECT_TRUE(seeks.last()[1].toBool());
    drag(scene().trimStartHandle().center().toPoint(), onTrim(30));
    EXPECT_EQ(state.currentTime, state.trimStart);
    EXPECT_GT(state.trimStart, 28);
    drag(onTrim(70) - QPoint(1, 0), onTrim(80));
    EXPECT_EQ(state.currentTime, state.cuts.value()[0].end);
    EXPECT_GT(state.currentTime, 78);
}

TEST_F(Timeline, AMarkerDroppedOnAnotherAsksWhichToKeep) {
    state.markers = std::vector{markerAt(10), markerAt(50)};
    const QUuid first = state.markers.value()[0].id;
    const QUuid second = state.markers.value()[1].id;
    const auto dropOnFirst = [&](const char* answer) {
        choose(QLatin1String(answer));
        drag(onFlag(1), onFlag(1) + QPoint(-400, 0));
    };
    dropOnFirst("no such entry");
    EXPECT_THAT(timesOf(state), ElementsAre(10, 50)) << "closed without an answer";
    EXPECT_FALSE(undo.canUndo().value());
    dropOnFirst("Keep both");
    EXPECT_THAT(timesOf(state), ElementsAre(10, DoubleEq(10 + 1 / frameRate)));
    undo.undo();
    dropOnFirst("Keep the one moved");
    EXPECT_THAT(timesOf(state), ElementsAre(10));
    EXPECT_EQ(state.markers.value()[0].id, second);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveMarker);
    undo.undo();
    EXPECT_THAT(timesOf(state), ElementsAre(10, 50)) << "one step";
    dropOnFirst("Keep the one that was");
    EXPECT_THAT(timesOf(state), ElementsAre(10));
    EXPECT_EQ(state.markers.value()[0].id, first);
    EXPECT_EQ(state.selectedMarkerID.value(), first);
}

TEST_F(Timeline, EscapeLeavesADraggedMarkerWhereItWas) {
    state.markers = std::vector{markerAt(50)};
    const QPoint grip = onFlag(0);
    press(grip);
    move(grip + QPoint(100, 0));
    QTest::keyClick(&canvas(), Qt::Key_Escape);
    move(grip + QPoint(150, 0));
    release(grip + QPoint(150, 0));
    EXPECT_THAT(timesOf(state), ElementsAre(50));
    EXPECT_FALSE(undo.canUndo().value());
}

TEST_F(Timeline, TrimsAreDraggedAndNeverCross) {
    drag(scene().trimStartHandle().center().toPoint(), onTrim(20));
    EXPECT_NEAR(state.trimStart, 20, 0.6);
    const double start = state.trimStart;
    drag(scene().trimEndHandle().center().toPoint(), onTrim(5));
    EXPECT_NEAR(*state.trimEnd.value(), start + 1 / frameRate, 1e-6) << "one frame is left";
    drag(scene().trimStartHandle().center().toPoint(), onTrim(90));
    EXPECT_NEAR(state.trimStart, *state.trimEnd.value() - 1 / frameRate, 1e-6);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoSetTrim);
    drag(scene().trimEndHandle().center().toPoint(), QPoint(2000, onTrim(0).y()));
    EXPECT_FALSE(state.trimEnd.value()) << "at the clip's end there is no trim";
    QTest::mouseDClick(&canvas(), Qt::LeftButton, {}, scene().trimStartHandle().center().toPoint());
    EXPECT_EQ(state.trimStart, 0);
    undo.undo();
    EXPECT_GT(state.trimStart, 0);
}

TEST_F(Timeline, TrimsAtThePlayhead) {
    state.currentTime = 30;
    view.trimStartAtPlayhead();
    state.currentTime = 60;
    view.trimEndAtPlayhead();
    EXPECT_EQ(state.trim(), (TrimTimes{30, 60}));
    state.currentTime = 80;
    view.trimStartAtPlayhead();
    EXPECT_EQ(state.trim(), (TrimTimes{80, std::nullopt})) << "an end that lies before gives way";
    undo.undo();
    undo.undo();
    undo.undo();
    EXPECT_EQ(state.trim(), TrimTimes{});
}

TEST_F(Timeline, CutsAreDrawnMovedResizedAndRemoved) {
    drag(onTrim(20), onTrim(30));
    ASSERT_EQ(state.cuts.value().size(), 1U);
    const auto cut = [&] { return state.cuts.value().front(); };
    EXPECT_NEAR(cut().start, 20, 0.1);
    EXPECT_NEAR(cut().end, 30, 0.1);
    EXPECT_EQ(state.selectedCutID.value(), cut().id);
    const double length = cut().end - cut().start;

    drag(onTrim(25), onTrim(65));
    EXPECT_NEAR(cut().start, 60, 0.2);
    EXPECT_NEAR(cut().end - cut().start, length, 1e-9);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveCut);
    drag(onTrim(cut().end) - QPoint(1, 0), onTrim(80));
    EXPECT_NEAR(cut().end, 80, 0.2);
    drag(onTrim(cut().end) - QPoint(1, 0), onTrim(5));
    EXPECT_NEAR(cut().end - cut().start, 1 / frameRate, 1e-6) << "an edge stops before the other";

    view.removeSelection();
    EXPECT_TRUE(state.cuts.value().empty());
    for (int i = 0; i < 4; ++i)
        undo.undo();
    EXPECT_NEAR(cut().start, 20, 0.1);
    undo.undo();
    EXPECT_TRUE(state.cuts.value().empty());
    EXPECT_EQ(store.saves, 10);
}

TEST_F(Timeline, WhatGoesIsDimmedAndFollowsADrag) {
    // Lightness of the film's row, away from the flags' poles.
    const auto lightness = [&](double time) {
        const QPoint place = at(time, scene().rows.clip());
        return qGray(canvas().grab().toImage().pixel(place));
    };
    state.markers = std::vector{markerAt(30), markerAt(60)};
    EXPECT_EQ(lightness(25), lightness(45));
    state.parts = PartChoice{.onlyRallies = true, .rallies = {}};
    EXPECT_NE(lightness(25), lightness(45));
    EXPECT_EQ(lightness(25), lightness(55));
    EXPECT_EQ(lightness(45), lightness(70));

    press(onFlag(0));
    move(onFlag(0) + QPoint(100, 0));
    move(onFlag(0) + QPoint(130, 0));
    EXPECT_EQ(lightness(25), lightness(70)) << "dragged away";
    EXPECT_EQ(lightness(38), lightness(55)) << "to around 43";
    release(onFlag(0) + QPoint(130, 0));

    state.parts = PartChoice{.rallies = {}, .withoutCuts = true};
    state.currentTime = 80;
    view.cutAtPlayhead();
    state.currentTime = 85;
    view.cutAtPlayhead();
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("left out"))) << qPrintable(QToolTip::text());
}

TEST_F(Timeline, TheChoiceOfPartsOpensFromItsButton) {
    state.markers = std::vector{markerAt(50)};
    auto* button = view.findChild<QToolButton*>(QStringLiteral("parts"));
    QTest::mouseClick(button, Qt::LeftButton);
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    EXPECT_FALSE(button->isChecked()) << "looking is not choosing";
    QTest::keyClick(popup->findChild<QCheckBox*>(QStringLiteral("onlyRallies")), Qt::Key_Space);
    EXPECT_TRUE(button->isChecked());
    popup->findChild<QDoubleSpinBox*>(QStringLiteral("secondsAfter"))->setValue(5);
    EXPECT_EQ(state.parts.value(), (PartChoice{.onlyRallies = true, .rallies = {10, 5}}));
    const auto* length = popup->findChild<QLabel*>(QStringLiteral("keptLength"));
    EXPECT_EQ(length->text(), QStringLiteral("0:15 of 1:40"));
    EXPECT_GT(store.saves, 0);
    state.markers = std::vector<Marker>{};
    EXPECT_EQ(length->text(), QStringLiteral("Nothing stays: no marker in the range"));
    popup->close();
}

TEST_F(Timeline, EveryPressOfTheScissorsIsAnswered) {
    state.currentTime = 20;
    view.cutAtPlayhead();
    const CutZone begun = state.cuts.value().at(0);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("press C"))) << qPrintable(QToolTip::text());
    state.selectedCutID = std::nullopt;
    QToolTip::hideText();
    view.cutAtPlayhead();
    EXPECT_THAT(state.cuts.value(), ElementsAre(begun)) << "nothing lies hidden under it";
    EXPECT_EQ(state.selectedCutID.value(), begun.id);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("press C"))) << qPrintable(QToolTip::text());
    state.currentTime = 26;
    view.cutAtPlayhead();
    EXPECT_THAT(state.cuts.value(), ElementsAre(CutZone{begun.id, 20, 26}));
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("stays in the exported video")));
    undo.undo();
    EXPECT_THAT(state.cuts.value(), ElementsAre(begun));
}

TEST_F(Timeline, MenusOfferWhatCanBeDoneWithTheThingUnderThePointer) {
    follow();
    state.markers = std::vector{markerAt(50)};
    state.currentTime = 20;
    QMenu* menu = openMenu(onFlag(0));
    EXPECT_EQ(entriesOf(menu), "Move to the Playhead|Swap Serve S|Rename Marker F2|Remove Delete");
    EXPECT_EQ(state.currentTime, 20);
    run(menu, 0);
    EXPECT_THAT(timesOf(state), ElementsAre(20));
    menu = openMenu({}, QContextMenuEvent::Keyboard);
    EXPECT_EQ(entriesOf(menu), "-|Swap Serve S|Rename Marker F2|Remove Delete") << "for what is selected";
    menu->close();

    state.cuts = std::vector{CutZone{QUuid::createUuid(), 60, 70}};
    menu = openMenu(onTrim(65));
    EXPECT_EQ(entriesOf(menu), "-|Remove Delete") << "the playhead is not in it";
    menu->close();
    state.trimStart = 5;
    menu = openMenu(scene().trimStartHandle().center().toPoint());
    EXPECT_EQ(entriesOf(menu), "Start Here I|Export from the Start of the Clip");
    run(menu, 1);
    EXPECT_EQ(state.trimStart, 0);
    EXPECT_EQ(entriesOf(openMenu(scene().trimEndHandle().center().toPoint())), "End Here O|-");
    QApplication::activePopupWidget()->close();

    QSignalSpy commands(&view, &TimelineView::commandRequested);
    menu = openMenu(onRuler(80));
    EXPECT_EQ(entriesOf(menu), "Add Marker M|Start Here I|End Here O|Mark a Cut C|Zoom In Ctrl++|-|-");
    EXPECT_NEAR(state.currentTime, 80, 0.1) << "the place that was clicked";
    run(menu, 0);
    ASSERT_EQ(commands.count(), 1);
    EXPECT_EQ(commands[0][0].value<Command>(), Command::addMarker);
}

TEST_F(Timeline, DeleteRemovesTheOneThingThatIsSelected) {
    state.markers = std::vector{markerAt(50)};
    state.currentTime = 20;
    view.cutAtPlayhead();
    ASSERT_EQ(state.cuts.value().size(), 1U);
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, onFlag(0));
    EXPECT_FALSE(state.selectedCutID.value());
    view.removeSelection();
    EXPECT_TRUE(state.markers.value().empty());
    EXPECT_EQ(state.cuts.value().size(), 1U);
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, onTrim(25));
    view.removeSelection();
    EXPECT_TRUE(state.cuts.value().empty());
}

TEST_F(Timeline, TheWheelScrollsAndWithCtrlZoomsAroundThePointer) {
    const QPoint place = onRuler(70);
    const double time = scene().scale.time(place.x());
    turnWheel(place, 8, Qt::ControlModifier);
    EXPECT_NEAR(scene().scale.x(time), place.x(), 1);
    EXPECT_GT(scene().scale.pointsPerSecond(), 30);
    const double offset = scene().scale.offset();
    turnWheel(place, -1, {});
    EXPECT_GT(scene().scale.offset(), offset);
    view.zoomToFit();
    EXPECT_TRUE(scene().scale.isFitted());
}

TEST_F(Timeline, TheViewFollowsThePlayheadButNotAgainstTheUser) {
    turnWheel(onRuler(10), 10, Qt::ControlModifier);
    canvas().scrollTo(0);
    state.isPlaying = true;
    double time = 0;
    while (time < 60) {
        state.currentTime = time += 0.2;
        ASSERT_TRUE(scene().scale.shows(time)) << time;
    }
    canvas().scrollTo(0);
    state.currentTime = time += 0.2;
    EXPECT_EQ(scene().scale.offset(), 0) << "scrolled away on purpose";
    state.isPlaying = false;
    state.currentTime = 90;
    EXPECT_TRUE(scene().scale.shows(90)) << "put there";
}

TEST_F(Timeline, UndoDuringADragIsNoTrap) {
    state.markers = std::vector{markerAt(50)};
    const QPoint grip = onFlag(0);
    press(grip);
    move(grip + QPoint(100, 0));
    state.removeMarker(state.markers.value().front().id, &undo);
    move(grip + QPoint(150, 0));
    canvas().grab();
    release(grip + QPoint(150, 0));
    EXPECT_TRUE(state.markers.value().empty());
}

TEST_F(Timeline, StrangeTimesAreShownWithoutHarm) {
    Marker never = markerAt(3);
    never.startTime = std::numeric_limits<double>::quiet_NaN();
    Marker beyond = markerAt(1e300);
    Marker before = markerAt(-40);
    state.markers = std::vector{before, markerAt(10), beyond, never};
    state.cuts = std::vector{CutZone{QUuid::createUuid(), 50, 40}, CutZone{QUuid::createUuid(), -1e12, 1e12}};
    state.trimStart = 500;
    state.trimEnd = -3;
    canvas().grab();
    turnWheel(onRuler(10), 30, Qt::ControlModifier);
    canvas().grab();
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, onTrim(45));
    state.videoDuration = 0;
    canvas().grab();
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, QPoint(100, 5));
}

TEST_F(Timeline, KeysGoFromOneRallysEndToTheNext) {
    using Direction = TimelineView::Direction;
    const ClipFolder clips;
    follow();
    view.goToRallyEnd(Direction::forward);
    EXPECT_EQ(state.currentTime.value(), 0);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("No end of a rally is heard there"));

    state.videoURL = QUrl::fromLocalFile(
        clips.make(QStringLiteral("a.m4a"),
                    "-f lavfi -i aevalsrc=(0.004+0.6*between(t\\,4\\,4.01)+0.6*between(t\\,5\\,5.01)"
                    "+0.6*between(t\\,20\\,20.01))*(random(0)-0.5):d=30:s=44100 -c:a aac"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return canvas().sound().rallyEnds().size() == 2; }, 120'000));
    view.goToRallyEnd(Direction::forward);
    EXPECT_NEAR(state.currentTime, 5, 0.04);
    state.currentTime = state.currentTime - 0.04; // as of a frame beside it
    view.goToRallyEnd(Direction::forward);
    EXPECT_NEAR(state.currentTime, 20, 0.04);
    view.goToRallyEnd(Direction::back);
    EXPECT_NEAR(state.currentTime, 5, 0.04);
    view.goToRallyEnd(Direction::back);
    EXPECT_NEAR(state.currentTime, 5, 0.04) << "there is none before";
}

}
