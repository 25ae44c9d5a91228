#include "ui/editor/EditorFixture.h"

#include "ui/common/Preferences.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QStandardPaths>

namespace pointloom::test {

EditorFixture::EditorFixture()
    : defaults(folder.path(QStringLiteral("settings.ini")))
    , context{state, undo, defaults, dialogs, keysInUse} {
    QStandardPaths::setTestModeEnabled(true);                  // thumbnails are kept
    defaults.setBoolean(Preferences::quickPicturesKey, false); // tests that want them switch them on
    Theme::shared().apply(*qApp, ThemeChoice::dark);
    state.selectedTemplate = TemplateID::classic;
    state.matchConfig = tennisMatch();
    state.step = Screen::editor;
}

void EditorFixture::openEditor(QSize size) {
    editor = std::make_unique<EditorView>(context);
    editor->resize(size);
    editor->show();
    editor->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(editor.get()));
}

void EditorFixture::openClip(int seconds) {
    const QString clip = folder.make(
        QStringLiteral("clip.mp4"),
        qPrintable(
            QStringLiteral("-f lavfi -i testsrc2=s=640x360:r=25:d=%1 -c:v libx264 -preset ultrafast -g 25 "
                           "-pix_fmt yuv420p")
                .arg(seconds)));
    state.videoDuration = seconds;
    state.videoWidth = 640;
    state.videoHeight = 360;
    state.videoURL = QUrl::fromLocalFile(clip);
    ASSERT_TRUE(waitFor([this] { return editor->playback().isLoaded(); }));
}

void EditorFixture::chooseAt(QWidget* widget, QPoint point, const QString& title) {
    QTest::mouseClick(widget, Qt::RightButton, {}, point);
    QContextMenuEvent request(QContextMenuEvent::Mouse, point, widget->mapToGlobal(point));
    QApplication::sendEvent(widget, &request);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr) << "no menu to choose from: " << qPrintable(title);
    for (QAction* entry : menu->actions()) {
        if (entry->text().section(u'\t', 0, 0) == title && entry->isEnabled()) {
            entry->trigger();
            menu->close();
            return;
        }
    }
    menu->close();
    FAIL() << "the menu does not offer: " << qPrintable(title);
}

void EditorFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus ? focus : editor.get(), key, modifiers);
}

}
