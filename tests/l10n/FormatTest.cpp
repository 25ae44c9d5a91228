#include "l10n/Format.h"
#include "l10n/L10nKey.h"

#include <gtest/gtest.h>
#include <limits>

using namespace pointloom;

namespace {

std::string shownHere(Language language, L10nKey key) {
    return forThisDesktop(t(language, key), language).toStdString();
}

}

TEST(Format, NumbersAreFilledInAsPlainDigits) {
    EXPECT_EQ(format(t(Language::german, L10nKey::templatesCount), 12).toStdString(), "12 Vorlagen");
    EXPECT_EQ(format(t(Language::french, L10nKey::markersSection), 0).toStdString(), "Marqueurs (0)");
    EXPECT_EQ(format(QStringLiteral("%d"), 1234567).toStdString(), "1234567");
    EXPECT_EQ(format(QStringLiteral("%d"), std::numeric_limits<qint64>::min()).toStdString(),
              "-9223372036854775808");
}

TEST(Format, ATextFilledInIsNotExpandedAgain) {
    EXPECT_EQ(
        format(t(Language::french, L10nKey::couldNotReadFile), QStringLiteral("100%@ %d.csv")).toStdString(),
        "Impossible de lire le fichier : 100%@ %d.csv");
}

TEST(Format, OnlyTheFirstPlaceholderOfTheKindIsFilled) {
    const auto pattern = QStringLiteral("%@: %d of %d, %@");
    EXPECT_EQ(format(pattern, 3).toStdString(), "%@: 3 of %d, %@");
    EXPECT_EQ(format(pattern, QStringLiteral("clip")).toStdString(), "clip: %d of %d, %@");
}

TEST(Format, TwoTextsAreFilledInOneAfterTheOther) {
    EXPECT_EQ(
        format(QStringLiteral("%@ of %@, %@"), QStringLiteral("%@"), QStringLiteral("two")).toStdString(),
        "%@ of two, %@");
    EXPECT_EQ(format(QStringLiteral("only %@"), QStringLiteral("one"), QStringLiteral("two")).toStdString(),
              "only one");
}

TEST(Format, APatternWithoutThePlaceholderStaysAsItIs) {
    EXPECT_EQ(format(QStringLiteral("100 % done %"), 5).toStdString(), "100 % done %");
    EXPECT_EQ(format(QString(), QStringLiteral("name")).toStdString(), "");
}

TEST(DesktopWords, ShortcutsAreSpelledAsTheKeysAreLabelled) {
    const auto here = [](Language language) {
        return forThisDesktop(QStringLiteral("• ⌘⇧E — ⌘⇧E"), language).toStdString();
    };
    EXPECT_EQ(here(Language::english), "• Ctrl+Shift+E — Ctrl+Shift+E");
    EXPECT_EQ(here(Language::french), "• Ctrl+Maj+E — Ctrl+Maj+E");
    EXPECT_EQ(here(Language::spanish), "• Ctrl+Mayús+E — Ctrl+Mayús+E");
    EXPECT_EQ(here(Language::italian), "• Ctrl+Maiusc+E — Ctrl+Maiusc+E");
    EXPECT_EQ(here(Language::german), "• Strg+Umschalt+E — Strg+Umschalt+E");
    EXPECT_EQ(here(Language::swedish), "• Ctrl+Skift+E — Ctrl+Skift+E");
    EXPECT_EQ(here(Language::portuguese), "• Ctrl+Shift+E — Ctrl+Shift+E");
}

TEST(DesktopWords, TheResultIsShownInItsFolder) {
    EXPECT_EQ(shownHere(Language::english, L10nKey::showInFinder), "Show in Folder");
    EXPECT_EQ(shownHere(Language::french, L10nKey::showInFinder), "Afficher dans le dossier");
    EXPECT_EQ(shownHere(Language::spanish, L10nKey::showInFinder), "Mostrar en la carpeta");
    EXPECT_EQ(shownHere(Language::italian, L10nKey::showInFinder), "Mostra nella cartella");
    EXPECT_EQ(shownHere(Language::german, L10nKey::showInFinder), "Im Ordner anzeigen");
    EXPECT_EQ(shownHere(Language::swedish, L10nKey::showInFinder), "Visa i mappen");
    EXPECT_EQ(shownHere(Language::portuguese, L10nKey::showInFinder), "Mostrar na pasta");
}

TEST(DesktopWords, NoTextNamesAnotherDesktopsThings) {
    for (const auto language : allCases<Language>()) {
        for (const auto key : allCases<L10nKey>()) {
            const auto text = forThisDesktop(t(language, key), language);
            for (const auto foreign : {u"⌘", u"⇧", u"⌥", u"Finder"})
                EXPECT_FALSE(text.contains(QStringView(foreign))) << text.toStdString();
        }
    }
}
