#include "ui/editor/EditorFixture.h"

#include "ui/common/MarkerText.h"
#include "ui/editor/ValueStepper.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>

namespace pointloom {

namespace {

class SidebarTest : public test::EditorFixture {
protected:
    void openMatch(SportID sport, std::int64_t sets) {
        MatchConfig config = test::tennisMatch();
        config.sport = sport;
        config.numberOfSets = sets;
        state.matchConfig = config;
        openEditor();
        press(Qt::Key_M);
        QTest::qWait(1); // for the layout
    }

    // What Tab comes to from `from` on, by name, until the names end.
    std::string tabOrder(const char* from, int count) {
        find<QWidget>(from)->setFocus();
        QStringList names;
        for (int i = 0; i < count; ++i) {
            names << QApplication::focusWidget()->objectName();
            press(Qt::Key_Tab);
        }
        return names.join(u' ').toStdString();
    }

    void type(const char* field, std::initializer_list<Qt::Key> keys) {
        find<ValueStepper>(field)->setFocus();
        for (const Qt::Key key : keys)
            press(key);
    }
};

}

TEST_F(SidebarTest, ATennisScoreIsEnteredByTabAndDigitsAlone) {
    openMatch(SportID::tennis, 3);
    EXPECT_EQ(tabOrder("markerLabel", 10),
              "markerLabel game1 game2 serve1 serve2 set1team1 set1team2 tiebreak1 set2team1 set2team2");
    type("game1", {Qt::Key_4});
    type("game2", {Qt::Key_A});
    find<QWidget>("serve2")->setFocus();
    press(Qt::Key_Space);
    type("set1team1", {Qt::Key_6});
    type("set1team2", {Qt::Key_7});
    type("tiebreak1", {Qt::Key_1, Qt::Key_2});
    type("set2team1", {Qt::Key_Up, Qt::Key_Up, Qt::Key_Down});
    const ScoreState expected{
        {{6, 7, 12}, {1, 0, {}}, {0, 0, {}}}, {GamePoint::forty, GamePoint::advantage}, 2};
    EXPECT_EQ(marker(0).score, SportScoreState(expected));
    EXPECT_EQ(state.markers.value().size(), 1U) << "digits in a field make no markers";

    type("tiebreak1", {Qt::Key_Backspace});
    EXPECT_EQ(setsOf(marker(0).score)[0].tiebreak, std::nullopt);
    undo.undo();
    EXPECT_EQ(setsOf(marker(0).score)[0].tiebreak, 12);
    EXPECT_EQ(find<ValueStepper>("tiebreak1")->text(), QStringLiteral("12"));
    EXPECT_EQ(undo.redoActionName().value(), L10nKey::undoEditScore);
}

TEST_F(SidebarTest, ARallyScoreIsEnteredByTabAndDigitsAlone) {
    openMatch(SportID::volleyball, 3);
    EXPECT_EQ(tabOrder("game1", 7), "game1 game2 serve1 serve2 set1team1 set1team2 set2team1");
    type("game1", {Qt::Key_2, Qt::Key_4});
    type("game2", {Qt::Key_9, Qt::Key_Up});
    type("set1team1", {Qt::Key_2, Qt::Key_5});
    const PointScoreState expected{{{25, 0, {}}, {}, {}}, {24, 10}, 1};
    EXPECT_EQ(marker(0).score, SportScoreState(expected));
}

TEST_F(SidebarTest, ANamePressedOnTheScoreboardIsAskedFor) {
    state.selectedTemplate = TemplateID::wimbledon;
    openMatch(SportID::tennis, 3);
    QSignalSpy names(editor.get(), &EditorView::nameRequested);
    auto* board = editor->findChild<ScoreboardView*>();
    const auto pressAt = [&](double x, double y) {
        QTest::mouseClick(board, Qt::LeftButton, {},
                          QPointF(board->width() * x, board->height() * y).toPoint());
        return names.isEmpty() ? std::optional<Side>() : names.takeLast().front().value<Side>();
    };
    EXPECT_EQ(pressAt(0.3, 0.35), Side::first);
    EXPECT_EQ(pressAt(0.3, 0.65), Side::second);
    state.selectedTemplate = TemplateID::stacked; // names side by side
    QTest::qWait(1);
    EXPECT_EQ(pressAt(0.35, 0.3), Side::first);
    EXPECT_EQ(pressAt(0.65, 0.3), Side::second);
}

TEST_F(SidebarTest, ButtonsOfAStepperCount) {
    openMatch(SportID::volleyball, 3);
    auto* stepper = find<ValueStepper>("game1");
    const QPoint more(stepper->width() - 5, stepper->height() / 2);
    QTest::mouseClick(stepper, Qt::LeftButton, {}, more);
    QTest::mouseClick(stepper, Qt::LeftButton, {}, more);
    QTest::mouseClick(stepper, Qt::LeftButton, {}, QPoint(5, stepper->height() / 2));
    EXPECT_EQ(std::get<PointScoreState>(marker(0).score).currentGame.team1, 1);
}

TEST_F(SidebarTest, TheInitialScoreIsSetAndClearedUndoably) {
    openMatch(SportID::tennis, 1);
    find<QToolButton>("editInitialScore")->click();
    EXPECT_EQ(state.selectedMarkerID.value(), std::nullopt);
    type("set1team1", {Qt::Key_3});
    EXPECT_EQ(state.initialScore.value(), SportScoreState(ScoreState{{{3, 0, {}}}, {}, 1}));
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoEditInitialScore);
    EXPECT_EQ(setsOf(marker(0).score)[0], SetScore()) << "the marker stays as it was";
    EXPECT_TRUE(editor->sidebar().count().isVisible()) << "and the user is asked";
    undo.undo();
    EXPECT_EQ(state.initialScore.value(), std::nullopt);
    EXPECT_FALSE(editor->sidebar().count().isVisible());
}

TEST_F(SidebarTest, ALabelIsEditedInPlace) {
    openMatch(SportID::tennis, 1);
    MarkerListView& list = editor->sidebar().markers();
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_F2);
    auto* field = list.viewport()->findChild<QLineEdit*>();
    ASSERT_NE(field, nullptr);
    QTest::keyClicks(field, QStringLiteral("Match point"));
    QTest::keyClick(field, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(marker(0).label, QStringLiteral("Match point"));
    undo.undo();
    EXPECT_EQ(marker(0).label, std::nullopt);
}

TEST_F(SidebarTest, TheListFollowsTheSessionAndJumps) {
    state.markers = std::vector<Marker>{test::markerAt(1), test::markerAt(2), test::markerAt(3)};
    state.videoDuration = 10;
    openEditor();
    MarkerListView& list = editor->sidebar().markers();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(1, 0)).center());
    EXPECT_EQ(state.selectedMarkerID.value(), marker(1).id);
    EXPECT_EQ(state.currentTime.value(), 2);
    list.setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(state.currentTime.value(), 3);

    // Moved past another, it stays selected.
    state.updateMarkerTime(marker(2).id, 0.5, &undo);
    QCoreApplication::processEvents();
    EXPECT_EQ(list.currentIndex().row(), 0);
    EXPECT_EQ(list.selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(state.currentTime.value(), 3) << "only a choice jumps";
    press(Qt::Key_Delete);
    QCoreApplication::processEvents();
    EXPECT_EQ(list.model()->rowCount(), 2);
    EXPECT_EQ(state.selectedMarkerID.value(), std::nullopt);
    EXPECT_EQ(state.currentTime.value(), 3);
}

TEST_F(SidebarTest, TheMenuOfARowConcernsThatRow) {
    state.markers = std::vector<Marker>{test::markerAt(1), test::markerAt(2), test::markerAt(3)};
    state.videoDuration = 10;
    openEditor();
    MarkerListView& list = editor->sidebar().markers();
    const auto row = [&](int index) { return list.visualRect(list.model()->index(index, 0)).center(); };
    chooseAt(list.viewport(), row(1), QStringLiteral("Swap Serve"));
    EXPECT_EQ(servingSide(marker(1).score), Side::second);
    EXPECT_EQ(state.currentTime.value(), 2) << "the picture shows what the menu is about";
    chooseAt(list.viewport(), row(2), QStringLiteral("Remove"));
    ASSERT_EQ(state.markers.value().size(), 2U);
    EXPECT_EQ(marker(1).startTime, 2);
    state.currentTime = 7;
    chooseAt(list.viewport(), list.viewport()->rect().bottomRight() - QPoint(5, 5),
             QStringLiteral("Add Marker"));
    EXPECT_EQ(marker(2).startTime, 7);
}

TEST_F(SidebarTest, TheServersDotsAreInTwoColumns) {
    using enum GamePoint;
    const std::pair<GameScore, int> rows[] = {
        {{zero, zero}, 1}, {{advantage, forty}, 1}, {{zero, fifteen}, 2}, {{forty, advantage}, 2}};
    std::vector<Marker> markers;
    for (const auto& [game, server] : rows) {
        markers.push_back(test::markerAt(static_cast<double>(markers.size()) + 11.11));
        markers.back().score = ScoreState{{{}, {}, {}}, game, server};
    }
    state.markers = markers;
    openEditor({1000, 900});
    MarkerListView& list = editor->sidebar().markers();
    const QImage picture = list.viewport()->grab().toImage();
    const auto dot = [&](int row) {
        const QRect place = list.visualRect(list.model()->index(row, 0));
        for (int x = 12; x < picture.width(); ++x) {
            if (picture.pixelColor(x, place.center().y() + 1) == tokens().accent)
                return x;
        }
        return -1;
    };
    ASSERT_GT(dot(0), 0);
    EXPECT_EQ(dot(0), dot(1));
    EXPECT_GT(dot(2), dot(0));
    EXPECT_EQ(dot(2), dot(3));
}

TEST_F(SidebarTest, ToolTipsTellTheWholeScoreInPlainText) {
    Marker marker = test::markerAt(65.2);
    marker.label = QStringLiteral("<b>Break</b>");
    marker.score = ScoreState{{{6, 7, 5}, {2, 1, {}}, {}}, {GamePoint::forty, GamePoint::fifteen}, 2};
    const QString tip = markerAsToolTip(context, marker);
    for (const char* part : {"1:05.20", "&lt;b&gt;Break", "6(5)–7  2–1<", "40–15", "Solvane"})
        EXPECT_TRUE(tip.contains(QString::fromUtf8(part))) << part << " in " << tip.toStdString();
}

TEST_F(SidebarTest, MarkersComeFromAFileInOneStepOrASentenceSaysWhyNot) {
    openMatch(SportID::tennis, 3);
    MessageBar& message = editor->sidebar().messages();
    dialogs.fileToOpen = folder.write(QStringLiteral("empty.csv"), "startTime,label\n");
    find<QToolButton>("importMarkers")->click();
    EXPECT_EQ(message.message(), QStringLiteral("No valid markers found in CSV."));
    EXPECT_TRUE(message.isVisible());
    dialogs.fileToOpen = folder.path(QStringLiteral("gone.csv"));
    find<QToolButton>("importMarkers")->click();
    EXPECT_TRUE(message.message().startsWith(QStringLiteral("Could not read file: ")))
        << message.message().toStdString();
    EXPECT_EQ(state.markers.value().size(), 1U);

    dialogs.fileToOpen = folder.write(QStringLiteral("match.csv"), "30,Break,2,0,0,2,1\n0,,1,15,0,0,0\n");
    find<QToolButton>("importMarkers")->click();
    EXPECT_FALSE(message.isVisible());
    ASSERT_EQ(state.markers.value().size(), 2U);
    EXPECT_EQ(state.selectedMarkerID.value(), marker(0).id);
    undo.undo();
    EXPECT_EQ(state.markers.value().size(), 1U);
}

TEST_F(SidebarTest, ImportedPointsCanBeMovedToThePlayheadAndNamesBeTaken) {
    openMatch(SportID::volleyball, 3);
    MessageBar& message = editor->sidebar().messages();
    dialogs.fileToOpen =
        folder.write(QStringLiteral("match.dvw"), "[3DATAVOLLEYSCOUT]\n[3TEAMS]\nB;Bled;\nN;Nord;\n[3SCOUT]\n"
                                                  "*p01:00;;;;;;;;1;;;1;50;\nap01:01;;;;;;;;1;;;1;70;\n");
    find<QToolButton>("importMarkers")->click();
    EXPECT_EQ(message.message(), QStringLiteral("Markers imported: 2"));
    state.currentTime = 1.5;
    Q_EMIT message.firstActionChosen();
    EXPECT_EQ(marker(0).startTime, 1.5);
    EXPECT_EQ(marker(1).startTime, 21.5);
    Q_EMIT message.secondActionChosen();
    EXPECT_EQ(state.matchConfig.value()->team2.player1, QStringLiteral("Nord"));
    EXPECT_TRUE(message.isVisible());
    undo.undo();
    EXPECT_TRUE(message.isVisible());
    undo.undo();
    EXPECT_FALSE(message.isVisible()) << "the imported markers are gone";
}

}
