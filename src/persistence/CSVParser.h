// Markers from comma-separated text, as matches are logged in a spreadsheet. Tennis scores only.
#pragma once

#include "model/Marker.h"

#include <functional>
#include <optional>
#include <QString>
#include <QStringView>
#include <vector>

namespace pointloom {

/// The text has lines, but none of them is a marker.
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

class AppState;
class UndoStack;

/// The first imported marker is selected and the session saved. On failure nothing changes, and the
/// message to show is returned in the session's language. `reportError` is called when the file has lines
/// but no marker.
[[nodiscard]] std::optional<QString> importMarkers(const QString& path, AppState& state,
                                                   UndoStack* undoManager,
                                                   const CSVParser::ErrorReport& reportError = {});

}
