#include "ui/editor/EditorFixture.h"

#include "render/OverlayPlacement.h"

namespace pointloom {

namespace {

class OverlayTest : public test::EditorFixture {
protected:
    // A 1920 pixels wide video shown 960 points wide: half a point to a pixel.
    void SetUp() override {
        MatchConfig config = test::tennisMatch();
        config.team1.player1 = QStringLiteral("Ada"); // short names: the canvas is 270 by 97
        config.team2.player1 = QStringLiteral("Bo");
        state.matchConfig = config;
        state.videoWidth = 1920;
        state.videoHeight = 1080;
        state.scoreboardPosition = QPointF(0.5, 0.5);
        overlay.resize(960, 540);
        overlay.setVideoRect(QRectF(0, 0, 960, 540));
        overlay.show();
        overlay.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&overlay));
    }

    QPointF position() const { return state.scoreboardPosition; }

    void drag(QPointF from, QSize by, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        beginDrag(from, by, modifiers);
        QTest::mouseRelease(&overlay, Qt::LeftButton, modifiers,
                            (from + QPointF(by.width(), by.height())).toPoint());
    }

    void beginDrag(QPointF from, QSize by, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mousePress(&overlay, Qt::LeftButton, modifiers, from.toPoint());
        const QPoint to = from.toPoint() + QPoint(by.width(), by.height());
        QMouseEvent move(QEvent::MouseMove, to, overlay.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                         modifiers);
        QApplication::sendEvent(&overlay, &move);
    }

    ScoreboardOverlayView overlay{context};
};

}

TEST_F(OverlayTest, TheDrawOriginIsTheCentreMinusHalfTheCanvasPlusTheMargin) {
    EXPECT_EQ(overlay.previewScale(), 0.5);
    const QSizeF canvas(270, 97);
    EXPECT_EQ(state.scoreboardDrawOrigin.value(),
              QPointF(480 - canvas.width() / 4 + 5, 270 - canvas.height() / 4 + 5));
    EXPECT_EQ(overlay.scoreboardRect().topLeft(), state.scoreboardDrawOrigin.value());
    state.videoWidth = 0;
    EXPECT_EQ(overlay.previewScale(), 0.5) << "540 of 1080 lines";
}

TEST_F(OverlayTest, ADragBeyondTheEdgeStopsAtThePictureAndIsStoredWithinIt) {
    beginDrag(overlay.scoreboardRect().center(), {3000, 0});
    EXPECT_EQ(overlay.displayPosition(), QPointF(960, 270));
    EXPECT_EQ(overlay.dragOffset(), QSizeF(3000, 0));
    EXPECT_EQ(position(), QPointF(0.5, 0.5)) << "nothing is stored while dragging";
    QTest::mouseRelease(&overlay, Qt::LeftButton, Qt::NoModifier, {900, 200});
    EXPECT_EQ(position(), QPointF(0.98, 0.5));
    EXPECT_EQ(overlay.dragOffset(), QSizeF(0, 0));
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveScoreboard);
    EXPECT_EQ(store.saves, 1);
    undo.undo();
    EXPECT_EQ(position(), QPointF(0.5, 0.5));
    undo.redo();
    EXPECT_EQ(position(), QPointF(0.98, 0.5));
}

TEST_F(OverlayTest, ResizingKeepsWithinItsLimitsAndIsOneStepOfUndo) {
    drag(overlay.handleRect().center(), {-1000, -1000});
    EXPECT_EQ(state.scoreboardUserScale.value(), 0.3);
    drag(overlay.handleRect().center(), {5000, 5000});
    EXPECT_EQ(state.scoreboardUserScale.value(), 5);
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoResizeScoreboard);
    undo.undo();
    EXPECT_EQ(state.scoreboardUserScale.value(), 0.3);
    undo.undo();
    EXPECT_EQ(state.scoreboardUserScale.value(), 1);
    EXPECT_FALSE(undo.canUndo().value());

    // The mean of both directions over the canvas's displayed width, 135 points.
    drag(overlay.handleRect().center(), {40, 14});
    EXPECT_DOUBLE_EQ(state.scoreboardUserScale, (135.0 + 27) / 135);
}

TEST_F(OverlayTest, ItsMenuResetsPlaceAndSizeAndLeadsToTheNames) {
    state.scoreboardUserScale = 2;
    const auto choose = [this](const char* title) {
        chooseAt(&overlay, overlay.scoreboardRect().center().toPoint(), QString::fromUtf8(title));
    };
    choose("Reset Size");
    EXPECT_EQ(state.scoreboardUserScale.value(), 1);
    choose("Reset Position");
    EXPECT_EQ(position(), QPointF(0.15, 0.1));
    undo.undo();
    EXPECT_EQ(position(), QPointF(0.5, 0.5));
    int asked = 0;
    QObject::connect(&overlay, &ScoreboardOverlayView::editNamesRequested, &overlay, [&] { ++asked; });
    choose("Edit Names…");
    EXPECT_EQ(asked, 1);
}

TEST_F(OverlayTest, EscapeTakesADragBack) {
    beginDrag(overlay.handleRect().center(), {100, 100});
    EXPECT_TRUE(overlay.isResizing());
    QTest::keyClick(&overlay, Qt::Key_Escape);
    EXPECT_EQ(state.scoreboardUserScale.value(), 1);
    EXPECT_FALSE(undo.canUndo().value());
}

TEST_F(OverlayTest, APressThatDoesNotMoveChangesNothing) {
    state.scoreboardPosition = QPointF(0.01, 0.01); // as a file may say
    QTest::mouseClick(&overlay, Qt::LeftButton, {}, overlay.scoreboardRect().center().toPoint());
    EXPECT_EQ(position(), QPointF(0.01, 0.01));
    EXPECT_FALSE(undo.canUndo().value());
}

TEST_F(OverlayTest, ArrowsNudgeAndAHeldKeyIsOneStep) {
    overlay.setFocus();
    QTest::keyClick(&overlay, Qt::Key_Right);
    QTest::keyClick(&overlay, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(position(), QPointF(0.5 + 1.0 / 960, 0.5 + 10.0 / 540));
    undo.undo();
    EXPECT_EQ(position(), QPointF(0.5 + 1.0 / 960, 0.5));

    QTest::keyPress(&overlay, Qt::Key_Left);
    for (int repeat = 0; repeat < 20; ++repeat) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier, {}, true);
        QApplication::sendEvent(&overlay, &held);
    }
    QTest::keyRelease(&overlay, Qt::Key_Left);
    EXPECT_NEAR(position().x(), 0.5 - 20.0 / 960, 1e-12);
    undo.undo();
    EXPECT_NEAR(position().x(), 0.5 + 1.0 / 960, 1e-12);
}

TEST_F(OverlayTest, ANudgeKeepsTheScaleOfADocument) {
    overlay.setFocus();
    for (const double scale : {0.2, 6.0}) {
        state.scoreboardUserScale = scale;
        QTest::keyClick(&overlay, Qt::Key_Right);
        EXPECT_EQ(state.scoreboardUserScale.value(), scale);
    }
    EXPECT_EQ(undo.undoActionName().value(), L10nKey::undoMoveScoreboard);
    QTest::keyClick(&overlay, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(state.scoreboardUserScale.value(), 5) << "resized, it comes within the limits";
}

TEST_F(OverlayTest, ItSnapsToTheCentreAndTheMarginWhileShiftIsHeld) {
    state.scoreboardPosition = QPointF(0.3, 0.3);
    const QSize nearCentre(static_cast<int>(0.2 * 960) + 3, 40); // three points past the middle
    drag(overlay.scoreboardRect().center(), nearCentre, Qt::ShiftModifier);
    EXPECT_NEAR(overlay.scoreboardRect().center().x(), 480, 1e-9);
    undo.undo();
    drag(overlay.scoreboardRect().center(), nearCentre);
    EXPECT_DOUBLE_EQ(position().x(), 0.3 + nearCentre.width() / 960.0);
    undo.undo();
    const double margin = 0.04 * 540;
    const auto toMargin = static_cast<int>(margin - overlay.scoreboardRect().top()) + 4;
    drag(overlay.scoreboardRect().center(), {0, toMargin}, Qt::ShiftModifier);
    EXPECT_NEAR(overlay.scoreboardRect().top(), margin, 1e-9);
}

}
