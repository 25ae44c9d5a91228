#include "l10n/Countries.h"

#include <gtest/gtest.h>
#include <set>

using namespace pointloom;

namespace {

std::string found(const char* typed, Language language) {
    const auto countries = findCountries(QString::fromUtf8(typed), language);
    return countries.empty() ? std::string() : countries.front().code.toStdString();
}

}

TEST(Countries, AreFoundByTheirNameInTheLanguageShown) {
    EXPECT_EQ(found("ger", Language::english), "DE");
    EXPECT_EQ(found("deu", Language::german), "DE");
    EXPECT_EQ(found("tysk", Language::swedish), "DE");
    EXPECT_EQ(found("suiz", Language::spanish), "CH");
    EXPECT_EQ(found("tchéq", Language::french), "CZ");
    EXPECT_EQ(found("paesi b", Language::italian), "NL");
    EXPECT_EQ(found("áfr", Language::portuguese), "ZA");
    EXPECT_EQ(found("AF", Language::portuguese), "AF") << "a code comes before the beginning of a name";
}

TEST(Countries, AreFoundByCodesShortFormsLaterWordsAndEnglishNames) {
    EXPECT_EQ(found("uk", Language::english), "GB");
    EXPECT_EQ(found("Scotland", Language::german), "GB");
    EXPECT_EQ(found("usa", Language::italian), "US");
    EXPECT_EQ(found("sui", Language::german), "CH");
    EXPECT_EQ(found("zealand", Language::english), "NZ");
    EXPECT_EQ(found("germany", Language::portuguese), "DE");
    EXPECT_EQ(found("cote d'iv", Language::french), "CI");
    EXPECT_EQ(found("ssia", Language::english), "") << "not from the middle of a word";
    EXPECT_EQ(found("-", Language::english), "");
}

TEST(Countries, HaveANameOfTheirOwnInEveryLanguage) {
    for (const auto language : allCases<Language>()) {
        const auto all = findCountries({}, language);
        EXPECT_EQ(all.size(), findCountries({}, Language::english).size());
        EXPECT_GE(all.size(), 193U) << "the members of the United Nations";
        std::set<QString> names;
        for (const Country& country : all) {
            EXPECT_EQ(country.code.size(), 2);
            EXPECT_FALSE(country.name.isEmpty()) << country.code.toStdString();
            names.insert(country.name);
            EXPECT_EQ(countryOf(country.code, language)->name, country.name);
        }
        EXPECT_EQ(names.size(), all.size());
    }
    EXPECT_FALSE(countryOf(QStringLiteral("ZZ"), Language::english));
    EXPECT_FALSE(countryOf(QStringLiteral("ge r"), Language::english));
}
