// An editor over a session of its own, with every dialog answered by the test.
#pragma once

#include "support/TestClips.h"
#include "ui/editor/EditorView.h"
#include "ui/support/ScreenContext.h"

#include <functional>
#include <gtest/gtest.h>
#include <QTest>

namespace pointloom::test {

class EditorFixture : public testing::Test {
protected:
    /// A tennis match of three sets, 25 frames a second of nothing: no video.
    EditorFixture();

    void openEditor(QSize size = {1000, 700});
    /// Makes a clip of `seconds`, 640x360, and waits until it is shown.
    void openClip(int seconds = 4);

    static bool waitFor(const std::function<bool()>& done, int milliseconds = 20'000) {
        return QTest::qWaitFor(done, milliseconds);
    }

    /// Chooses the entry with this title of the context menu that a right click at `point` opens.
    static void chooseAt(QWidget* widget, QPoint point, const QString& title);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    Marker marker(int index) const { return state.markers.value().at(static_cast<std::size_t>(index)); }
    GameScore gameOf(int index) const { return std::get<ScoreState>(marker(index).score).currentGame; }

    template <class Widget>
    Widget* find(const char* name) const {
        Widget* found = editor->findChild<Widget*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    ClipFolder folder;
    RecordingStore store;
    AppState state{&store};
    UndoStack undo;
    UserDefaults defaults;
    PreparedDialogs dialogs;
    CommandKeys keysInUse;
    UiContext context;
    std::unique_ptr<EditorView> editor;
};

}
