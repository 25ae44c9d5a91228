// The texts of all languages and the rule by which a text is found in them.
#pragma once

#include "l10n/L10nKey.h"
#include "l10n/Language.h"

#include <map>

namespace pointloom {

/// Makes the files in texts/ readable.
void registerTexts();

using TranslationTable = std::map<Language, std::map<L10nKey, QString>>;

/// All languages, read once from the files in texts/, which are part of the program.
const TranslationTable& translations();

/// The text of `key` in `language`; failing that the English one, so that a language may be added
/// before it is complete; failing that the key's name in square brackets.
QString lookUp(const TranslationTable& table, Language language, L10nKey key);

}
