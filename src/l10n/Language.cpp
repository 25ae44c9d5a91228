#include "l10n/Language.h"

#include "l10n/Translations.h"

namespace pointloom {

namespace {

struct Names {
    Language language;
    QStringView displayName;
    QStringView flag;
};

// clang-format off
constexpr Names names[] = {
    {Language::english,    u"English",   u"\U0001F1EC\U0001F1E7"},
    {Language::french,     u"Français",  u"\U0001F1EB\U0001F1F7"},
    {Language::spanish,    u"Español",   u"\U0001F1EA\U0001F1F8"},
    {Language::italian,    u"Italiano",  u"\U0001F1EE\U0001F1F9"},
    {Language::german,     u"Deutsch",   u"\U0001F1E9\U0001F1EA"},
    {Language::swedish,    u"Svenska",   u"\U0001F1F8\U0001F1EA"},
    {Language::portuguese, u"Português", u"\U0001F1F5\U0001F1F9"},
};
// clang-format on

const Names& row(Language language) {
    return names[static_cast<std::size_t>(language)];
}

static_assert(
    [] {
        for (std::size_t i = 0; i < std::size(names); ++i) {
            if (static_cast<std::size_t>(names[i].language) != i)
                return false;
        }
        return std::size(names) == RawValues<Language>::table.size();
    }(),
    "one row for each language, in the order of the enumeration");

}

QString displayName(Language language) {
    return row(language).displayName.toString();
}

QString flag(Language language) {
    return row(language).flag.toString();
}

QLocale localeOf(Language language) {
    if (language == Language::portuguese)
        return {QLocale::Portuguese, QLocale::Portugal};
    return QLocale(QString::fromUtf8(rawValue(language)));
}

QString t(Language language, L10nKey key) {
    return lookUp(translations(), language, key);
}

}
