// Markers from comma-separated text, as people log matches in a spreadsheet. Tennis scores only.
#pragma once

#include "model/Marker.h"

#include <functional>
#include <QStringView>
#include <vector>

namespace pointloom {

/// There were lines, but none of them was a marker.
struct CSVParseError {
    std::int64_t lineCount = 0; // lines that were neither empty, comments nor headers

    QString description() const;
};

namespace CSVParser {

using ErrorReport = std::function<void(const CSVParseError&)>;

/// One marker for each valid row, sorted by time, rows of the same time in the order of the text. Columns
/// by position: startTime, label, servingTeam, game_team1, game_team2, then the games of both teams for
/// each set. Rows that are not valid are left out; `reportError` is called when that leaves none.
/// A comma always separates: there is no quoting.
std::vector<Marker> parseMarkers(QStringView csv, const ErrorReport& reportError = {});

/// `parseMarkers` of a UTF-8 file. Throws DocumentError: unreadable, not a regular file, larger than 1 MB,
/// not UTF-8.
std::vector<Marker> readMarkersFile(const QString& path, const ErrorReport& reportError = {});

/// `readMarkersFile` of a file's content. `path` is only named in errors.
std::vector<Marker> decodeMarkers(const QByteArray& bytes, const QString& path,
                                  const ErrorReport& reportError = {});

/// A file to start from: a header and five markers, lines separated by LF, no line break at the end.
QString sampleText();

}

}
