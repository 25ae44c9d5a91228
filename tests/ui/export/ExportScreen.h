// A session ready to be exported, with a small clip.
#pragma once

#include "support/TestClips.h"
#include "ui/export/ExportRunner.h"
#include "ui/support/ScreenContext.h"

#include <gtest/gtest.h>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace pointloom::test {

constexpr int longest = 60'000; // milliseconds; only a fault lasts as long

/// 640x360 of one grey at 25 Hz.
struct ExportScreen : ScreenContext {
    explicit ExportScreen(double seconds = 2) {
        const QString clip = clips.make(
            QStringLiteral("clip.mp4"),
            QStringLiteral("-f lavfi -i color=0x606060:s=640x360:r=25:d=%1 -c:v libx264 -pix_fmt yuv420p")
                .arg(seconds)
                .toUtf8()
                .constData());
        state.selectedTemplate = TemplateID::classic;
        state.matchConfig = tennisMatch();
        state.videoURL = QUrl::fromLocalFile(clip);
        state.videoDuration = seconds;
        state.videoWidth = 640;
        state.videoHeight = 360;
        state.scoreboardPosition = QPointF(0.5, 0.5);
        state.isLicensed = true;
        state.markers = std::vector{markerAt(1)};
        dialogs.fileToSave = output;
    }

    ClipFolder clips;
    QString output = clips.path(QStringLiteral("result.mp4"));
    ExportRunner runner{state};
};

template <class Widget = QPushButton>
Widget* named(QWidget& screen, const char* name) {
    auto* found = screen.findChild<Widget*>(QString::fromUtf8(name));
    if (!found)
        throw std::runtime_error(std::string("no such control: ") + name);
    return found;
}

/// Keys go to a window once it is the active one.
inline void show(QWidget& screen) {
    screen.show();
    screen.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&screen));
}

inline void click(QWidget& screen, const char* name) {
    QTest::mouseClick(named<QWidget>(screen, name), Qt::LeftButton);
}

}
