// Fills in the placeholders of interface texts.
#pragma once

#include <QString>

namespace pointloom {

/// `pattern` with its first "%d" replaced by `number` in plain digits; unchanged when it has none.
QString format(const QString& pattern, qint64 number);

/// `pattern` with its first "%@" replaced by `text`, whatever `text` holds; unchanged when it has none.
QString format(const QString& pattern, const QString& text);

}
