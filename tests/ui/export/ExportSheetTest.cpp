// The export sheet as a user operates it: by clicks and keys, to files that are decoded again.
#include "ui/export/ExportSheet.h"

#include "export/ExportManager.h"
#include "ExportScreen.h"
#include "persistence/ProjectSession.h"

#include <cmath>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QDoubleSpinBox>
#include <QProgressBar>

namespace pointloom {

namespace {

using test::click;
using test::ExportScreen;
using test::longest;
using test::named;
using Stage = AppState::ExportStatus::Stage;

bool waitForStage(const ExportScreen& screen, Stage stage) {
    return QTest::qWaitFor([&] { return screen.state.exportStatus.value().stage == stage; }, longest);
}

// The frame that the sheet shows once nothing newer is being made.
QImage settledStill(ExportSheet& sheet, QSize size) {
    const auto* view = named<StillView>(sheet, "still");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->still().size() == size; }, longest));
    return view->still();
}

struct OpenSheet : ExportScreen {
    explicit OpenSheet(double seconds = 2)
        : ExportScreen(seconds)
        , sheet(context, runner, nullptr) {
        test::show(sheet);
        click(sheet, "changeDestination");
    }

    QString detail() { return named<QLabel>(sheet, "stageDetail")->text(); }

    ExportSheet sheet;
};

// Mean difference of two pictures' channels, 0..255.
double difference(const QImage& one, const QImage& other) {
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            sum +=
                std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
        }
    }
    return sum / (3.0 * one.width() * one.height());
}

QImage firstPicture(const QString& path, QSize size) {
    const QByteArray bytes = test::firstPicture(path, QStringLiteral("rgb24"));
    EXPECT_EQ(bytes.size(), qsizetype{3} * size.width() * size.height());
    return QImage(reinterpret_cast<const uchar*>(bytes.constData()), size.width(), size.height(),
                  3 * size.width(), QImage::Format_RGB888)
        .copy();
}

TEST(ExportSheet, ClicksMakeAFileThatLooksLikeTheStill) {
    OpenSheet open;
    const QImage still = settledStill(open.sheet, {640, 360});
    click(open.sheet, "startExport");
    EXPECT_EQ(open.state.exportStatus.value().stage, Stage::exporting);
    ASSERT_TRUE(waitForStage(open, Stage::done));
    EXPECT_EQ(open.state.exportProgress.value(), 1.0);

    const QImage exported = firstPicture(open.output, {640, 360});
    const double scoreboard = difference(still, QImage(still.size(), QImage::Format_RGB32));
    EXPECT_LT(difference(still, exported), 2.0) << "apart from what coding loses";
    EXPECT_GT(difference(exported,
                         [&] {
                             QImage plain(still.size(), QImage::Format_RGB32);
                             plain.fill(still.pixel(2, 2));
                             return plain;
                         }()),
              2.0)
        << "a scoreboard stands on the picture, " << scoreboard;
    EXPECT_TRUE(open.detail().startsWith(QStringLiteral("result.mp4")));
}

TEST(ExportSheet, ChoicesByKeyboardShapeTheFile) {
    OpenSheet open;
    auto* original = named<QWidget>(open.sheet, "Original");
    original->setFocus();
    QTest::keyClick(original, Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    const QImage upright = settledStill(open.sheet, {1080, 1920});
    EXPECT_EQ(upright.pixelColor(540, 10), QColor(Qt::black)) << "bars above the picture";

    auto* h264 = named<QWidget>(open.sheet, "H.264 (MP4)");
    h264->setFocus();
    QTest::keyClick(h264, Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(named<QWidget>(open.sheet, "startExport"), Qt::Key_Space);
    ASSERT_TRUE(waitForStage(open, Stage::done)) << open.detail().toStdString();
    const auto video = test::probe(open.clips.path(QStringLiteral("result.mov")))["streams"][0];
    EXPECT_EQ(video["codec_name"], "prores");
    EXPECT_EQ(video["width"], 1080);
    EXPECT_EQ(video["height"], 1920);
}

TEST(ExportSheet, QualityAndEncoderReachTheFile) {
    OpenSheet open;
    auto* quality = named<QComboBox>(open.sheet, "quality");
    auto* encoder = named<QComboBox>(open.sheet, "encoder");
    EXPECT_EQ(quality->currentText(), QStringLiteral("Default"));
    EXPECT_EQ(quality->itemText(1), QStringLiteral("Fast"));
    EXPECT_EQ(encoder->currentText(), QStringLiteral("Automatic"));
    click(open.sheet, "ProRes 422 (MOV)");
    quality->setCurrentText(QStringLiteral("Smaller file"));
    encoder->setCurrentText(QStringLiteral("Software"));
    open.state.language = Language::german;
    EXPECT_EQ(quality->currentText(), QStringLiteral("Kleinere Datei"));
    EXPECT_EQ(encoder->currentIndex(), 1) << "a new language keeps the choice";
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::done));
    const QString file = QFileInfo(open.output).path() + QStringLiteral("/result.mov");
    EXPECT_EQ(test::probe(file)["streams"][0]["codec_tag_string"], "apcs");
}

TEST(ExportSheet, APictureThatFillsTheFrameIsMovedByHandAndByKeys) {
    ExportScreen screen;
    screen.state.videoURL = QUrl::fromLocalFile(
        screen.clips.make(QStringLiteral("halves.mp4"),
                          "-f lavfi -i color=0x9050b0:s=640x360:r=25:d=1,drawbox=x=320:w=320:h=360:"
                          "c=0x30a060:t=fill -c:v libx264 -pix_fmt yuv420p"));
    ExportSheet sheet(screen.context, screen.runner, nullptr);
    test::show(sheet);
    click(sheet, "changeDestination");
    const auto* fill = named<QWidget>(sheet, "fill");
    EXPECT_FALSE(fill->isVisible()) << "the original size has no bars";
    click(sheet, "Instagram 9:16");
    settledStill(sheet, {1080, 1920});
    ASSERT_TRUE(fill->isVisible());
    named<QCheckBox>(sheet, "fill")->click();
    settledStill(sheet, {640, 360});

    auto* view = named<StillView>(sheet, "still");
    const QPoint middle = view->rect().center();
    const auto redAt = [&](QPoint place) { return view->grab().toImage().pixelColor(place).red(); };
    QTest::mousePress(view, Qt::LeftButton, {}, middle);
    QTest::mouseMove(view, middle + QPoint(2000, 0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, middle + QPoint(2000, 0));
    EXPECT_NEAR(redAt(middle + QPoint(0, 50)), 0x90, 10) << "its left end";
    QTest::keyClick(view, Qt::Key_End);
    EXPECT_NEAR(redAt(middle + QPoint(0, 50)), 0x30, 10) << "its right end";
    QTest::keyClick(view, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(redAt(middle + QPoint(0, 50)), 0x30, 10);

    click(sheet, "startExport");
    ASSERT_TRUE(waitForStage(screen, Stage::done));
    const QImage exported = firstPicture(screen.output, {1080, 1920});
    EXPECT_NEAR(exported.pixelColor(540, 20).red(), 0x30, 10);
    EXPECT_NEAR(exported.pixelColor(540, 1900).red(), 0x30, 10);
}

// A machine with such a graphics card gets what was requested.
TEST(ExportRunner, AnEncoderThatDoesNotWorkIsReplacedAndNamedByTheResult) {
    ExportScreen screen;
    ExportStage stage(screen.context, screen.runner, nullptr);
    ExportJob job = exportJobFor(projectFrom(screen.state)).value();
    job.outputPath = screen.output;
    job.settings.encoder = media::EncoderKind::vaapi;
    screen.runner.start({.job = job});
    ASSERT_TRUE(waitForStage(screen, Stage::done));
    const QString detail = named<QLabel>(stage, "stageDetail")->text();
    EXPECT_EQ(detail.contains(QStringLiteral("VAAPI did not work")),
              screen.runner.report().fallback.has_value());
    EXPECT_EQ(test::probe(screen.output)["streams"][0]["codec_name"], "h264");
}

TEST(ExportSheet, CancelLeavesTheFileThatWasThereAndGoesBackToTheChoices) {
    OpenSheet open(60);
    open.clips.write(QFileInfo(open.output).fileName(), "an earlier video");
    click(open.sheet, "startExport");
    ASSERT_TRUE(QTest::qWaitFor([&] { return open.state.exportProgress.value() > 0; }, longest));
    click(open.sheet, "cancelExport");
    ASSERT_TRUE(waitForStage(open, Stage::idle));
    EXPECT_EQ(test::readFile(open.output), "an earlier video");
    const QStringList unfinished{QStringLiteral("*.unfinished")};
    EXPECT_EQ(QFileInfo(open.output).dir().entryList(unfinished, QDir::Files | QDir::Hidden), QStringList());
    EXPECT_TRUE(named(open.sheet, "startExport")->isVisible());
}

TEST(ExportSheet, ClosedWhileItExportsItGoesOnAndTheNextExportWaitsForIt) {
    OpenSheet open(60);
    click(open.sheet, "startExport");
    ASSERT_TRUE(QTest::qWaitFor([&] { return open.state.exportProgress.value() > 0; }, longest));
    open.dialogs.shown.clear();
    QTest::keyClick(&open.sheet, Qt::Key_Escape);
    EXPECT_FALSE(open.sheet.isVisible());
    EXPECT_EQ(open.dialogs.shown, QStringList());
    EXPECT_EQ(open.state.exportStatus.value().stage, Stage::idle);
    EXPECT_EQ(open.runner.queue().status().left, 1);

    ExportSheet next(open.context, open.runner, nullptr);
    test::show(next);
    EXPECT_EQ(named<QPushButton>(next, "startExport")->text(), QStringLiteral("Add to Queue"));
    open.state.markers = std::vector<Marker>(); // of another match
    open.state.trimEnd = 0.7;
    open.dialogs.fileToSave = open.clips.path(QStringLiteral("next.mp4"));
    click(next, "changeDestination");
    click(next, "startExport");
    EXPECT_FALSE(next.isVisible());
    const auto entries = open.runner.queue().entries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].state, QueueState::running);
    EXPECT_EQ(entries[0].job.overlay.markers.size(), 1U);
    EXPECT_EQ(entries[1].state, QueueState::waiting);
    EXPECT_EQ(entries[1].name, QStringLiteral("Dravnik – Solvane"));

    open.runner.queue().cancel(entries[0].id);
    EXPECT_TRUE(QTest::qWaitFor([&] { return open.runner.queue().status().done == 1; }, longest));
    EXPECT_TRUE(QFile::exists(open.dialogs.fileToSave.value()));
    EXPECT_FALSE(QFile::exists(open.output));
}

TEST(ExportSheet, AResultThatWasSeenLeavesTheQueue) {
    OpenSheet open;
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::done));
    EXPECT_EQ(open.runner.queue().entries().size(), 1U);
    click(open.sheet, "closeSheet");
    EXPECT_TRUE(open.runner.queue().entries().empty());
}

TEST(ExportSheet, AVanishedVideoIsNamedAndRetryWorksOnceItIsBack) {
    OpenSheet open;
    const QString clip = open.state.videoURL.value()->toLocalFile();
    settledStill(open.sheet, {640, 360});
    ASSERT_TRUE(QFile::rename(clip, clip + QStringLiteral(".away")));
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::error));
    EXPECT_TRUE(open.detail().contains(QStringLiteral("clip.mp4"))) << open.detail().toStdString();
    EXPECT_FALSE(QFile::exists(open.output));

    ASSERT_TRUE(QFile::rename(clip + QStringLiteral(".away"), clip));
    click(open.sheet, "retry");
    EXPECT_TRUE(waitForStage(open, Stage::done)) << open.detail().toStdString();
}

TEST(ExportSheet, WhyAnExportFailedIsToldInThePersonsLanguage) {
    OpenSheet open;
    open.state.language = Language::german;
    const QString clip = open.state.videoURL.value()->toLocalFile();
    settledStill(open.sheet, {640, 360});
    const QByteArray whole = test::readFile(clip);
    open.clips.write(QStringLiteral("clip.mp4"), "nothing to see");
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::error));
    EXPECT_EQ(open.detail(), QStringLiteral("clip.mp4 ist kein MP4- oder MOV-Video oder beschädigt."));

    open.clips.write(QStringLiteral("clip.mp4"), whole);
    click(open.sheet, "changeOptions");
    open.dialogs.fileToSave = clip;
    open.dialogs.confirms = true;
    click(open.sheet, "changeDestination");
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::error));
    EXPECT_EQ(open.detail(),
              QStringLiteral("Der Export würde das Spielvideo ersetzen. Wähle einen anderen Namen."));
    EXPECT_EQ(test::readFile(clip), whole);
}

TEST(ExportSheet, WhatACutVideoHasLostStandsBelowTheResult) {
    OpenSheet open;
    const QByteArray whole = test::readFile(open.clips.make(
        QStringLiteral("whole.mp4"), "-f lavfi -i testsrc2=s=640x360:r=25:d=2 -c:v libx264 -g 12 "
                                     "-pix_fmt yuv420p -movflags +faststart"));
    open.clips.write(QStringLiteral("clip.mp4"), whole.left(whole.size() * 2 / 3));
    const auto* damage = named<QLabel>(open.sheet, "stageDamage");
    click(open.sheet, "startExport");
    EXPECT_FALSE(damage->isVisible());
    ASSERT_TRUE(waitForStage(open, Stage::done)) << open.detail().toStdString();
    EXPECT_TRUE(damage->isVisible());
    EXPECT_TRUE(damage->text().contains(QStringLiteral("the video: "))) << damage->text().toStdString();
}

TEST(ExportSheet, AFolderThatIsNotThereIsNamed) {
    ExportScreen screen;
    screen.dialogs.fileToSave = screen.clips.path(QStringLiteral("nowhere/result.mp4"));
    ExportSheet sheet(screen.context, screen.runner, nullptr);
    test::show(sheet);
    click(sheet, "changeDestination");
    click(sheet, "startExport");
    ASSERT_TRUE(waitForStage(screen, Stage::error));
    EXPECT_TRUE(named<QLabel>(sheet, "stageDetail")->text().contains(QStringLiteral("nowhere")));

    ASSERT_TRUE(QDir().mkpath(screen.clips.path(QStringLiteral("nowhere"))));
    click(sheet, "retry");
    EXPECT_TRUE(waitForStage(screen, Stage::done));
}

TEST(ExportSheet, AFileThatIsThereIsReplacedOnlyWhenThePersonAgrees) {
    OpenSheet open;
    open.clips.write(QStringLiteral("result.mp4"), "precious");
    open.dialogs.confirms = false;
    click(open.sheet, "startExport");
    EXPECT_EQ(open.state.exportStatus.value().stage, Stage::idle);
    EXPECT_EQ(test::readFile(open.output), "precious");

    open.dialogs.confirms = true;
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::done));
    EXPECT_NE(test::readFile(open.output), "precious");
}

TEST(ExportSheet, CaptionsThatAreThereAreReplacedOnlyWhenThePersonAgrees) {
    OpenSheet open;
    open.clips.write(QStringLiteral("result.srt"), "theirs");
    open.dialogs.confirms = false;
    named<QComboBox>(open.sheet, "captions")->setCurrentIndex(1);
    click(open.sheet, "startExport");
    EXPECT_EQ(open.state.exportStatus.value().stage, Stage::idle);
    EXPECT_EQ(open.dialogs.shown.last(),
              QStringLiteral("“result.srt” already exists. Exporting replaces it."));
}

TEST(ExportSheet, WarnsWithoutMarkersAndOffersTheLicence) {
    OpenSheet open;
    EXPECT_FALSE(named<QWidget>(open.sheet, "noMarkersNotice")->isVisible());
    EXPECT_FALSE(named<QWidget>(open.sheet, "unlicensedNotice")->isVisible());

    open.state.markers = std::vector<Marker>();
    open.state.isLicensed = false;
    EXPECT_TRUE(named<QWidget>(open.sheet, "noMarkersNotice")->isVisible());
    EXPECT_TRUE(named<QWidget>(open.sheet, "unlicensedNotice")->isVisible());
    click(open.sheet, "enterLicence");
    EXPECT_TRUE(open.state.showLicenseSheet.value());
}

TEST(ExportSheet, AWatermarkIsChosenPlacedByKeysAndSeenInTheStill) {
    OpenSheet open;
    const QImage plain = settledStill(open.sheet, {640, 360});
    QImage logo(40, 40, QImage::Format_RGB32);
    logo.fill(Qt::red);
    const QString path = open.clips.path(QStringLiteral("logo.png"));
    ASSERT_TRUE(logo.save(path));
    open.dialogs.fileToOpen = path;
    click(open.sheet, "chooseWatermark");
    auto* corner = named<QWidget>(open.sheet, "bottomRight");
    corner->setFocus();
    QTest::keyClick(corner, Qt::Key_Up);
    EXPECT_EQ(open.state.watermarkCorner.value(), WatermarkCorner::topRight);
    EXPECT_GT(open.store.saves, 0);
    const auto* view = named<StillView>(open.sheet, "still");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->still().pixelColor(600, 40).red() > 200; }, longest));

    click(open.sheet, "removeWatermark");
    EXPECT_FALSE(open.state.watermarkURL.value().has_value());
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->still() == plain; }, longest));
}

TEST(ExportSheet, TheStillIsTheExportsOwnWithinTheTrimmedRange) {
    ExportScreen screen;
    screen.state.trimStart = 1.0;
    screen.state.currentTime = 0.2; // not exported: the nearest frame that is
    ExportSheet sheet(screen.context, screen.runner, nullptr);
    auto job = exportJobFor(projectFrom(screen.state)).value();
    job.overlay.isLicensed = true;
    EXPECT_EQ(settledStill(sheet, {640, 360}), ExportManager::renderStill(job, 1.0));
}

TEST(ExportSheet, SpeaksAnotherLanguageAtOnce) {
    OpenSheet open;
    open.state.language = Language::german;
    EXPECT_EQ(named(open.sheet, "startExport")->text(), QStringLiteral("Export starten"));
    EXPECT_EQ(named<QWidget>(open.sheet, "Original")->accessibleDescription(),
              QStringLiteral("640 × 360\nWie gefilmt"));
}

TEST(ExportSheet, OnlyWhatStaysIsShownMeasuredAndExported) {
    OpenSheet open(6);
    open.state.markers = std::vector{test::markerAt(2), test::markerAt(5)};
    open.state.currentTime = 3.2;
    QTest::keyClick(named<QWidget>(open.sheet, "onlyRallies"), Qt::Key_Space);
    named<QDoubleSpinBox>(open.sheet, "secondsBefore")->setValue(1);
    named<QDoubleSpinBox>(open.sheet, "secondsAfter")->setValue(0.5);
    EXPECT_EQ(named<QLabel>(open.sheet, "keptLength")->text(), QStringLiteral("0:03 of 0:06"));
    QTest::keyClick(named<QWidget>(open.sheet, "secondsAfter"), Qt::Key_Return);
    EXPECT_EQ(open.state.exportStatus.value().stage, Stage::idle) << "Enter ends typing";
    auto job = exportJobFor(projectFrom(open.state)).value();
    job.overlay.isLicensed = true;
    const QImage next = ExportManager::renderStill(job, 4); // the score of 2, then that of 5
    const auto* view = named<StillView>(open.sheet, "still");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->still() == next; }, longest));

    open.state.parts = PartChoice{.onlyRallies = true, .rallies = {1, 0.5}, .withoutCuts = true};
    open.state.cuts = std::vector{CutZone{QUuid::createUuid(), 0, 3}};
    EXPECT_FALSE(named<QWidget>(open.sheet, "cutsNotice")->isVisible()) << "they do not stay";
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::done));
    EXPECT_EQ(test::probePackets(open.output).size(), 38U) << "4 to 5.5 s, 25 frames a second";
}

TEST(ExportSheet, NothingIsExportedWhereNothingStays) {
    OpenSheet open;
    open.state.parts = PartChoice{.onlyRallies = true, .rallies = {}};
    EXPECT_TRUE(named(open.sheet, "startExport")->isEnabled());
    open.state.trimEnd = 0.5;
    open.state.parts = PartChoice{.onlyRallies = true, .rallies = {0.2, 1}};
    EXPECT_FALSE(named(open.sheet, "startExport")->isEnabled());
    EXPECT_EQ(named<QLabel>(open.sheet, "keptLength")->text(),
              QStringLiteral("Nothing stays: no marker in the range"));
    open.state.parts = PartChoice();
    EXPECT_TRUE(named(open.sheet, "startExport")->isEnabled());
}

TEST(ExportSheet, CutsInTheExportedRangeAreSaidToStay) {
    OpenSheet open;
    const auto* notice = named<QWidget>(open.sheet, "cutsNotice");
    EXPECT_FALSE(notice->isVisible());
    open.state.cuts = std::vector{CutZone{QUuid(), 0.2, 0.4}, CutZone{QUuid(), 1.5, 1.8}};
    EXPECT_TRUE(notice->isVisible());
    const auto labels = notice->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text() == QStringLiteral("Cuts that stay in the video: 2");
    }));
    open.state.trimEnd = 0.2;
    EXPECT_FALSE(notice->isVisible());
}

TEST(ExportSheet, WhereNothingOpensTheResultItsPlaceIsTold) {
    OpenSheet open;
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::done));
    open.dialogs.shown.clear();
    click(open.sheet, "play"); // no services of a desktop in tests
    EXPECT_EQ(open.dialogs.shown.value(0), QStringLiteral("Nothing to Open It With"));
}

class Opened : public QObject {
    Q_OBJECT

public:
    Opened() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Opened() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl& url) { urls << url; }
};

TEST(ExportSheet, TheResultPlaysAndAnotherExportGetsAnotherName) {
    OpenSheet open;
    const Opened opened;
    click(open.sheet, "startExport");
    ASSERT_TRUE(waitForStage(open, Stage::done));
    click(open.sheet, "play");
    EXPECT_EQ(opened.urls, QList{QUrl::fromLocalFile(open.output)});
    click(open.sheet, "exportAnother");
    EXPECT_TRUE(named(open.sheet, "startExport")->isVisible());
    EXPECT_NE(named<QLabel>(open.sheet, "destination")->toolTip(), open.output);
}

}

}

#include "ExportSheetTest.moc"
