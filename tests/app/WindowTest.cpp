// The window around the screens: title, routing, what is dropped on it, closing.
#include "app/QtTexts.h"
#include "app/Shell.h"
#include "support/Sessions.h"
#include "ui/common/Dialogs.h"
#include "ui/common/Preferences.h"
#include "ui/export/QueueDialog.h"

#include <algorithm>
#include <QAction>
#include <QDialog>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>

namespace pointloom::test {
namespace {

class WindowTest : public Shell {
protected:
    // Whether the window took it.
    bool drop(const QString& file) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &enter);
        QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &event);
        QCoreApplication::processEvents();
        return enter.isAccepted();
    }

    void expectTitle(const char* title, bool isModified) {
        QCoreApplication::processEvents();
        EXPECT_EQ(window->windowTitle(), QString::fromUtf8(title));
        EXPECT_EQ(window->isWindowModified(), isModified);
    }
};

TEST_F(WindowTest, TitleNamesTheDocumentAndMarksWhatItDoesNotHold) {
    expectTitle("Pointloom", false);
    configure();
    expectTitle("Untitled[*] — Pointloom", true);
    state->language = Language::german;
    expectTitle("Unbenannt[*] — Pointloom", true);
    window->content().openFile(makeProject(QStringLiteral("match.plp")));
    expectTitle("match.plp[*] — Pointloom", false);
    state->addMarker(markerAt(5), undo.get());
    expectTitle("match.plp[*] — Pointloom", true);
    undo->undo();
    expectTitle("match.plp[*] — Pointloom", false);
}

TEST_F(WindowTest, ShowsTheWizardOrTheEditor) {
    QWidget* const wizard = window->content().currentWidget();
    for (const Screen screen : {Screen::scoreboard, Screen::match, Screen::video}) {
        state->step = screen;
        EXPECT_EQ(window->content().currentWidget(), wizard);
    }
    state->step = Screen::editor;
    EXPECT_NE(window->content().currentWidget(), wizard);
}

TEST_F(WindowTest, HoldsAtItsSmallestSizeInEveryLanguage) {
    for (const Language language : allCases<Language>()) {
        state->language = language;
        for (int screen = 0; screen <= static_cast<int>(Screen::editor); ++screen) {
            state->step = static_cast<Screen>(screen);
            window->resize(1, 1);
            QCoreApplication::processEvents();
            EXPECT_LE(window->width(), 800) << screen;
            EXPECT_LE(window->height(), 480) << screen;
            for (const QWidget* part : window->content().currentWidget()->findChildren<QWidget*>()) {
                const bool isPart = part->isVisible() && part->parentWidget()->layout() && !part->isWindow();
                EXPECT_TRUE(!isPart || part->height() >= part->minimumSizeHint().height())
                    << part->metaObject()->className() << " on screen " << screen;
            }
        }
    }
}

TEST_F(WindowTest, FilesMayBeDropped) {
    EXPECT_TRUE(drop(makeProject(QStringLiteral("match.plp"))));
    EXPECT_EQ(state->selectedTemplate.value(), TemplateID::wimbledon);
    EXPECT_TRUE(drop(makeClip(QStringLiteral("match.MP4"))));
    ASSERT_TRUE(eventually([this] { return state->videoURL.value().has_value(); }));
    EXPECT_FALSE(drop(folder.write(QStringLiteral("notes.txt"), "0:15")));
    window->content().openFile(path(QStringLiteral("notes.txt"))); // as an argument
    EXPECT_EQ(dialogs.shown.value(0), QStringLiteral("Could not open file"));
}

TEST_F(WindowTest, AFileHandedOverWaitsForTheDialogThatIsOpen) {
    QDialog question(window.get());
    question.setModal(true);
    question.show();
    window->content().openFile(makeProject(QStringLiteral("match.plp")));
    EXPECT_FALSE(state->selectedTemplate.value());
    question.close();
    EXPECT_TRUE(eventually([this] { return state->selectedTemplate.value().has_value(); }));
}

TEST_F(WindowTest, CrashConsentIsAskedOnce) {
    for (const bool agrees : {true, false}) {
        defaults.remove("crashConsentAsked");
        dialogs.shown.clear();
        dialogs.confirms = agrees;
        start();
        window->content().askForCrashConsentOnce();
        ASSERT_TRUE(eventually([this] { return !dialogs.shown.isEmpty(); }));
        EXPECT_EQ(dialogs.shown,
                  QStringList({QStringLiteral("Anonymous Crash Reports"),
                               QStringLiteral("Pointloom can send anonymous crash reports to help "
                                              "improve the app. No personal data is included.")}));
        EXPECT_EQ(dialogs.buttons, QStringList({QStringLiteral("Enable"), QStringLiteral("No thanks")}));
        EXPECT_EQ(defaults.boolean("crashReportingEnabled"), agrees);
        start();
        window->content().askForCrashConsentOnce();
        QTest::qWait(20);
        EXPECT_EQ(dialogs.shown.size(), 2);
    }
}

TEST_F(WindowTest, SheetsOpenOverItsMiddle) {
    window->setGeometry(20, 60, 780, 700); // not the middle of the screen, which is 800 by 800
    choose(QStringLiteral("About Pointloom"));
    QDialog* about = window->findChild<QDialog*>();
    ASSERT_TRUE(about);
    const QPoint distance = about->frameGeometry().center() - window->frameGeometry().center();
    EXPECT_LE(distance.manhattanLength(), 2) << distance.x() << ", " << distance.y();
}

TEST_F(WindowTest, ClosingAsksOnlyWhileExportsAreLeftAndTheNextStartHasThem) {
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(dialogs.shown.isEmpty());
    window->show();
    exports->queue().add({.name = QStringLiteral("Dravnik – Solvane")});
    const auto title = QStringLiteral("0 % · Pointloom");
    EXPECT_TRUE(eventually([&] { return window->windowTitle() == title; }));

    dialogs.answer = Dialogs::Answer::cancel;
    EXPECT_FALSE(window->close());
    EXPECT_EQ(dialogs.shown.value(0), QStringLiteral("Exports Are Not Finished"));
    EXPECT_EQ(dialogs.buttons.value(0), QStringLiteral("Go on at the next start"));
    dialogs.answer = Dialogs::Answer::save;
    EXPECT_TRUE(window->close());
    start();
    EXPECT_EQ(exports->queue().status().left, 1);
    EXPECT_EQ(window->findChild<QWidget*>(QStringLiteral("queueIndicator"))->toolTip(),
              QStringLiteral("Exports left: 1"));
    choose(QStringLiteral("Exports…"));
    EXPECT_TRUE(sheet<QueueDialog>());

    dialogs.answer = Dialogs::Answer::goOn;
    EXPECT_TRUE(window->close());
    start();
    EXPECT_TRUE(exports->queue().entries().empty());
}

TEST_F(WindowTest, WhereTheQueueCannotBeKeptClosingAsksWhetherToStopIt) {
    ASSERT_TRUE(QFile::remove(path(QStringLiteral("data/exports.json"))));
    ASSERT_TRUE(QDir().mkpath(path(QStringLiteral("data/exports.json"))));
    exports->queue().add({.name = QStringLiteral("Dravnik – Solvane")});
    dialogs.confirms = false;
    EXPECT_FALSE(window->close());
    EXPECT_EQ(dialogs.shown.value(0), QStringLiteral("Stop the export?"));
    dialogs.confirms = true;
    EXPECT_TRUE(window->close());
}

TEST_F(WindowTest, TheFirstSizeFitsTheScreen) {
    EXPECT_EQ(window->size(), QSize(900, 640).boundedTo(availableSize(*window)));
}

TEST_F(WindowTest, TheNextStartHasTheSessionAndTheSizeOfTheLast) {
    configure();
    const QSize size = availableSize(*window) - QSize(10, 50); // newer versions of Qt keep it on the screen
    window->resize(size);
    window->close();
    start();
    EXPECT_EQ(window->size(), size);
    EXPECT_EQ(state->markers.value().size(), 2U);
    EXPECT_EQ(state->step, Screen::sport);
}

TEST_F(WindowTest, ClosingKeepsWhatTheDiskDidNotTakeBefore) {
    configure();
    const QString obstacle = defaults.path() + QStringLiteral(".new"); // in the way of the temporary file
    ASSERT_TRUE(QDir().mkpath(obstacle));
    state->addMarker(markerAt(3), undo.get());
    ASSERT_TRUE(QDir().rmdir(obstacle));
    window->close();
    start();
    EXPECT_EQ(state->markers.value().size(), 3U);
}

TEST_F(WindowTest, AChosenLanguageOutlivesTheSession) {
    const auto languages = window->findChildren<QAction*>();
    const auto german = std::ranges::find_if(
        languages, [](const QAction* each) { return each->text().endsWith(QStringLiteral("Deutsch")); });
    ASSERT_NE(german, languages.end());
    (*german)->trigger();
    window->content().documents().newSession();
    start();
    EXPECT_EQ(state->language.value(), Language::german);
}

TEST(FirstLanguageTest, IsTheChosenOneOrTheFirstOfTheDesktopsThatThereIs) {
    const ClipFolder folder;
    UserDefaults defaults(folder.path(QStringLiteral("settings.conf")));
    EXPECT_EQ(Preferences::firstLanguage(defaults, {QStringLiteral("nl-NL"), QStringLiteral("de-AT")}),
              Language::german);
    EXPECT_EQ(Preferences::firstLanguage(defaults, {QStringLiteral("pt_BR")}), Language::portuguese);
    EXPECT_EQ(Preferences::firstLanguage(defaults, {QStringLiteral("C")}), Language::english);
    defaults.setData("language", "sv");
    EXPECT_EQ(Preferences::firstLanguage(defaults, {QStringLiteral("de-AT")}), Language::swedish);
    defaults.setData("language", "xx");
    EXPECT_EQ(Preferences::firstLanguage(defaults, {QStringLiteral("de-AT")}), Language::german);
}

TEST(QtTextsTest, FollowTheLanguageOfTheSession) {
    AppState state;
    const QtTexts texts(state);
    const auto here = [&state](Language language) {
        state.language = language;
        return QCoreApplication::translate("QLineEdit", "Select All").toStdString();
    };
    EXPECT_EQ(here(Language::english), "Select All");
    if (here(Language::german) == "Select All")
        GTEST_SKIP() << "Qt's translations are not installed";
    EXPECT_EQ(here(Language::german), "Alles auswählen");
    EXPECT_EQ(here(Language::swedish), "Markera alla");
    EXPECT_EQ(here(Language::portuguese), "Seleccionar Tudo");
    EXPECT_EQ(here(Language::english), "Select All");
}

}
}
