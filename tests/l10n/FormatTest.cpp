#include "l10n/Format.h"
#include "l10n/Language.h"

#include <gtest/gtest.h>
#include <limits>

using namespace pointloom;

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

TEST(Format, APatternWithoutThePlaceholderStaysAsItIs) {
    EXPECT_EQ(format(QStringLiteral("100 % done %"), 5).toStdString(), "100 % done %");
    EXPECT_EQ(format(QString(), QStringLiteral("name")).toStdString(), "");
}
