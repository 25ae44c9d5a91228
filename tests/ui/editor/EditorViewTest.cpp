#include "ui/editor/EditorFixture.h"
#include "ui/timeline/TimelineCanvas.h"

#include <QApplication>
#include <QMenu>

namespace pointloom {

namespace {

class EditorViewTest : public test::EditorFixture {
protected:
    QSplitter& splitter(Qt::Orientation orientation) {
        for (auto* splitter : editor->findChildren<QSplitter*>()) {
            if (splitter->orientation() == orientation)
                return *splitter;
        }
        throw std::runtime_error("there is no such splitter");
    }

    void drag(QSplitter& splitter, QPoint way) {
        QWidget* handle = splitter.handle(1);
        const QPoint from = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, from);
        QTest::mouseMove(handle, from + way);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, from + way);
    }

    int sidebarWidth() const { return editor->sidebar().width(); }
    int timelineHeight() const { return editor->timeline().height(); }
};

}

TEST_F(EditorViewTest, ProportionsChosenByHandHoldAtTheNextStart) {
    openEditor({1400, 900});
    const int usualSidebar = sidebarWidth();
    drag(splitter(Qt::Horizontal), {-150, 0});
    drag(splitter(Qt::Vertical), {0, -60});
    const QSize chosen(sidebarWidth(), timelineHeight());
    ASSERT_GT(chosen.width(), usualSidebar + 100);
    editor->close();

    openEditor({1400, 900});
    EXPECT_EQ(QSize(sidebarWidth(), timelineHeight()), chosen);
}

TEST_F(EditorViewTest, AChoiceFromALargeScreenLeavesThePictureHalfOfASmallOne) {
    defaults.setData("sidebarWidth", "1500");
    defaults.setData("timelineHeight", "1100");
    openEditor({1024, 600});
    EXPECT_LE(sidebarWidth(), 512);
    EXPECT_LE(timelineHeight(), 300);
    editor->close();
    EXPECT_EQ(defaults.data("sidebarWidth"), "1500") << "the large screen may come back";
}

TEST_F(EditorViewTest, WhatIsNoLengthIsNotTaken) {
    openEditor({1000, 700});
    const QSize usual(sidebarWidth(), timelineHeight());
    editor->close();
    for (const char* stored : {"", "-20", "wide", "99999999999999"}) {
        defaults.setData("sidebarWidth", stored);
        defaults.setData("timelineHeight", stored);
        openEditor({1000, 700});
        EXPECT_EQ(QSize(sidebarWidth(), timelineHeight()), usual) << stored;
        editor->close();
    }
}

TEST_F(EditorViewTest, TheTimelineHasItsHeightWhenTheWindowWasResizedOnAnotherScreen) {
    openEditor({1600, 900});
    editor->hide();
    editor->resize(1300, 780);
    editor->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(editor.get()));
    const int height = timelineHeight();
    editor->resize(1310, 780);
    editor->resize(1300, 780);
    EXPECT_EQ(height, timelineHeight());
}

TEST_F(EditorViewTest, AKeyOpensTheMenuOfTheSelectedMarker) {
    state.videoDuration = 10;
    state.markers = std::vector{test::markerAt(2)};
    openEditor();
    state.selectedMarkerID = marker(0).id;
    press(Qt::Key_F10, Qt::ShiftModifier);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QAction* remove = menu->actions().last();
    EXPECT_EQ(remove->text(), QStringLiteral("Remove\tDelete"));
    menu->close();
    remove->trigger();
    EXPECT_TRUE(state.markers.value().empty());
}

TEST_F(EditorViewTest, TheTimelineZoomsByKeysWhereverTheFocusIs) {
    openEditor();
    state.videoDuration = 600;
    editor->setFocus();
    const auto& scale = editor->timeline().canvas().scene().scale;
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_FALSE(scale.isFitted());
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_TRUE(scale.isFitted());
}

}
