// Chosen keys as JSON: in the settings, and as a file to share (docs/FORMATS.md).
#pragma once

#include "ui/common/CommandKeys.h"

namespace pointloom {

struct KeyFile {
    CommandKeys::Chosen chosen;
    QStringList unknown; // commands that this version does not have; their keys are left out
};

/// Throws json::DecodingError that names the place, also for keys that cannot be given to their command and
/// for a key of two commands.
KeyFile keysFromJson(const QByteArray& text);
QByteArray keysAsJson(const CommandKeys::Chosen& chosen);

/// Both throw DocumentError.
KeyFile readKeyFile(const QString& path);
void writeKeyFile(const QString& path, const CommandKeys::Chosen& chosen);

}
