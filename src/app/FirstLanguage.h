// The language that a session starts with when none was ever chosen.
#pragma once

#include "l10n/Language.h"

#include <QStringList>

namespace pointloom {

/// The first of `names` ("pt-BR", "de"), which the desktop lists by preference, that the interface has;
/// English when it has none of them.
Language firstLanguage(const QStringList& names);

}
