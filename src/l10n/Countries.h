// The countries that have a flag, found by what a user types. Their names follow CLDR; some are shortened.
#pragma once

#include "l10n/Language.h"

#include <optional>
#include <vector>

namespace pointloom {

struct Country {
    QString code; // two capitals, ISO 3166-1
    QString name; // in the language it was requested in
};

/// The countries that `typed` may mean, the likeliest first: those with this code or short form ("UK",
/// "GER"), then those with a name in `language` that begins so, then those with a later word or an English or
/// older name that does. Case and accents do not matter. All countries by name for an empty text.
std::vector<Country> findCountries(const QString& typed, Language language);

/// The country with this code or short form.
std::optional<Country> countryOf(const QString& code, Language language);

}
