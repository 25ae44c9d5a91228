// From the first screen to the exported file, with the keys and clicks of a person.
#include "app/Shell.h"
#include "persistence/ProjectFile.h"
#include "ui/export/ExportSheet.h"

#include <algorithm>
#include <QImage>
#include <QPushButton>
#include <QTest>

namespace pointloom::test {
namespace {

class PathTest : public Shell {
protected:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : window.get(), key, modifiers);
    }
    void type(const char* text) { QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text)); }

    void click(QWidget& screen, const char* name) {
        auto* button = screen.findChild<QPushButton*>(QString::fromUtf8(name));
        ASSERT_TRUE(button) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }

    void goThroughTheSetup() {
        press(Qt::Key_Return); // tennis
        ASSERT_EQ(state->step, Screen::scoreboard);
        press(Qt::Key_Space); // the first scoreboard
        press(Qt::Key_Return);
        ASSERT_EQ(state->step, Screen::match);
        type("Ana");
        press(Qt::Key_Return);
        type("Eva");
        press(Qt::Key_Return);
        ASSERT_EQ(state->step, Screen::video);
        dialogs.fileToOpen =
            folder.make(QStringLiteral("match.mp4"),
                        "-f lavfi -i color=0x606060:s=640x360:r=25:d=2 -c:v libx264 -pix_fmt yuv420p");
        press(Qt::Key_Return);
        ASSERT_TRUE(eventually([this] { return state->videoURL.value().has_value(); }));
        const auto buttons = window->findChildren<QPushButton*>();
        const auto next = std::ranges::find_if(buttons, [this](const QPushButton* button) {
            return button->isVisible() && button->text() == state->t(L10nKey::openEditor);
        });
        ASSERT_NE(next, buttons.end());
        (*next)->setFocus();
        press(Qt::Key_Return);
        ASSERT_EQ(state->step, Screen::editor);
    }

    QImage frameOf(const QString& video, const char* second) {
        return QImage(
            folder.make(QStringLiteral("frame.png"),
                        QStringList{QStringLiteral("-ss"), QString::fromUtf8(second), QStringLiteral("-i"),
                                    video, QStringLiteral("-frames:v"), QStringLiteral("1"),
                                    QStringLiteral("-update"), QStringLiteral("1")}));
    }
};

// How much two pictures differ anywhere, 0..255.
int largestDifference(const QImage& one, const QImage& other) {
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            largest = std::max(largest, std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))));
    }
    return largest;
}

TEST_F(PathTest, LeadsFromTheSportToAFileThatShowsEachScoreInItsTime) {
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    ASSERT_NO_FATAL_FAILURE(goThroughTheSetup());

    press(Qt::Key_M);
    ASSERT_TRUE(eventually([this] { return state->markers.value().size() == 1; }));
    ASSERT_TRUE(eventually([this] {
        press(Qt::Key_Right, Qt::ShiftModifier); // counts once the clip is loaded
        QTest::qWait(200);
        return state->currentTime > 0.9;
    }));
    press(Qt::Key_1);
    ASSERT_EQ(state->markers.value().size(), 2U);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state->markers.value().size(), 1U);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(state->markers.value().size(), 2U);
    const double change = state->markers.value()[1].startTime;
    EXPECT_GT(change, 0.9);

    dialogs.fileToSave = path(QStringLiteral("match.plp"));
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(ProjectFile::load(*dialogs.fileToSave).markers, state->markers.value());

    press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    auto* exportSheet = sheet<ExportSheet>();
    ASSERT_TRUE(exportSheet);
    const QString result = path(QStringLiteral("result.mp4"));
    dialogs.fileToSave = result;
    click(*exportSheet, "changeDestination");
    click(*exportSheet, "startExport");
    using Stage = AppState::ExportStatus::Stage;
    ASSERT_TRUE(QTest::qWaitFor([this] { return state->exportStatus.value().stage == Stage::done; }, 60'000));

    const QImage early = frameOf(result, "0.2");
    EXPECT_EQ(early.size(), QSize(640, 360));
    EXPECT_LT(largestDifference(early, frameOf(result, "0.6")), 24) << "the same score";
    EXPECT_GT(largestDifference(early, frameOf(result, "1.8")), 60) << "another score";
}

}
}
