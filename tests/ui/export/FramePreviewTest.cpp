#include "ui/export/FramePreview.h"

#include "export/ExportManager.h"
#include "ExportScreen.h"
#include "persistence/ProjectSession.h"

namespace pointloom {

namespace {

using test::click;
using test::ExportScreen;
using test::longest;
using test::named;

TEST(FramePreview, ShowsTheExactFrameZoomsAndSavesIt) {
    ExportScreen screen;
    screen.state.currentTime = 1.2;
    FramePreview preview(screen.context, nullptr);
    test::show(preview);
    const auto* view = named<StillView>(preview, "still");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view->still().isNull(); }, longest));
    auto job = exportJobFor(projectFrom(screen.state)).value();
    job.overlay.isLicensed = true;
    EXPECT_EQ(view->still(), ExportManager::renderStill(job, 1.2));

    QTest::keyClick(named(preview, "actualSize"), Qt::Key_Space);
    EXPECT_GE(view->minimumWidth(), 640);

    screen.dialogs.fileToSave = screen.clips.path(QStringLiteral("frame")); // the ending comes by itself
    click(preview, "savePicture");
    ASSERT_TRUE(QTest::qWaitFor([&] { return named(preview, "savePicture")->isEnabled(); }, longest));
    EXPECT_EQ(QImage(screen.clips.path(QStringLiteral("frame.png"))).convertToFormat(QImage::Format_RGB32),
              view->still());
}

TEST(FramePreview, SaysWhenTheFrameIsNotExported) {
    ExportScreen screen;
    screen.state.parts = PartChoice{.onlyRallies = true, .rallies = {0.4, 0.2}};
    FramePreview preview(screen.context, nullptr);
    test::show(preview);
    const auto says = [&] {
        const auto labels = preview.findChildren<QLabel*>();
        return std::ranges::any_of(labels, [](const QLabel* label) {
            return label->text().contains(QStringLiteral("not in the exported"));
        });
    };
    EXPECT_TRUE(says());
    screen.state.currentTime = 0.8;
    EXPECT_FALSE(says());
}

TEST(FramePreview, AVideoThatIsGoneGivesAReasonAndAnotherTry) {
    ExportScreen screen;
    const QString clip = screen.state.videoURL.value()->toLocalFile();
    ASSERT_TRUE(QFile::rename(clip, clip + QStringLiteral(".away")));
    FramePreview preview(screen.context, nullptr);
    test::show(preview);
    const auto* view = named<StillView>(preview, "still");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view->accessibleDescription().isEmpty(); }, longest));
    EXPECT_TRUE(view->accessibleDescription().contains(QStringLiteral("clip.mp4")));
    EXPECT_FALSE(named(preview, "savePicture")->isEnabled());

    ASSERT_TRUE(QFile::rename(clip + QStringLiteral(".away"), clip));
    click(preview, "retry");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !view->still().isNull(); }, longest));
}

}

}
