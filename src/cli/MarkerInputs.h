// Tables of markers and lists of points as arguments.
#pragma once

#include "persistence/MarkerFile.h"

namespace pointloom::cli {

/// Notes the lines that were left out. Throws DocumentError, and CommandError for a file of another kind or
/// without markers.
MarkerFile readTable(const QString& path, const MatchStart& match);

/// A list of points or a scout file. The same, but a list with a line that is no point is a fault: from there
/// on its count would be wrong.
MarkerFile readPoints(const QString& path, const MatchStart& match);

}
