// The languages of the interface, and the text of a key in one of them.
#pragma once

#include "json/JsonFields.h"

#include <QLocale>
#include <QString>

namespace pointloom {

/// One enumerator for each text: include "l10n/L10nKey.h" to name one.
enum class L10nKey;

enum class Language { english, french, spanish, italian, german, swedish, portuguese };

template <>
struct RawValues<Language> {
    static constexpr auto table = std::to_array<std::pair<Language, std::string_view>>({
        {Language::english, "en"},
        {Language::french, "fr"},
        {Language::spanish, "es"},
        {Language::italian, "it"},
        {Language::german, "de"},
        {Language::swedish, "sv"},
        {Language::portuguese, "pt"},
    });
};

/// The language's own name for itself.
QString displayName(Language language);

/// One flag emoji: the United Kingdom's for English, Portugal's for Portuguese.
QString flag(Language language);

/// Format of numbers, sizes and dates; Portuguese is Portugal's.
QLocale localeOf(Language language);

/// The text of `key` in `language`. Placeholders ("%d", "%@") are left for `format` to fill,
/// names of another desktop's things for `forThisDesktop` to replace.
QString t(Language language, L10nKey key);

}
