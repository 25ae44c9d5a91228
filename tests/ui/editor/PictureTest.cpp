#include "ui/editor/EditorFixture.h"

#include "export/ExportManager.h"

#include <QFile>

namespace pointloom {

namespace {

class PictureTest : public test::EditorFixture {
protected:
    void SetUp() override { qputenv("POINTLOOM_RENDERING", "software"); }

    bool shows(const QString& text) {
        return waitFor([&] {
            const MessageBar& message = editor->stage().messages();
            return message.isVisible() && message.message().contains(text);
        });
    }
};

// The share of the pixels, 0..1, whose lightness differs visibly.
double differingShare(const QImage& left, const QImage& right) {
    constexpr int visible = 40;
    int count = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x)
            count += std::abs(qGray(left.pixel(x, y)) - qGray(right.pixel(x, y))) > visible ? 1 : 0;
    }
    return static_cast<double>(count) / (left.width() * left.height());
}

}

TEST_F(PictureTest, PlayheadAndPlayerFollowEachOther) {
    openEditor();
    openClip();
    EXPECT_EQ(state.currentTime.value(), 0);
    press(Qt::Key_Right);
    EXPECT_TRUE(waitFor([this] { return std::abs(state.currentTime - 0.04) < 1e-3; }));
    state.currentTime = 2; // as another part of the window does
    EXPECT_TRUE(waitFor([this] { return std::abs(editor->playback().player()->time() - 2) < 1e-3; }));
    press(Qt::Key_Space);
    EXPECT_TRUE(waitFor([this] { return state.isPlaying.value() && state.currentTime > 2.1; }));
    press(Qt::Key_1);
    EXPECT_TRUE(state.isPlaying.value()) << "a point is entered while the clip plays";
    EXPECT_EQ(state.markers.value().size(), 1U);
    press(Qt::Key_K);
    EXPECT_TRUE(waitFor([this] { return !state.isPlaying.value(); }));
}

TEST_F(PictureTest, PlayingSkipsWhatIsLeftOut) {
    openEditor();
    openClip(6);
    state.markers = std::vector{test::markerAt(1), test::markerAt(4)};
    press(Qt::Key_P);
    QWidget* choice = QApplication::activePopupWidget();
    ASSERT_NE(choice, nullptr) << "as long as all stays, the key leads to the choice";
    choice->close();
    state.parts = PartChoice{.onlyRallies = true, .rallies = {0.4, 0.4}};
    press(Qt::Key_P);
    EXPECT_TRUE(find<QToolButton>("playsOnlyKept")->isChecked());

    state.currentTime = 2.52; // by hand, where nothing stays
    ASSERT_TRUE(waitFor([this] { return std::abs(editor->playback().player()->time() - 2.52) < 1e-3; }));
    EXPECT_FALSE(state.isPlaying);
    std::vector<double> shown;
    const auto record = state.currentTime.addNotifier([&] { shown.push_back(state.currentTime); });
    const auto play = [&] {
        shown.clear();
        press(Qt::Key_Space);
        ASSERT_TRUE(waitFor([this] { return state.isPlaying.value(); }));
        ASSERT_TRUE(waitFor([this] { return !state.isPlaying.value(); })) << "it pauses after the last part";
    };
    const auto countIn = [&](double from, double to) {
        return std::ranges::count_if(shown, [&](double time) { return time > from && time < to; });
    };
    play();
    EXPECT_EQ(countIn(0, 2.5) + countIn(2.7, 3.59) + countIn(4.5, 6), 0) << "on from the next part";
    EXPECT_GT(countIn(3.59, 4.4), 0);
    play();
    EXPECT_GT(countIn(0.59, 1.4), 0) << "again from the first part";
    EXPECT_GT(countIn(3.59, 4.4), 0);
    EXPECT_EQ(countIn(1.6, 3.59), 0);
}

TEST_F(PictureTest, AVideoThatVanishesIsNamedAndThePlayheadStays) {
    openEditor();
    openClip();
    press(Qt::Key_Right, Qt::ShiftModifier);
    ASSERT_TRUE(waitFor([this] { return std::abs(state.currentTime - 1) < 1e-3; }));
    const QString path = state.videoURL.value()->toLocalFile();
    ASSERT_TRUE(QFile::rename(path, path + QStringLiteral(".away")));
    ASSERT_TRUE(shows(QStringLiteral("clip.mp4")));
    EXPECT_NEAR(state.currentTime, 1, 1e-3);
    press(Qt::Key_M);
    EXPECT_EQ(state.markers.value().size(), 1U) << "the rest of the editor goes on";

    int imports = 0;
    QObject::connect(editor.get(), &EditorView::importRequested, editor.get(), [&] { ++imports; });
    Q_EMIT editor->stage().messages().firstActionChosen();
    EXPECT_EQ(imports, 1);

    ASSERT_TRUE(QFile::rename(path + QStringLiteral(".away"), path));
    Q_EMIT editor->stage().messages().secondActionChosen();
    EXPECT_TRUE(waitFor([this] { return editor->playback().isLoaded(); }));
    EXPECT_FALSE(editor->stage().messages().isVisible());
    EXPECT_TRUE(waitFor([this] { return std::abs(editor->playback().player()->time() - 1) < 1e-3; }));
}

TEST_F(PictureTest, WhatIsNoVideoIsSaid) {
    state.language = Language::german;
    openEditor();
    state.videoURL = QUrl::fromLocalFile(folder.write(QStringLiteral("notes.mp4"), "nothing to see"));
    EXPECT_TRUE(shows(QStringLiteral("notes.mp4 ist kein MP4- oder MOV-Video oder beschädigt.")));
}

TEST_F(PictureTest, TheScoreboardLooksAsTheExportDrawsIt) {
    openEditor();
    openClip(1);
    // A broadcast scoreboard is larger than its canvas, and a night session glows beyond it.
    for (const TemplateID board : {TemplateID::classic, TemplateID::broadcast, TemplateID::nightsession}) {
        state.selectedTemplate = board;
        state.scoreboardPosition = QPointF(0.61, 0.7);
        state.scoreboardUserScale = 0.9;
        ExportJob job;
        job.videoPath = state.videoURL.value()->toLocalFile();
        job.overlay.initialScore = *state.liveScore();
        job.overlay.config = *state.matchConfig.value();
        job.overlay.templateID = board;
        job.overlay.scoreboardPosition = state.scoreboardPosition;
        job.overlay.scoreboardUserScale = state.scoreboardUserScale;
        job.overlay.isLicensed = true;
        const QImage exported = ExportManager::renderStill(job, 0);
        job.overlay.scoreboardPosition = QPointF(-5, -5);
        const QImage bare = ExportManager::renderStill(job, 0);

        // One point to a pixel of the video.
        ScoreboardOverlayView overlay(context);
        overlay.resize(exported.size());
        overlay.setVideoRect(QRectF(QPointF(0, 0), exported.size()));
        QImage preview = bare.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        overlay.render(&preview, {}, {}, QWidget::DrawChildren);
        EXPECT_GT(differingShare(bare, exported), 0.02) << "there is a board to see";
        EXPECT_LT(differingShare(preview, exported), 0.0005) << "template " << static_cast<int>(board);
    }
}

}
