// An editor over a session of its own, without anybody at the dialogs.
#pragma once

#include "persistence/UserDefaults.h"
#include "support/Sessions.h"
#include "support/TestClips.h"
#include "ui/editor/EditorView.h"

#include <functional>
#include <gtest/gtest.h>
#include <QTest>

namespace pointloom::test {

/// Answers dialogs as told.
class AnsweredDialogs final : public Dialogs {
public:
    std::optional<QString> chooseFileToOpen(QWidget*, const QString&, const QStringList&) override {
        return fileToOpen;
    }
    std::optional<QString> chooseFileToSave(QWidget*, const QString&, const QString&,
                                            const QStringList&) override {
        return std::nullopt;
    }
    void alert(QWidget*, const QString&, const QString& message) override { alerts << message; }
    bool confirm(QWidget*, const QString&, const QString&, const QString&, const QString&) override {
        return false;
    }

    std::optional<QString> fileToOpen;
    QStringList alerts;
};

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
    AnsweredDialogs dialogs;
    UiContext context;
    std::unique_ptr<EditorView> editor;
};

}
