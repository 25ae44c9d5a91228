// Placeholders filled in, and the desktop's own names for keys and folders.
#pragma once

#include "l10n/Language.h"

#include <QString>

namespace pointloom {

/// `pattern` with its first "%d" replaced by `number` in plain digits; unchanged when it has none.
QString format(const QString& pattern, qint64 number);

/// `pattern` with its first "%@" replaced by `text`, whatever `text` holds; unchanged when it has none.
QString format(const QString& pattern, const QString& text);

/// `pattern` with its first two "%@" replaced.
QString format(const QString& pattern, const QString& first, const QString& second);

/// `text`, which is in `language`, with key symbols written out as the keys are labelled
/// ("⌘⇧E" becomes "Ctrl+Shift+E", in German "Strg+Umschalt+E") and "Finder" turned into the folder.
QString forThisDesktop(QString text, Language language);

}
