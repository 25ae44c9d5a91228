// Every command of the menus, with the dialogs answered by the test.
#include "app/SampleMatch.h"
#include "app/Shell.h"
#include "persistence/CSVParser.h"
#include "persistence/ProjectSession.h"
#include "support/Sessions.h"
#include "ui/common/Preferences.h"
#include "ui/editor/PictureStage.h"
#include "ui/export/ExportSheet.h"
#include "ui/settings/AboutDialog.h"
#include "ui/settings/HelpDialog.h"
#include "ui/settings/LicenceDialog.h"
#include "ui/settings/NewsDialog.h"
#include "ui/settings/PreferencesDialog.h"
#include "ui/wizard/DropTarget.h"
#include "ui/wizard/SportPage.h"
#include "ui/wizard/TeamForm.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>

namespace pointloom::test {
namespace {

using MenuTest = Shell;

const Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
const Qt::KeyboardModifiers ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;

TEST_F(MenuTest, CommandsStandWherePeopleLookForThem) {
    EXPECT_EQ(titlesIn(QStringLiteral("&File")).join(u'|').toStdString(),
              "New Session|Open Project…|Open Recent|Open Video…|-|Save Project|Save Project As…|"
              "Export Video…|Exports…|-|Quit");
    EXPECT_EQ(titlesIn(QStringLiteral("&Edit")).join(u'|').toStdString(),
              "Undo|Redo|-|Sport|Template|Match|Video|Editor|-|Preferences…");
    EXPECT_EQ(titlesIn(QStringLiteral("&View")).join(u'|').toStdString(),
              "Zoom In\tCtrl++|Zoom Out\tCtrl+-|Show the Whole Clip\tCtrl+0|-|Preview Frame");
    EXPECT_EQ(titlesIn(QStringLiteral("&Playback")).join(u'|').toStdString(),
              "Play/Pause\tSpace|Play Faster\tL|Back 5 Seconds\tJ|Play Only What Stays\tP|-|"
              "Go to Time…\tG|Go to Start\tHome|Go to End\tEnd|-|One Frame Back\t←|One Frame Forward\t→|"
              "Previous Marker\t↑|Next Marker\t↓|Previous Rally's End\tB|Next Rally's End\tN");
    EXPECT_EQ(titlesIn(QStringLiteral("&Help")).join(u'|').toStdString(),
              "Help…|Open Sample Match|Download Sample CSV…|-|What’s New…|About Pointloom|Licence…");
}

TEST_F(MenuTest, PlaybackAndViewAreForTheEditor) {
    choose(QStringLiteral("Go to End")); // there is no editor yet
    EXPECT_FALSE(action(QStringLiteral("Zoom In")).isEnabled());
    configure();
    state->videoDuration = 10;
    state->step = Screen::editor;
    choose(QStringLiteral("Go to End"));
    EXPECT_EQ(state->currentTime.value(), 10);
    choose(QStringLiteral("Previous Marker"));
    EXPECT_EQ(state->currentTime.value(), 2);
    state->language = Language::german;
    choose(QStringLiteral("Zum Anfang"));
    EXPECT_EQ(state->currentTime.value(), 0);
    state->step = Screen::video;
    choose(QStringLiteral("Zum Ende"));
    EXPECT_EQ(state->currentTime.value(), 0);
}

TEST_F(MenuTest, TitlesFollowTheLanguageAtOnce) {
    state->addMarker(markerAt(3), undo.get());
    state->language = Language::german;
    EXPECT_EQ(titlesIn(QStringLiteral("&Datei")).join(u'|').toStdString(),
              "Neue Sitzung|Projekt öffnen…|Zuletzt benutzt|Video öffnen…|-|Projekt sichern|"
              "Projekt sichern unter…|Video exportieren…|Exporte…|-|Beenden");
    EXPECT_EQ(titlesIn(QStringLiteral("&Bearbeiten")).join(u'|').toStdString(),
              "„Marker hinzufügen“ rückgängig "
              "machen|Wiederholen|-|Sportart|Vorlage|Match|Video|Editor|-|Einstellungen…");
    EXPECT_EQ(
        titlesIn(QStringLiteral("&Hilfe")).join(u'|').toStdString(),
        "Hilfe…|Beispielmatch öffnen|CSV-Beispiel herunterladen…|-|Was ist neu…|Über Pointloom|Lizenz…");
}

TEST_F(MenuTest, ShortcutsReachTheActionsThatAreThereAndNoOthers) {
    QStringList called;
    const auto record = [&called](const char* name) {
        return [&called, name] { called << QString::fromUtf8(name); };
    };
    bridge = CommandBridge();
    bridge.openVideo = record("openVideo");
    bridge.exportVideo = record("exportVideo");
    bridge.openProject = record("openProject");
    bridge.saveProject = record("saveProject");
    bridge.saveProjectAs = record("saveProjectAs");
    bridge.showHelp = record("showHelp");
    bridge.showPreferences = record("showPreferences");
    QTest::keyClick(window.get(), Qt::Key_N, ctrl); // absent: nothing happens
    QTest::keyClick(window.get(), Qt::Key_O, ctrl);
    QTest::keyClick(window.get(), Qt::Key_E, ctrlShift);
    QTest::keyClick(window.get(), Qt::Key_O, ctrlShift);
    QTest::keyClick(window.get(), Qt::Key_S, ctrl);
    QTest::keyClick(window.get(), Qt::Key_S, ctrlShift);
    QTest::keyClick(window.get(), Qt::Key_Question, ctrl);
    QTest::keyClick(window.get(), Qt::Key_F1);
    QTest::keyClick(window.get(), Qt::Key_Comma, ctrl);
    EXPECT_EQ(
        called.join(u' ').toStdString(),
        "openVideo exportVideo openProject saveProject saveProjectAs showHelp showHelp showPreferences");
}

TEST_F(MenuTest, HelpNamesEveryShortcutOfTheMenus) {
    QStringList listed;
    keys.choose({{Command::exportVideo, {Qt::CTRL | Qt::Key_R}}, {Command::showQueue, {Qt::Key_F7}}});
    for (const auto& line : keyList(CommandGroup::menu, keys, Language::english))
        listed += line.keys;
    int shortcuts = 0;
    for (const QAction* action : window->findChildren<QAction*>()) {
        for (const QKeySequence& shortcut : action->shortcuts()) {
            EXPECT_TRUE(listed.contains(shortcut.toString(QKeySequence::PortableText)))
                << qPrintable(action->text());
            ++shortcuts;
        }
    }
    EXPECT_GT(shortcuts, 8);
    EXPECT_EQ(action(QStringLiteral("Export Video…")).shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
    EXPECT_EQ(action(QStringLiteral("Exports…")).shortcut(), QKeySequence(Qt::Key_F7));
}

TEST_F(MenuTest, NewSessionAsksBeforeItThrowsWorkAway) {
    choose(QStringLiteral("New Session"));
    EXPECT_TRUE(dialogs.shown.isEmpty()); // nothing to lose
    configure();
    state->addMarker(markerAt(3), undo.get());
    dialogs.answer = Dialogs::Answer::cancel;
    choose(QStringLiteral("New Session"));
    EXPECT_EQ(dialogs.shown,
              QStringList({QStringLiteral("Start over?"), QStringLiteral("All data will be erased.")}));
    EXPECT_EQ(state->markers.value().size(), 3U);
    dialogs.answer = Dialogs::Answer::save; // and the dialog for the file is cancelled
    choose(QStringLiteral("New Session"));
    EXPECT_EQ(state->markers.value().size(), 3U);
    dialogs.fileToSave = path(QStringLiteral("kept.plp"));
    state->cuts = std::vector{CutZone{QUuid::createUuid(), 1, 2}};
    choose(QStringLiteral("New Session"));
    EXPECT_TRUE(dialogs.shown.contains(
        QStringLiteral("All data will be erased. The cuts on the timeline stay (1).")));
    EXPECT_EQ(ProjectFile::load(path(QStringLiteral("kept.plp"))).markers.size(), 3U);
    EXPECT_TRUE(state->markers.value().empty());
    EXPECT_EQ(state->cuts.value().size(), 1U);
    EXPECT_FALSE(action(QStringLiteral("Undo")).isEnabled());
    EXPECT_FALSE(defaults.data(Persistence::sessionKey));
}

TEST_F(MenuTest, NewSessionForgetsANameThatWasNeverConfirmed) {
    state->selectedTemplate = TemplateID::classic;
    state->step = Screen::match;
    QLineEdit* name = window->findChild<TeamForm*>()->firstName();
    QTest::keyClicks(name, QStringLiteral("Dravnik"));
    state->step = Screen::sport;
    const auto sports = window->findChildren<SportPage*>().first()->findChildren<PickerCard*>();
    sports[2]->click(); // volleyball, which the template does not fit
    sports[0]->click();
    EXPECT_EQ(name->text(), QStringLiteral("Dravnik"));
    choose(QStringLiteral("New Session")); // every field of the session has its first value already
    EXPECT_EQ(name->text(), QString());
    EXPECT_TRUE(dialogs.shown.isEmpty());
}

TEST_F(MenuTest, ExportSaysWhatIsMissing) {
    choose(QStringLiteral("Export Video…"));
    EXPECT_EQ(dialogs.shown,
              QStringList({QStringLiteral("Nothing to export yet"),
                           QStringLiteral("Still to be done:\n• Choose a Template\n• Match Configuration\n"
                                          "• Import Video")}));
    configure();
    state->language = Language::german;
    choose(QStringLiteral("Video exportieren…"));
    EXPECT_EQ(dialogs.shown.last(), QStringLiteral("Es fehlt noch:\n• Video importieren"));
    EXPECT_FALSE(sheet<ExportSheet>());
}

TEST_F(MenuTest, AboutNamesVersionLicenceAndLibraries) {
    const QString version = QCoreApplication::applicationVersion();
    QCoreApplication::setApplicationVersion(QStringLiteral("7.3.1"));
    choose(QStringLiteral("About Pointloom"));
    QCoreApplication::setApplicationVersion(version);
    ASSERT_TRUE(sheet<AboutDialog>());
    const auto texts = [this] {
        QStringList lines;
        for (const QLabel* label : sheet<AboutDialog>()->findChildren<QLabel*>())
            lines << label->text();
        return lines.join(u'\n');
    };
    const QString english = texts();
    for (const char* part :
         {"Version 7.3.1\n", "GNU General Public License, version 3", "\nQt 6.", "\nmpv\n"})
        EXPECT_TRUE(english.contains(QString::fromUtf8(part))) << part << " in " << english.toStdString();
    EXPECT_TRUE(english.contains(QRegularExpression(QStringLiteral("\nFFmpeg \\S+\n"))));
    state->language = Language::swedish;
    EXPECT_TRUE(texts().contains(QStringLiteral("Fri programvara")));
}

TEST_F(MenuTest, OpeningAProjectReadsItsVideoAndKeepsItsTrimAndPlace) {
    state->addMarker(markerAt(9), undo.get());
    dialogs.fileToOpen = makeProject(QStringLiteral("match.plp"), makeClip(QStringLiteral("match.mp4")));
    choose(QStringLiteral("Open Project…"));
    EXPECT_EQ(dialogs.shown.value(0), QStringLiteral("Open Pointloom Project"));
    EXPECT_EQ(dialogs.filters, QStringList{QStringLiteral("Pointloom (*.plp *.PLP)")});
    ASSERT_TRUE(eventually([this] { return state->videoDuration > 0; }));
    EXPECT_EQ(state->step, Screen::editor);
    EXPECT_EQ(state->videoWidth, 320);
    EXPECT_EQ(state->trimStart, 0.5);
    EXPECT_EQ(state->scoreboardPosition.value(), QPointF(0.5, 0.75));
    EXPECT_EQ(state->currentProjectURL.value(), QUrl::fromLocalFile(*dialogs.fileToOpen));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(undo->canUndo().value());
    window->content().openFile(*dialogs.fileToOpen); // the editor stays on the screen
    EXPECT_EQ(state->previewAreaSize.value(), window->findChild<PictureStage*>()->size());
}

TEST_F(MenuTest, OpeningAsksOnlyWhenWorkWouldBeLostAndCancellingKeepsTheSession) {
    configure();
    choose(QStringLiteral("Open Project…")); // cancelled in the file dialog
    dialogs.fileToOpen = makeProject(QStringLiteral("match.plp"));
    dialogs.answer = Dialogs::Answer::cancel;
    choose(QStringLiteral("Open Project…"));
    EXPECT_EQ(dialogs.shown.value(2), QStringLiteral("Open another project?"));
    EXPECT_EQ(state->selectedTemplate.value(), TemplateID::broadcast);
    dialogs.answer = Dialogs::Answer::goOn;
    choose(QStringLiteral("Open Project…"));
    EXPECT_EQ(state->selectedTemplate.value(), TemplateID::wimbledon);
}

TEST_F(MenuTest, TheNextStartKnowsThatTheSessionWasSaved) {
    const QString first = makeProject(QStringLiteral("first.plp"), makeClip(QStringLiteral("match.mp4")));
    const QString second = makeProject(QStringLiteral("second.plp"));
    window->content().openFile(first);
    state->scoreboardUserScale = 2;
    choose(QStringLiteral("Save Project"));
    start();
    EXPECT_FALSE(window->isWindowModified());
    window->content().openFile(second);
    EXPECT_EQ(dialogs.shown, QStringList());
    state->addMarker(markerAt(8), undo.get());
    start();
    EXPECT_TRUE(window->isWindowModified());
    window->content().openFile(second);
    EXPECT_EQ(dialogs.shown.value(0), QStringLiteral("Open another project?"));
}

TEST_F(MenuTest, AProjectThatCannotBeReadLeavesTheSessionAlone) {
    configure();
    dialogs.fileToOpen = folder.write(QStringLiteral("broken.plp"), "{}");
    choose(QStringLiteral("Open Project…"));
    EXPECT_TRUE(dialogs.shown.contains(QStringLiteral("Could not open project")));
    EXPECT_TRUE(dialogs.shown.last().startsWith(QStringLiteral("broken.plp: ")));
    EXPECT_EQ(state->markers.value().size(), 2U);
    EXPECT_FALSE(state->currentProjectURL.value());
}

TEST_F(MenuTest, MissingFilesAreNamedAndTheRestOpens) {
    ProjectFile project =
        ProjectFile::load(makeProject(QStringLiteral("match.plp"), path(QStringLiteral("gone.mp4"))));
    project.matchConfig->logoURL = QUrl::fromLocalFile(path(QStringLiteral("gone.png")));
    project.save(path(QStringLiteral("match.plp")));
    window->content().openFile(path(QStringLiteral("match.plp")));
    EXPECT_EQ(dialogs.shown,
              QStringList({QStringLiteral("Logo file not found"),
                           QStringLiteral("The logo at %1 could not be found. Loading without logo.")
                               .arg(path(QStringLiteral("gone.png"))),
                           QStringLiteral("Video file not found"),
                           QStringLiteral("The video at %1 could not be found. Please re-import it.")
                               .arg(path(QStringLiteral("gone.mp4")))}));
    EXPECT_EQ(state->step, Screen::video);
    EXPECT_FALSE(state->videoURL.value());
    EXPECT_EQ(state->markers.value().size(), 1U);
}

TEST_F(MenuTest, SavingAsksForAPlaceOnce) {
    configure();
    choose(QStringLiteral("Save Project")); // cancelled
    EXPECT_FALSE(state->currentProjectURL.value());
    dialogs.fileToSave = path(QStringLiteral("mine"));
    choose(QStringLiteral("Save Project"));
    EXPECT_EQ(dialogs.proposedName, QStringLiteral("project.plp"));
    EXPECT_EQ(dialogs.shown.last(), QStringLiteral("Save Pointloom Project"));
    const QString saved = path(QStringLiteral("mine.plp"));
    EXPECT_EQ(ProjectFile::load(saved).markers.size(), 2U);

    state->addMarker(markerAt(7), undo.get());
    dialogs.shown.clear();
    choose(QStringLiteral("Save Project"));
    EXPECT_TRUE(dialogs.shown.isEmpty());
    EXPECT_EQ(ProjectFile::load(saved).markers.size(), 3U);

    dialogs.fileToSave = path(QStringLiteral("other.plp"));
    choose(QStringLiteral("Save Project As…"));
    EXPECT_EQ(state->currentProjectURL.value(), QUrl::fromLocalFile(*dialogs.fileToSave));

    dialogs.fileToSave = path(QStringLiteral("Final 12.05.2024"));
    choose(QStringLiteral("Save Project As…"));
    const QUrl dated = QUrl::fromLocalFile(path(QStringLiteral("Final 12.05.2024.plp")));
    EXPECT_EQ(state->currentProjectURL.value(), dated);
    dialogs.fileToSave = path(QStringLiteral("other"));
    dialogs.confirms = false; // there is an other.plp
    choose(QStringLiteral("Save Project As…"));
    EXPECT_EQ(state->currentProjectURL.value(), dated);
}

TEST_F(MenuTest, TheProposedNameHoldsOnlyWhatAFileNameCan) {
    const auto proposed = [this] {
        choose(QStringLiteral("Save Project As…"));
        return dialogs.proposedName;
    };
    defaults.setBoolean(Preferences::namesOfMatchKey, true);
    EXPECT_EQ(proposed(), QStringLiteral("project.plp"));
    MatchConfig match = tennisMatch();
    match.team1 = {QStringLiteral("Ana \"Ace\" Dravnik"), QStringLiteral("Bia"), {}, {}};
    match.team2.player1 = QString(300, QChar(u'w'));
    state->matchConfig = match;
    EXPECT_EQ(proposed().first(26), QStringLiteral("Ana Ace Dravnik Bia – wwww"));
    EXPECT_LT(proposed().toUtf8().size(), 255);
    match.team1 = {QStringLiteral("?"), {}, {}, {}};
    match.team2.player1 = QStringLiteral("B");
    state->matchConfig = match;
    EXPECT_EQ(proposed(), QStringLiteral("– B.plp"));
}

TEST_F(MenuTest, AProjectThatCannotBeWrittenIsNotTheCurrentOne) {
    configure();
    dialogs.fileToSave = path(QStringLiteral("nowhere/mine.plp"));
    choose(QStringLiteral("Save Project As…"));
    EXPECT_TRUE(dialogs.shown.contains(QStringLiteral("Could not save project")));
    EXPECT_FALSE(state->currentProjectURL.value());
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(MenuTest, TheSampleTableIsWrittenWhereAsked) {
    dialogs.fileToSave = path(QStringLiteral("sample"));
    choose(QStringLiteral("Download Sample CSV…"));
    EXPECT_EQ(dialogs.shown, QStringList{QStringLiteral("Save Sample CSV")});
    EXPECT_EQ(dialogs.proposedName, QStringLiteral("pointloom_sample.csv"));
    EXPECT_EQ(readFile(path(QStringLiteral("sample.csv"))), CSVParser::sampleText().toUtf8());
    dialogs.fileToSave = path(QStringLiteral("nowhere/sample.csv"));
    choose(QStringLiteral("Download Sample CSV…"));
    EXPECT_TRUE(dialogs.shown.contains(QStringLiteral("Could not save CSV")));
}

TEST_F(MenuTest, TheSampleMatchOpensWithItsScoresAndWithoutADocument) {
    qputenv("XDG_DATA_HOME", path({}).toUtf8());
    QDir().mkpath(path(QStringLiteral("Pointloom")));
    ASSERT_TRUE(QFile::rename(makeClip(QStringLiteral("drawn.mp4"), 22), SampleMatch::videoPath()));
    configure();
    dialogs.answer = Dialogs::Answer::cancel;
    choose(QStringLiteral("Open Sample Match"));
    EXPECT_EQ(dialogs.shown.value(0), QStringLiteral("Open another project?"));
    EXPECT_EQ(timesOf(*state), (std::vector<double>{1, 2}));

    dialogs.answer = Dialogs::Answer::goOn;
    choose(QStringLiteral("Open Sample Match"));
    ASSERT_TRUE(eventually([this] { return state->videoDuration > 0; }));
    EXPECT_EQ(state->step, Screen::editor);
    EXPECT_FALSE(state->currentProjectURL.value());
    EXPECT_FALSE(window->isWindowModified());
    const auto& markers = state->markers.value();
    ASSERT_EQ(markers.size(), 5U);
    EXPECT_EQ(markers.back().score,
              SportScoreState(ScoreState{
                  {{6, 4, {}}, {5, 4, {}}, {0, 0, {}}}, {GamePoint::fifteen, GamePoint::zero}, 2}));
    const MatchRules rules = rulesOfMatch(*state->matchConfig.value(), {}).value();
    SportScoreState before = *state->initialScore.value();
    for (const Marker& marker : markers)
        EXPECT_TRUE(winnerBetween(rules, {std::exchange(before, marker.score), {}}, {marker.score, {}}))
            << marker.startTime;
    choose(QStringLiteral("Save Project"));
    EXPECT_EQ(dialogs.shown.last(), QStringLiteral("Save Pointloom Project"));
    qunsetenv("XDG_DATA_HOME");
}

TEST_F(MenuTest, DrawingTheSampleMatchCanBeCancelled) {
    qputenv("XDG_DATA_HOME", path({}).toUtf8());
    choose(QStringLiteral("Open Sample Match"));
    auto* progress = sheet<QProgressDialog>();
    ASSERT_TRUE(progress);
    EXPECT_TRUE(progress->isVisible());
    Q_EMIT progress->canceled();
    EXPECT_EQ(state->step, Screen::sport);
    EXPECT_TRUE(eventually([this] { return !sheet<QProgressDialog>(); }));
    EXPECT_FALSE(QFile::exists(SampleMatch::videoPath()));
    qunsetenv("XDG_DATA_HOME");
}

TEST_F(MenuTest, WhatIsNewIsShownOnceAfterAnUpdate) {
    const QString version = QCoreApplication::applicationVersion();
    QCoreApplication::setApplicationVersion(QStringLiteral("0.0.9"));
    window->content().showNewsOnce();
    EXPECT_FALSE(sheet<NewsDialog>()) << "it is the first start";
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    start();
    window->content().showNewsOnce();
    EXPECT_TRUE(sheet<NewsDialog>());
    start();
    window->content().showNewsOnce();
    EXPECT_FALSE(sheet<NewsDialog>());
    QCoreApplication::setApplicationVersion(version);
    choose(QStringLiteral("What’s New…"));
    EXPECT_TRUE(sheet<NewsDialog>());
}

TEST_F(MenuTest, OpeningAVideoImportsItAndSaysWhyItCannot) {
    configure();
    dialogs.fileToOpen = makeClip(QStringLiteral("match.mp4"));
    choose(QStringLiteral("Open Video…"));
    ASSERT_TRUE(eventually([this] { return state->videoURL.value().has_value(); }));
    EXPECT_EQ(state->step, Screen::video); // where the wizard shows it
    dialogs.fileToOpen = folder.write(QStringLiteral("broken.mp4"), "no video");
    choose(QStringLiteral("Open Video…"));
    ASSERT_TRUE(eventually([this] { return dialogs.shown.last().contains(QStringLiteral("broken.mp4")); }));
    EXPECT_TRUE(state->videoURL.value()->path().endsWith(QStringLiteral("/match.mp4")));
}

TEST_F(MenuTest, AVideoStillBeingReadDoesNotArriveInAnotherSession) {
    dialogs.fileToOpen = makeClip(QStringLiteral("match.mp4"));
    choose(QStringLiteral("Open Video…"));
    choose(QStringLiteral("New Session"));
    QTest::qWait(300);
    EXPECT_FALSE(state->videoURL.value());

    configure();
    state->step = Screen::video;
    window->findChild<DropTarget*>()->click(); // the wizard reads for itself
    choose(QStringLiteral("New Session"));
    QTest::qWait(300);
    EXPECT_FALSE(state->videoURL.value());
}

TEST_F(MenuTest, UndoAndRedoNameWhatTheyDo) {
    configure();
    QTest::keyClick(window.get(), Qt::Key_Z, ctrl); // nothing to undo yet
    state->addMarker(markerAt(7), undo.get());
    EXPECT_TRUE(action(QStringLiteral("Undo Add Marker")).isEnabled());
    QTest::keyClick(window.get(), Qt::Key_Z, ctrl);
    EXPECT_EQ(timesOf(*state), (std::vector<double>{1, 2}));
    EXPECT_FALSE(action(QStringLiteral("Undo")).isEnabled());
    EXPECT_TRUE(action(QStringLiteral("Redo Add Marker")).isEnabled());
    QTest::keyClick(window.get(), Qt::Key_Z, ctrlShift);
    EXPECT_EQ(timesOf(*state), (std::vector<double>{1, 2, 7}));
}

TEST_F(MenuTest, RecentProjectsComeBackAtTheNextStart) {
    makeProject(QStringLiteral("a.plp"));
    makeProject(QStringLiteral("b.plp"));
    for (const char* name : {"a.plp", "b.plp", "a.plp"})
        window->content().openFile(path(QString::fromUtf8(name)));
    start();
    QMenu& recent = *action(QStringLiteral("Open Recent")).menu();
    Q_EMIT recent.aboutToShow();
    ASSERT_EQ(recent.actions().size(), 4); // both, a line, the clearing
    EXPECT_EQ(recent.actions().at(0)->text(), QStringLiteral("a.plp"));
    recent.actions().at(1)->trigger();
    EXPECT_EQ(state->currentProjectURL.value(), QUrl::fromLocalFile(path(QStringLiteral("b.plp"))));
    recent.actions().at(3)->trigger();
    EXPECT_TRUE(window->content().documents().recentProjects().isEmpty());
}

// The button of the first page that goes on with the match that was edited last; null without an offer.
QPushButton* goOnButton(const MainWindow& window) {
    for (QPushButton* button : window.findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("Go On") && button->isVisible())
            return button;
    }
    return nullptr;
}

TEST_F(MenuTest, TheNextStartGoesOnWithOneClick) {
    EXPECT_FALSE(goOnButton(*window));
    configure();
    EXPECT_FALSE(goOnButton(*window)) << "it is being entered";
    window->content().openFile(makeClip(QStringLiteral("final.mp4")));
    ASSERT_TRUE(eventually([this] { return state->videoURL.value().has_value(); }));
    dialogs.fileToSave = path(QStringLiteral("final.plp"));
    choose(QStringLiteral("Save Project"));
    const CutZone cut{QUuid::createUuid(), 0.5, 1};
    state->addCut(cut, undo.get());
    state->scoreboardUserScale = 2;
    choose(QStringLiteral("Save Project"));
    window->close();

    start();
    ASSERT_TRUE(goOnButton(*window));
    EXPECT_TRUE(goOnButton(*window)->hasFocus());
    EXPECT_EQ(goOnButton(*window)->accessibleDescription(), QStringLiteral("Dravnik – Solvane"));
    goOnButton(*window)->click();
    EXPECT_EQ(state->step, Screen::editor);
    ASSERT_TRUE(eventually([this] { return state->videoDuration > 0; }));
    EXPECT_EQ(state->videoURL.value(), QUrl::fromLocalFile(path(QStringLiteral("final.mp4"))));
    EXPECT_EQ(state->currentProjectURL.value(), QUrl::fromLocalFile(path(QStringLiteral("final.plp"))));
    EXPECT_EQ(state->scoreboardUserScale, 2);
    EXPECT_EQ(state->cuts.value(), std::vector{cut});
    EXPECT_EQ(state->markers.value().size(), 2U);
    EXPECT_FALSE(window->isWindowModified());

    choose(QStringLiteral("New Session")); // the document is still offered
    ASSERT_TRUE(goOnButton(*window));
    goOnButton(*window)->click();
    EXPECT_EQ(state->step, Screen::editor);
    EXPECT_EQ(state->markers.value().size(), 2U);
    EXPECT_FALSE(goOnButton(*window));
}

TEST_F(MenuTest, GoingOnWithoutTheFilmAsksForItAndKeepsTheScores) {
    configure();
    const QString film = makeClip(QStringLiteral("final.mp4"));
    window->content().openFile(film);
    ASSERT_TRUE(eventually([this] { return state->videoURL.value().has_value(); }));
    window->close();
    ASSERT_TRUE(QFile::rename(film, path(QStringLiteral("moved.mp4"))));
    start();
    goOnButton(*window)->click();
    EXPECT_EQ(state->step, Screen::video);
    EXPECT_EQ(state->absentVideo.value(), film);
    EXPECT_EQ(state->markers.value().size(), 2U);
    window->content().openFile(path(QStringLiteral("moved.mp4")));
    ASSERT_TRUE(eventually([this] { return state->videoURL.value().has_value(); }));
    ASSERT_TRUE(eventually([this] {
        const auto* next = qobject_cast<QPushButton*>(window->focusWidget());
        return next && next->text() == QStringLiteral("Open Editor");
    })) << "Enter goes on";

    dialogs.answer = Dialogs::Answer::goOn;
    choose(QStringLiteral("New Session"));
    start();
    EXPECT_FALSE(goOnButton(*window)) << "nothing was saved";
}

TEST_F(MenuTest, ThePagesAreReachedFromTheEditorAndLeaveItAsItWas) {
    window->content().openFile(
        makeProject(QStringLiteral("match.plp"), makeClip(QStringLiteral("match.mp4"))));
    ASSERT_TRUE(eventually([this] { return state->videoDuration > 0; }));
    state->currentTime = 1.25;
    const ProjectFile before = projectFrom(*state);
    for (const char* page : {"Sport", "Template", "Match", "Video"}) {
        choose(QString::fromUtf8(page));
        EXPECT_NE(state->step, Screen::editor);
        choose(QStringLiteral("Editor"));
        EXPECT_EQ(state->step, Screen::editor) << page;
    }
    EXPECT_EQ(projectFrom(*state), before);
    EXPECT_NEAR(state->currentTime, 1.25, 0.1);
    window->findChild<QToolButton*>(QStringLiteral("backToVideo"))->click();
    EXPECT_EQ(state->step, Screen::video);
    dialogs.answer = Dialogs::Answer::goOn;
    choose(QStringLiteral("New Session"));
    EXPECT_FALSE(action(QStringLiteral("Match")).isEnabled());
}

TEST_F(MenuTest, SheetsOpenOnceAndComeAgain) {
    choose(QStringLiteral("Help…"));
    choose(QStringLiteral("Help…"));
    EXPECT_EQ(window->findChildren<HelpDialog*>().size(), 1);
    QTest::keyClick(sheet<HelpDialog>(), Qt::Key_Escape);
    ASSERT_TRUE(eventually([this] { return !sheet<HelpDialog>(); }));
    choose(QStringLiteral("Help…"));
    EXPECT_TRUE(sheet<HelpDialog>());
    sheet<HelpDialog>()->close();
    choose(QStringLiteral("Preferences…"));
    EXPECT_TRUE(sheet<PreferencesDialog>());
    sheet<PreferencesDialog>()->close();
    choose(QStringLiteral("Licence…"));
    EXPECT_TRUE(sheet<LicenceDialog>());
    EXPECT_TRUE(state->showLicenseSheet);
    sheet<LicenceDialog>()->close();
    EXPECT_FALSE(state->showLicenseSheet);
}

}
}
