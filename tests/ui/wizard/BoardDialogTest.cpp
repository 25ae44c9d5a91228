#include "ui/wizard/BoardDialog.h"
#include "ui/support/ScreenContext.h"
#include "ui/wizard/PickerGrid.h"
#include "ui/wizard/TemplatePage.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QToolButton>

namespace pointloom {

namespace {

class BoardDialogTest : public testing::Test {
protected:
    BoardDialogTest() {
        match.team1.player1 = QStringLiteral("Ana");
        match.team2.player1 = QStringLiteral("Bea");
    }

    QToolButton* swatch(const BoardDialog& dialog, L10nKey name) const {
        for (QToolButton* each : dialog.findChildren<QToolButton*>()) {
            if (each->accessibleName().startsWith(screen.context.text(name) + u':'))
                return each;
        }
        return nullptr;
    }

    /// Opens the palette of a colour and types its code.
    void type(const BoardDialog& dialog, L10nKey name, const QString& code) const {
        swatch(dialog, name)->click();
        QWidget* popup = QApplication::activePopupWidget();
        ASSERT_NE(popup, nullptr);
        auto* field = popup->findChild<QLineEdit*>();
        field->selectAll();
        QTest::keyClicks(field, code);
        popup->close();
    }

    QString warning(const BoardDialog& dialog) const {
        for (const QLabel* each : dialog.findChildren<QLabel*>()) {
            if (each->property("role") == QStringLiteral("warning"))
                return each->isVisible() ? each->text() : QString();
        }
        return {};
    }

    test::ScreenContext screen;
    MatchConfig match;
};

class TemplatePageTest : public testing::Test {
protected:
    TemplatePageTest() {
        page.resize(1000, 700);
        page.show();
    }

    QStringList cardNames() const {
        QStringList names;
        for (const PickerCard* card : page.findChildren<PickerCard*>()) {
            if (card->isVisibleTo(&page))
                names << card->text();
        }
        return names;
    }

    void add(const QByteArray& board) {
        screen.dialogs.shown.clear();
        const QString path = screen.folder.filePath(QStringLiteral("club.json"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(board);
        file.close();
        screen.dialogs.fileToOpen = path;
        for (QPushButton* button : page.findChildren<QPushButton*>()) {
            if (button->text() == screen.context.text(L10nKey::boardAdd))
                button->click();
        }
    }

    test::ScreenContext screen;
    WizardFlow flow{screen.context};
    TemplatePage page{screen.context, flow, nullptr};
};

}

TEST_F(BoardDialogTest, ColoursAreTypedSeenAndGivenBack) {
    BoardDialog dialog(screen.context, {.base = TemplateID::classic, .board = {}}, match, false, nullptr);
    dialog.show();
    const QImage before = dialog.grab().toImage();
    type(dialog, L10nKey::boardMain, QStringLiteral("0b5d3b"));
    EXPECT_EQ(dialog.board().board.colors.main, (BoardColor{0x0B, 0x5D, 0x3B}));
    EXPECT_EQ(dialog.board().board.colors.row2, std::nullopt);
    EXPECT_NE(dialog.grab().toImage(), before);
    EXPECT_EQ(warning(dialog), QString());

    type(dialog, L10nKey::boardText, QStringLiteral("#0B5D3B"));
    EXPECT_TRUE(warning(dialog).contains(QStringLiteral("1.0 to 1"))) << qPrintable(warning(dialog));
    for (QToolButton* each : dialog.findChildren<QToolButton*>()) {
        if (each->isVisible() && each->accessibleName() == screen.context.text(L10nKey::boardMatchAgain))
            each->click();
    }
    EXPECT_EQ(dialog.board().board.colors, BoardColors());
    EXPECT_EQ(warning(dialog), QString());
    EXPECT_FALSE(dialog.board().board.name.isEmpty());
}

TEST_F(BoardDialogTest, AColourFromThePaletteIsSolidWhereTheTemplateHasAVeil) {
    const BoardFile minimal{.base = TemplateID::squashMinimal, .board = {}};
    BoardDialog dialog(screen.context, minimal, match, false, nullptr);
    dialog.show();
    const auto picked = [&] { return dialog.board().board.colors.points.value_or(BoardColor{0, 0, 0, 1}); };
    swatch(dialog, L10nKey::boardPoints)->click();
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    QTest::keyClick(popup->focusWidget(), Qt::Key_Down);
    EXPECT_EQ(picked().alpha, 255);
    auto* opacity = popup->findChild<QSlider*>();
    EXPECT_EQ(opacity->value(), 100);
    opacity->setValue(40);
    QTest::keyClick(popup->focusWidget(), Qt::Key_Down);
    EXPECT_EQ(picked().alpha, 255 * 40 / 100) << "chosen by the user";
    popup->close();
}

TEST_F(BoardDialogTest, NothingIsChosenUntilTheUserDoes) {
    BoardStyle style{.name = QStringLiteral("Club"), .corner = 13};
    const BoardFile file{.base = TemplateID::volleyArena, .board = style};
    BoardDialog dialog(screen.context, file, match, true, nullptr);
    dialog.show();
    EXPECT_EQ(dialog.board(), file);
    for (QPushButton* each : dialog.findChildren<QPushButton*>()) {
        if (each->text() == screen.context.text(L10nKey::boardLogoRight) ||
            each->text() == screen.context.text(L10nKey::boardPointsFirst))
            each->click();
    }
    style.order = BoardOrder::pointsFirst;
    style.logo = BoardLogo::right;
    EXPECT_EQ(dialog.board().board, style);
}

TEST_F(TemplatePageTest, ABoardFromAFileIsKeptListedAndPicked) {
    const QStringList before = cardNames();
    add(R"({"version":1,"template":"dark","board":{"name":"TC Riverside","colors":{"main":"#0B5D3B"}}})");
    EXPECT_EQ(screen.dialogs.shown.size(), 1) << "the question for the file";
    EXPECT_EQ(screen.state.selectedTemplate.value(), TemplateID::dark);
    EXPECT_EQ(flow.draft().board->name, QStringLiteral("TC Riverside"));
    EXPECT_EQ(cardNames(), before + QStringList{QStringLiteral("TC Riverside")});
    add(R"({"version":1,"template":"dark","board":{"name":"TC Riverside","colors":{"main":"#0B5D3B"}}})");
    EXPECT_EQ(cardNames().size(), before.size() + 1) << "the same board once";

    add(R"({"version":1,"template":"squashDark","board":{"name":"Squash","colors":{}}})");
    EXPECT_TRUE(screen.dialogs.shown.last().contains(QStringLiteral("Squash")));
    EXPECT_EQ(screen.state.selectedTemplate.value(), TemplateID::dark);
    add(R"({"version":1,"template":"dark","board":{"name":"Bad","colors":{"main":"red"}}})");
    EXPECT_EQ(screen.dialogs.shown.last(),
              QStringLiteral("club.json: board.colors.main: expected a colour as "
                             "#RRGGBB or #RRGGBBAA, found \"red\""));

    for (const KeptBoard& each : BoardFolder::ofUser().read().boards)
        BoardFolder::remove(each.path);
    page.hide();
    page.show();
    EXPECT_EQ(cardNames().size(), before.size() + 1) << "the match still has it";
    flow.pickTemplate(TemplateID::dark);
    EXPECT_EQ(cardNames().size(), before.size() + 1) << "to go back to";
    screen.state.reset();
    EXPECT_EQ(cardNames(), before);
}

}
