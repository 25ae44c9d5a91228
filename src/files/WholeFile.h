// Files that are replaced whole or not at all.
#pragma once

#include <QSaveFile>

namespace pointloom {

/// Writes the text into a file that is open and commits it. False when it cannot; then `errorString()` of the
/// file says why.
[[nodiscard]] bool commitWhole(QSaveFile& file, const QByteArray& text);

}
