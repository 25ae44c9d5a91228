#include "l10n/DesktopWords.h"

#include <gtest/gtest.h>

using namespace pointloom;

namespace {

std::string shownHere(Language language, L10nKey key) {
    return forThisDesktop(t(language, key), language).toStdString();
}

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
        for (const auto key : allL10nKeys) {
            const auto text = forThisDesktop(t(language, key), language);
            for (const auto foreign : {u"⌘", u"⇧", u"⌥", u"Finder"})
                EXPECT_FALSE(text.contains(QStringView(foreign))) << text.toStdString();
        }
    }
}
