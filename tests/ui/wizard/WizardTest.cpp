#include "support/TestClips.h"
#include "ui/support/ScreenContext.h"
#include "ui/wizard/BoardPanel.h"
#include "ui/wizard/DropTarget.h"
#include "ui/wizard/FlagField.h"
#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/StepBar.h"
#include "ui/wizard/TeamForm.h"
#include "ui/wizard/TemplatePage.h"
#include "ui/wizard/VideoPage.h"
#include "ui/wizard/WizardView.h"

#include <gtest/gtest.h>
#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

namespace pointloom {

namespace {

class WizardTest : public testing::Test {
protected:
    WizardTest() {
        view.resize(900, 640);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }

    template <class Widget>
    std::vector<Widget*> shown() const {
        std::vector<Widget*> result;
        for (Widget* each : view.findChildren<Widget*>()) {
            if (each->isVisible())
                result.push_back(each);
        }
        return result;
    }

    QPushButton* button(L10nKey key) const {
        for (QPushButton* each : shown<QPushButton>()) {
            if (each->text() == screen.context.text(key))
                return each;
        }
        return nullptr;
    }

    void enterMatch() {
        screen.state.selectedTemplate = TemplateID::classic;
        screen.state.step = Screen::match;
    }

    QStringList visibleTexts() const {
        QStringList texts;
        for (const QLabel* each : shown<QLabel>())
            texts << each->text();
        for (const QAbstractButton* each : shown<QAbstractButton>()) {
            if (!view.findChild<TemplatePage*>()->isAncestorOf(each)) // names of templates are the same
                texts << each->text() << each->accessibleName();
        }
        for (const QLineEdit* each : shown<QLineEdit>())
            texts << each->placeholderText() << each->accessibleName();
        texts.removeAll(QString());
        return texts;
    }

    test::ClipFolder clips;
    test::ScreenContext screen;
    WizardView view{screen.context};
};

}

TEST_F(WizardTest, KeysAloneLeadFromTheSportToTheEditor) {
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    EXPECT_EQ(screen.state.selectedSport, SportID::padel);
    EXPECT_GT(screen.store.saves, 0);
    ASSERT_EQ(screen.state.step, Screen::scoreboard);

    EXPECT_FALSE(button(L10nKey::continueBtn)->isEnabled());
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    EXPECT_TRUE(button(L10nKey::continueBtn)->isEnabled());
    press(Qt::Key_Return);
    EXPECT_EQ(screen.state.selectedTemplate.value(), TemplateID::dark);
    ASSERT_EQ(screen.state.step, Screen::match);

    type(QStringLiteral("Ana"));
    press(Qt::Key_Tab);
    type(QStringLiteral("pt"));
    QTest::keyClick(view.findChild<FlagField*>()->completer()->popup(), Qt::Key_Return); // takes the country
    press(Qt::Key_Return); // a name is missing: goes there
    EXPECT_EQ(screen.state.step, Screen::match);
    type(QStringLiteral("Eva"));
    press(Qt::Key_Return);
    ASSERT_EQ(screen.state.step, Screen::video);
    ASSERT_TRUE(screen.state.matchConfig.value());
    EXPECT_EQ(screen.state.matchConfig.value()->team1,
              (TeamConfig{QStringLiteral("Ana"), {}, QStringLiteral("PT"), {}}));
    EXPECT_EQ(screen.state.matchConfig.value()->team2.player1, QStringLiteral("Eva"));

    screen.dialogs.fileToOpen =
        clips.make(QStringLiteral("clip.mp4"), "-f lavfi -i testsrc=size=64x64:rate=25 -t 1");
    press(Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return screen.state.videoURL.value().has_value(); }, 30'000));
    const int saves = screen.store.saves;
    button(L10nKey::openEditor)->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(screen.state.step, Screen::editor);
    EXPECT_GT(screen.store.saves, saves);
}

TEST_F(WizardTest, ADoubleClickPicksGoesOnAndAsksOnce) {
    const auto sports = shown<PickerCard>();
    const auto doubleClick = [](QWidget* card) { // as it comes from a desktop
        QTest::mouseClick(card, Qt::LeftButton);
        QTest::mouseDClick(card, Qt::LeftButton);
        QTest::mouseRelease(card, Qt::LeftButton);
    };
    doubleClick(sports[1]);
    EXPECT_EQ(screen.state.selectedSport, SportID::padel);
    EXPECT_EQ(screen.state.step, Screen::scoreboard);
    const auto templates = shown<PickerCard>();
    QTest::mouseClick(templates[2], Qt::LeftButton);
    QTest::mouseClick(templates[2], Qt::LeftButton);
    EXPECT_TRUE(templates[2]->isChecked());

    screen.state.step = Screen::sport;
    screen.state.addMarker(test::markerAt(1), nullptr);
    screen.dialogs.confirms = false;
    doubleClick(sports[2]);
    EXPECT_EQ(screen.dialogs.shown.count(QStringLiteral("Change the sport?")), 1);
    EXPECT_EQ(screen.state.selectedSport, SportID::padel);
    EXPECT_EQ(screen.state.step, Screen::sport);
    EXPECT_TRUE(sports[1]->isChecked());
}

TEST_F(WizardTest, ACountOfSetsThatNoSportHasStaysANumberOfSets) {
    enterMatch();
    MatchConfig match = test::tennisMatch();
    match.numberOfSets = 200;
    screen.state.matchConfig = match;
    type(QStringLiteral("A"));
    button(L10nKey::continueBtn)->click();
    EXPECT_EQ(screen.state.matchConfig.value()->numberOfSets, 99);
}

TEST_F(WizardTest, ACountryIsFoundByWhatUsersCallIt) {
    enterMatch();
    auto* flag = view.findChild<FlagField*>();
    const auto typeInto = [&](const char* text) {
        flag->setFocus();
        flag->selectAll();
        type(QString::fromUtf8(text));
        QWidget* list = flag->completer()->popup(); // has the keys while it is shown
        QTest::keyClick(list->isVisible() ? list : flag, Qt::Key_Tab);
        return flag->text().toStdString();
    };
    EXPECT_EQ(typeInto("uk"), "United Kingdom");
    EXPECT_EQ(flag->code(), QStringLiteral("GB"));
    EXPECT_EQ(typeInto("ger"), "Germany");
    EXPECT_EQ(flag->findChild<QLabel*>()->text(), QString::fromUtf8("🇩🇪"));
    screen.state.language = Language::german;
    EXPECT_EQ(flag->text(), QStringLiteral("Deutschland"));
    EXPECT_EQ(typeInto("osterr"), "Österreich");
    EXPECT_EQ(typeInto("se"), "Schweden");

    EXPECT_EQ(typeInto("qqq"), "qqq");
    EXPECT_EQ(flag->code(), std::nullopt);
    EXPECT_EQ(visibleTexts().filter(QStringLiteral("qqq")),
              QStringList{QStringLiteral("Zu „qqq“ ist keine Flagge bekannt.")});
}

TEST_F(WizardTest, TheListOfCountriesIsChosenFromByKeys) {
    enterMatch();
    auto* flag = view.findChild<FlagField*>();
    auto* list = flag->completer()->popup();
    flag->setFocus();
    type(QStringLiteral("ge"));
    ASSERT_TRUE(list->isVisible());
    EXPECT_EQ(flag->code(), QStringLiteral("GE"));
    type(QStringLiteral("r"));
    EXPECT_EQ(list->model()->rowCount(), 1);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_FALSE(list->isVisible());
    EXPECT_EQ(flag->text(), QStringLiteral("Germany"));
    EXPECT_TRUE(flag->hasFocus()) << "the next Enter goes on";

    flag->clear();
    press(Qt::Key_Down);
    EXPECT_GT(list->model()->rowCount(), 190);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(flag->code(), QStringLiteral("AF"));
}

TEST_F(WizardTest, TeamSportsAskForTeams) {
    ASSERT_TRUE(shown<PickerCard>()[2]->text() == QStringLiteral("Volleyball"));
    QTest::mouseClick(shown<PickerCard>()[2], Qt::LeftButton);
    screen.state.selectedTemplate = TemplateID::volleyArena;
    screen.state.step = Screen::match;
    for (const QString& text : visibleTexts())
        EXPECT_FALSE(text.contains(QStringLiteral("player"), Qt::CaseInsensitive)) << text.toStdString();
    EXPECT_TRUE(button(L10nKey::bestOf5)->isChecked());
}

TEST_F(WizardTest, RulesAreChosenAmongThoseOfTheSport) {
    enterMatch();
    const auto list = [&](const char* name) { return view.findChild<QComboBox*>(QString::fromUtf8(name)); };
    const auto choose = [&](const char* name, int row) {
        list(name)->setCurrentIndex(row);
        Q_EMIT list(name)->activated(row);
    };
    button(L10nKey::oneSet)->click();
    EXPECT_FALSE(list("rules-deciding")->isVisible()) << "a single set decides nothing";
    button(L10nKey::bestOf3)->click();
    EXPECT_TRUE(list("rules-deciding")->isVisible());
    choose("rules-game", 1);
    choose("rules-deciding", 4);
    for (TeamForm* team : view.findChildren<TeamForm*>()) {
        team->firstName()->setFocus();
        type(QStringLiteral("Ana"));
    }
    button(L10nKey::continueBtn)->click();
    EXPECT_EQ(screen.state.rules.value(), (std::vector<std::string>{"no-ad", "deciding=match-tiebreak-10"}));

    button(L10nKey::back)->click();
    choose("rulesCounting", 1);
    EXPECT_FALSE(list("rules-game")->isVisible());
    button(L10nKey::continueBtn)->click();
    EXPECT_EQ(screen.state.rules.value(), std::vector<std::string>{"by-hand"});
}

TEST_F(WizardTest, BoardFollowsEveryKey) {
    enterMatch();
    const auto* board = view.findChild<BoardPanel*>();
    const auto look = [&] { return const_cast<BoardPanel*>(board)->grab().toImage(); };
    const QImage nameless = look();
    type(QStringLiteral("A"));
    const QImage one = look();
    type(QStringLiteral("b"));
    EXPECT_NE(nameless, one);
    EXPECT_NE(one, look());
}

TEST_F(WizardTest, DoublesAskForFourNamesWhichComeBackAfterSingles) {
    enterMatch();
    button(L10nKey::doubles)->click();
    for (const char* name : {"Ana", "Bia", "Eva", "Ida"}) {
        EXPECT_FALSE(button(L10nKey::continueBtn)->isEnabled());
        type(QString::fromUtf8(name));
        press(Qt::Key_Return);
    }
    ASSERT_EQ(screen.state.step, Screen::video);
    EXPECT_EQ(screen.state.matchConfig.value()->team2.displayName(), QStringLiteral("Eva / Ida"));

    button(L10nKey::back)->click();
    button(L10nKey::singles)->click();
    button(L10nKey::continueBtn)->click();
    EXPECT_EQ(screen.state.matchConfig.value()->team2.displayName(), QStringLiteral("Eva"));
    button(L10nKey::back)->click();
    button(L10nKey::doubles)->click();
    EXPECT_TRUE(button(L10nKey::continueBtn)->isEnabled()) << "the partners were kept";
}

TEST_F(WizardTest, FinishedStepsOfTheBarLeadBack) {
    enterMatch();
    const auto steps = shown<StepButton>();
    QTest::mouseClick(steps[3], Qt::LeftButton);
    EXPECT_EQ(screen.state.step, Screen::match) << "nothing leads past a match without names";
    QTest::mouseClick(steps[0], Qt::LeftButton);
    EXPECT_EQ(screen.state.step, Screen::sport);
    EXPECT_TRUE(shown<PickerCard>().front()->hasFocus());
}

TEST_F(WizardTest, StepsOfTheBarTakeTheFormAlongOnTheWayForward) {
    enterMatch();
    screen.state.matchConfig = test::tennisMatch();
    type(QStringLiteral("Ana"));
    const auto steps = shown<StepButton>();
    QTest::mouseClick(steps[3], Qt::LeftButton);
    EXPECT_EQ(screen.state.step, Screen::video);
    EXPECT_TRUE(screen.state.matchConfig.value()->team1.player1.contains(QStringLiteral("Ana")));
    QTest::mouseClick(steps[3], Qt::LeftButton);
    EXPECT_EQ(screen.state.step, Screen::video) << "it is there already";
}

TEST_F(WizardTest, EveryPageLeadsToTheEditorWithWhatWasTyped) {
    screen.state.matchConfig = test::tennisMatch();
    screen.state.videoURL = QUrl::fromLocalFile(clips.path(QStringLiteral("final.mp4")));
    enterMatch();
    view.editName(Side::second);
    type(QStringLiteral("Eva"));
    press(Qt::Key_Return);
    EXPECT_EQ(screen.state.step, Screen::editor);
    EXPECT_EQ(screen.state.matchConfig.value()->team2.player1, QStringLiteral("Eva"));

    screen.state.step = Screen::match;
    view.editName(Side::first);
    type(QStringLiteral("Ida"));
    button(L10nKey::back)->click(); // to the templates, and from there past the match
    EXPECT_EQ(screen.state.step, Screen::scoreboard);
    QTest::mouseClick(shown<StepButton>()[4], Qt::LeftButton);
    EXPECT_EQ(screen.state.step, Screen::editor);
    EXPECT_EQ(screen.state.matchConfig.value()->team1.player1, QStringLiteral("Ida"));

    screen.state.step = Screen::match;
    view.editName(Side::first);
    press(Qt::Key_Delete);
    button(L10nKey::back)->click();
    EXPECT_FALSE(shown<StepButton>()[4]->isEnabled()) << "a name is missing";
    EXPECT_EQ(screen.state.matchConfig.value()->team1.player1, QStringLiteral("Ida"));
}

TEST_F(WizardTest, TheVideoThatIsGoneIsNamedWhereItIsAskedFor) {
    enterMatch();
    screen.state.matchConfig = test::tennisMatch();
    screen.state.absentVideo = QStringLiteral("/media/stick/final.mp4");
    screen.state.step = Screen::video;
    const auto lines = visibleTexts();
    EXPECT_EQ(lines.filter(QStringLiteral("final.mp4")).size(), 1);
    EXPECT_EQ(lines.filter(QStringLiteral("/media/stick")).filter(QStringLiteral("markers")).size(), 1);
    screen.state.videoURL = QUrl::fromLocalFile(clips.path(QStringLiteral("other.mp4")));
    EXPECT_TRUE(visibleTexts().filter(QStringLiteral("final.mp4")).isEmpty());
}

TEST_F(WizardTest, LanguageChangesEveryTextOnEveryScreen) {
    // Spelled alike in both languages, or the same for everybody.
    const QStringList alike = {QStringLiteral("Language / Langue / Idioma"),
                               QStringLiteral("Padel"),
                               QStringLiteral("Badminton"),
                               QStringLiteral("Squash"),
                               QStringLiteral("Pickleball"),
                               QStringLiteral("Editor")};
    screen.state.selectedTemplate = TemplateID::classic;
    for (const Screen shown : wizardScreens) {
        screen.state.step = shown;
        screen.state.language = Language::english;
        const QStringList english = visibleTexts();
        screen.state.language = Language::portuguese;
        const QStringList portuguese = visibleTexts();
        ASSERT_EQ(english.size(), portuguese.size());
        for (qsizetype index = 0; index < english.size(); ++index) {
            if (alike.contains(english[index]))
                continue;
            EXPECT_NE(english[index].toStdString(), portuguese[index].toStdString())
                << "on screen " << static_cast<int>(shown);
        }
    }
}

TEST_F(WizardTest, AVideoTakenEarlyIsNamedUntilItsStepComes) {
    const auto names = [&] { return visibleTexts().filter(QStringLiteral("final.mp4")); };
    EXPECT_TRUE(names().isEmpty());
    screen.state.videoURL = QUrl::fromLocalFile(clips.path(QStringLiteral("final.mp4")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("Video chosen: final.mp4")});
    screen.state.language = Language::german;
    EXPECT_EQ(names(), QStringList{QStringLiteral("Gewähltes Video: final.mp4")});
    screen.state.step = Screen::video;
    EXPECT_EQ(names(), QStringList{QStringLiteral("final.mp4")}) << "on its card";
}

TEST_F(WizardTest, BadVideoIsExplainedWhereItWasDropped) {
    enterMatch();
    screen.state.matchConfig = test::tennisMatch();
    screen.state.step = Screen::video;
    auto* target = view.findChild<DropTarget*>();
    const QString path = clips.write(QStringLiteral("holiday.mp4"), "no video");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    auto* page = view.findChild<VideoPage*>(); // which takes a drop anywhere on it
    const QPoint place = page->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(page, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(page, &drop);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !target->accessibleDescription().isEmpty(); }, 30'000));
    EXPECT_TRUE(target->accessibleDescription().contains(QStringLiteral("holiday.mp4")));
    EXPECT_FALSE(button(L10nKey::openEditor)->isEnabled());
}

}
