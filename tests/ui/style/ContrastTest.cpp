// Colours of both themes, for eyes that see little contrast.
#include "support/Contrast.h"
#include "ui/style/Theme.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QRegularExpression>

namespace pointloom::test {

namespace {

constexpr double enough = 4.5; // WCAG 2.1, success criterion 1.4.3, for text of any size

constexpr QColor ColorTokens::*inks[] = {&ColorTokens::text,    &ColorTokens::quietText,
                                         &ColorTokens::accent,  &ColorTokens::danger,
                                         &ColorTokens::warning, &ColorTokens::success};
constexpr QColor ColorTokens::*grounds[] = {&ColorTokens::window, &ColorTokens::surface, &ColorTokens::raised,
                                            &ColorTokens::line};

void expectContrast(const QColor& ink, const QColor& ground) {
    EXPECT_GE(contrast(ink, ground), enough)
        << ink.name().toStdString() << " on " << ground.name().toStdString();
}

}

TEST(Contrast, IsMeasuredAsTheStandardDoes) {
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 1e-9);
    EXPECT_NEAR(contrast(Qt::red, Qt::red), 1, 1e-9);
    EXPECT_GE(contrast(QColor(0x76, 0x76, 0x76), Qt::white), enough); // the lightest grey that passes
    EXPECT_LT(contrast(QColor(0x77, 0x77, 0x77), Qt::white), enough);
}

TEST(Contrast, SufficesForEachTextColourOnEachBackground) {
    for (const ColorTokens& theme : {darkTokens, lightTokens}) {
        for (const auto ink : inks) {
            for (const auto ground : grounds)
                expectContrast(theme.*ink, theme.*ground);
        }
        for (const auto ground : {&ColorTokens::accent, &ColorTokens::accentHover})
            expectContrast(theme.onAccent, theme.*ground);
    }
}

// So that what the test above says holds for everything that the style sheet draws.
TEST(Contrast, TheStyleSheetHasNoColourOfItsOwn) {
    for (const ThemeChoice choice : {ThemeChoice::dark, ThemeChoice::light}) {
        Theme::shared().apply(*qApp, choice);
        const ColorTokens& theme = tokens();
        QStringList known{theme.onAccent.name(), theme.accentHover.name()};
        for (const auto token : inks)
            known << (theme.*token).name();
        for (const auto token : grounds)
            known << (theme.*token).name();
        static const QRegularExpression color(QStringLiteral("#[0-9a-fA-F]{3,8}\\b|rgba?\\("));
        const QString sheet = qApp->styleSheet();
        int count = 0;
        for (auto match = color.globalMatch(sheet); match.hasNext(); ++count) {
            const QString found = match.next().captured();
            EXPECT_TRUE(known.contains(found)) << found.toStdString();
        }
        EXPECT_GT(count, 50);
    }
}

}
