// The translation table and the rule by which a text is found in it.
#pragma once

#include "l10n/Language.h"
#include "l10n/translations/TextList.h"

#include <map>

namespace pointloom {

using TranslationTable = std::map<Language, std::map<L10nKey, QString>>;

/// The texts of `language` as they are written in its file.
TextList textList(Language language);

/// All languages, built once from their lists.
const TranslationTable& translations();

/// The text of `key` in `language`; failing that the English one, so that a language may be added
/// before it is complete; failing that the key's name in square brackets.
QString lookUp(const TranslationTable& table, Language language, L10nKey key);

}
