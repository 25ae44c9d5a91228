// The words of this desktop for things that the translation table names as another desktop does.
#pragma once

#include "l10n/Language.h"

#include <QString>

namespace pointloom {

/// `text`, which is in `language`, with key symbols written out as the keys are labelled
/// ("⌘⇧E" becomes "Ctrl+Shift+E", in German "Strg+Umschalt+E") and "Finder" turned into the folder.
QString forThisDesktop(QString text, Language language);

}
