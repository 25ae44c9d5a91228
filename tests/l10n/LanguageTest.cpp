#include "l10n/Language.h"

#include <gtest/gtest.h>
#include <set>

using namespace pointloom;

TEST(Language, IsPersistedByItsTwoLetterCodeWithEnglishFirst) {
    std::vector<std::string_view> codes;
    for (const auto language : allCases<Language>())
        codes.push_back(rawValue(language));
    EXPECT_EQ(codes, (std::vector<std::string_view>{"en", "fr", "es", "it", "de", "sv", "pt"}));
    EXPECT_EQ(Language{}, Language::english);
    EXPECT_EQ(fromRawValue<Language>("pt"), Language::portuguese);
    EXPECT_EQ(fromRawValue<Language>("EN"), std::nullopt);
}

TEST(Language, CarriesItsOwnNameAndFlag) {
    EXPECT_EQ(displayName(Language::french).toStdString(), "Français");
    EXPECT_EQ(displayName(Language::portuguese).toStdString(), "Português");
    EXPECT_EQ(flag(Language::english).toStdString(), "🇬🇧");
    EXPECT_EQ(flag(Language::portuguese).toStdString(), "🇵🇹");

    std::set<QString> names;
    std::set<QString> flags;
    for (const auto language : allCases<Language>()) {
        names.insert(displayName(language));
        flags.insert(flag(language));
    }
    EXPECT_EQ(names.size(), 7U);
    EXPECT_EQ(flags.size(), 7U);
}
