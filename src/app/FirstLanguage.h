// The language that a session starts in.
#pragma once

#include "l10n/Language.h"

#include <QStringList>

namespace pointloom {

class UserDefaults;

/// The language that the user chose last. Until one was chosen, the first of `names` ("pt-BR", "de"), which
/// the desktop lists by preference, that the interface has; English when it has none of them.
Language firstLanguage(const UserDefaults& defaults, const QStringList& names);

}
